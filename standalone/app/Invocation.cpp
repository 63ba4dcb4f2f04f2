#include "standalone/app/Invocation.h"

#include <CLI/CLI.hpp>

namespace app {

void Invocation::When(CLI::App& command, Action action) {
  command.callback([this, action = std::move(action)] { action_ = action; });
}

void Invocation::Run() {
  action_(*this);
}

void Invocation::Accept(Request request, MEStatusCode answer) {
  answer_ = answer;
  RequireSuccess(request, answer);
}

void Invocation::Report(const Json& forPrograms, std::string_view forPeople) const {
  if (options.json) {
    Print(JsonText(forPrograms));
  } else {
    Print(forPeople);
  }
}

}  // namespace app
