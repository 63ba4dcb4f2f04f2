#pragma once

#include <string>
#include <string_view>

#include "standalone/desk/json/Json.h"

// What people are told of letters that were carried, also by another run of this program.
namespace app {

// What a letter did and what it could not do, a line for each thing, as desk::TakenLetter has it for programs.
std::string TakenText(const desk::Json& letter, std::string_view indent);
// All that was done with one partner, as desk::CarriedWith has it for programs; `file` is the company as people type
// it.
std::string CarriedText(const desk::Json& carried, const std::string& file);

}  // namespace app
