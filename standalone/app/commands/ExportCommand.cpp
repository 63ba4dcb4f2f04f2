#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Export.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct ExportOptions {
  std::string file;
  std::optional<std::string> output;
  std::optional<std::string> from;
  std::optional<std::string> to;
  bool replace = false;
};

void ExportToOutput(Invocation& invocation, const ExportOptions& options, const desk::Period& period) {
  if (invocation.options.json) {
    throw standalone::InvalidInput(
        "with --json standard output is for what was done; give the file for the journal with --output");
  }
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::ExportJournal(company, period, PrintData);
}

void ExportToFile(Invocation& invocation, const ExportOptions& options, const desk::Period& period) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ExportedJournal exported =
      desk::ExportJournalTo(company, period, FilePath(*options.output), options.replace);
  invocation.TakeSaved();
  invocation.Report(desk::JsonOf(exported), fmt::format("Wrote {}: {} account{} and {} transaction{} with {} lines.\n",
                                                        standalone::Shown(*options.output), exported.accounts,
                                                        exported.accounts == 1 ? "" : "s", exported.transactions,
                                                        exported.transactions == 1 ? "" : "s", exported.lines));
}

void Export(Invocation& invocation, const ExportOptions& options) {
  const DateType32 from = PeriodBound("--from", options.from);
  const DateType32 to = PeriodBound("--to", options.to);
  const desk::Period period(from, to);
  if (options.output) {
    ExportToFile(invocation, options, period);
  } else {
    ExportToOutput(invocation, options, period);
  }
}

}  // namespace

void AddExport(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& command =
      AddFileCommand(program, "export",
                     "Write the accounts and transactions as a journal in plain text, which hledger and\n"
                     "ledger read; for who may view bills, checks and journal entries",
                     "export alder.company --output alder.journal", options->file);
  CLI::Option* output =
      command.add_option("--output", options->output, "The file to write; standard output when left out");
  command.add_flag("--replace", options->replace, "Also when there is a file of that name")->needs(output);
  command.add_option("--from", options->from, "First day of the period, YYYY-MM-DD; open when left out");
  command.add_option("--to", options->to, "Last day of the period, YYYY-MM-DD; open when left out");
  invocation.When(command, [options](Invocation& run) { Export(run, *options); });
}

}  // namespace app
