#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/desk/json/Json.h"

// What people are told of letters that were carried, also by another run of this program.
namespace app {

// What a letter did and what it could not do, a line for each thing, as desk::TakenLetter has it for programs.
std::string TakenText(const desk::Json& letter, std::string_view indent);
// A run for programs: of each partner what desk::CarriedWith has, and what to type about what was not sent.
desk::Json CarriedJson(const desk::CarriedWith& carried);
desk::Json CarriedJson(const std::vector<desk::CarriedWith>& all);
// All that was done with one partner, as CarriedJson has it; `file` is the company as people type it.
std::string CarriedText(const desk::Json& carried, const std::string& file);

}  // namespace app
