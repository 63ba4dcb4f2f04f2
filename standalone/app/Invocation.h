#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/app/terminal/Csv.h"
#include "standalone/app/terminal/Output.h"
#include "standalone/app/terminal/Table.h"
#include "standalone/desk/Company.h"

namespace CLI {
class App;
}

namespace app {

// What the person asked for beside the command itself.
struct GlobalOptions {
  std::string user;
  bool json = false;
  bool trace = false;
  bool networkShare = false;
  bool wide = false;
  bool usualCompany = false;  // the company is the one that the environment names
  bool csv = false;           // of lists only
};

// The line as standard error has it, an object on one line for programs.
std::string TraceText(const desk::NewLogLine& line, bool json);

// For a command that reports a list.
void AddCsvOption(CLI::App& command, GlobalOptions& options);

// One run of the program: the command that was chosen, and what it reports.
class Invocation {
 public:
  using Action = std::function<void(Invocation&)>;

  GlobalOptions options;

  // `action` is what `command` does; it runs once the whole command line has been understood.
  void When(CLI::App& command, Action action);
  void Run();

  // What the module answered; nothing when it was not asked.
  void TakeAnswer(std::int32_t status) noexcept { answer_ = status; }
  const std::optional<std::int32_t>& Answer() const noexcept { return answer_; }

  // Work was saved: what fails from now on does not undo it.
  void TakeSaved() noexcept { hasSaved_ = true; }
  bool HasSaved() const noexcept { return hasSaved_; }

  // Prints the outcome in the form that was asked for; programs are told what the module answered, too.
  void Report(const Json& forPrograms, std::string_view forPeople) const;
  // The same for a list, which is the first value for programs; spreadsheets get it as CSV.
  void ReportList(const Json& forPrograms, CsvColumns columns, std::string_view forPeople) const;

  // In the order in which they were written.
  std::vector<desk::NewLogLine> trace;

 private:
  Action action_;
  std::optional<std::int32_t> answer_;
  bool hasSaved_ = false;
};

}  // namespace app
