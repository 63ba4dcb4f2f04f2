#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/Ops.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/terminal/Output.h"

namespace CLI {
class App;
}

namespace app {

// What the person asked for beside the command itself.
struct GlobalOptions {
  std::string user;
  bool json = false;
  bool trace = false;
};

// A line that the operations log gained.
struct TraceLine {
  std::int32_t level = 0;
  std::int32_t eventType = 0;
  std::string shortName;
  std::string message;
};

TraceLine TraceLineOf(const Util::Ops::Line& line);
// The line as standard error has it, an object on one line for programs.
std::string TraceText(const TraceLine& line, bool json);

// One run of the program: the command that was chosen, and what it reports.
class Invocation {
 public:
  using Action = std::function<void(Invocation&)>;

  GlobalOptions options;

  // `action` is what `command` does; it runs once the whole command line has been understood.
  void When(CLI::App& command, Action action);
  void Run();

  // Takes the module's answer; throws Declined unless it is 1.
  void Accept(Request request, MEStatusCode answer);
  // What the module answered; nothing when it was not asked.
  const std::optional<MEStatusCode>& Answer() const noexcept { return answer_; }

  // Prints the outcome in the form that was asked for.
  void Report(const Json& forPrograms, std::string_view forPeople) const;

  // In the order in which they were written.
  std::vector<TraceLine> trace;

 private:
  Action action_;
  std::optional<MEStatusCode> answer_;
};

}  // namespace app
