#include "standalone/app/Invocation.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "standalone/company/OperationsLog.h"

namespace app {

TraceLine TraceLineOf(const Util::Ops::Line& line) {
  return {static_cast<std::int32_t>(line.level), static_cast<std::int32_t>(line.eventType), line.shortName,
          std::string(line.message)};
}

std::string TraceText(const TraceLine& line, bool json) {
  if (!json) {
    return fmt::format("log level {} event {} {}: {}\n", line.level, line.eventType, line.shortName,
                       standalone::EscapeColumn(line.message));
  }
  return JsonText({{"log",
                    {{"level", line.level},
                     {"eventType", line.eventType},
                     {"shortName", line.shortName},
                     {"message", line.message}}}});
}

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
