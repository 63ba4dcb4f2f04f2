#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/desk/ExchangeStatus.h"
#include "standalone/desk/results/Awaited.h"

// What people are told of how far this company is with a partner.
namespace app {

struct StandingWith {
  std::string_view waitsFor;          // "us", "partner", "nobody"
  std::string_view why;               // how far the pairing is
  std::vector<std::string> requests;  // a sentence for each kind that there are some of
  std::vector<std::string> toDo;      // what to type, or whom to call; what comes first first
};
// `file` is the company as people type it.
StandingWith StandingOf(const desk::ExchangeStatus& status, const std::string& file);

// Why nothing is decided or sent, and what to type: a line for each sentence, behind the indent.
std::string AwaitedText(const desk::Awaited& awaited, const std::string& file, std::string_view indent);

}  // namespace app
