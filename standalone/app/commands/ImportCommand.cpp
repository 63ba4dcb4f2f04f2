#include <fmt/format.h>

#include <cstdint>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/TextInput.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/ProgressBar.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct ImportOptions {
  std::string file;
  std::string csv;
  bool skipKnown = false;
  bool again = false;
  bool dryRun = false;
};

desk::CsvToImport CsvOf(const std::string& text) {
  if (text == kStandardInput) return desk::CsvStream{.name = "standard input", .read = ReadInput};
  return FilePath(text);
}

std::string Summary(const desk::Imported& result) {
  std::string text;
  const auto add = [&text](std::int64_t count, std::string_view what) {
    if (count != 0) text.append(text.empty() ? "" : ", ").append(standalone::Counted(count, what));
  };
  add(result.accounts, "account");
  add(result.names, "name");
  add(result.transactions, "transaction");
  add(result.lines, "line");
  add(result.intercompanyLines, "intercompany line");
  return text.empty() ? "nothing" : text;
}

std::string ReportOf(const ImportOptions& options, const desk::Imported& result) {
  std::string text = fmt::format("{} {} from {}", options.dryRun ? "Would import" : "Imported", Summary(result),
                                 options.csv == kStandardInput ? "standard input" : standalone::Shown(options.csv));
  if (result.passedOver != 0) {
    text += fmt::format("; passed over {} that {} known", standalone::Counted(result.passedOver, "transaction"),
                        result.passedOver == 1 ? "is" : "are");
  }
  if (options.dryRun) text += "; nothing was written";
  return text + ".\n";
}

void RunImport(Invocation& invocation, const ImportOptions& options, desk::Importable what) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::Imported result;
  {
    ProgressBar bar("Importing " + options.csv);
    result = desk::Import(company, what, CsvOf(options.csv),
                          {.skipKnown = options.skipKnown,
                           .again = options.again,
                           .dryRun = options.dryRun,
                           .progress = [&bar](std::uint64_t read, std::uint64_t total) {
                             bar.Show(read, total);
                           }});
  }
  Json json = desk::JsonOf(result);
  json["dryRun"] = options.dryRun;
  invocation.Report(json, ReportOf(options, result));
}

void AddOne(CLI::App& parent, Invocation& invocation, desk::Importable what, const char* name, const char* description,
            const char* example) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App& command = AddFileCommand(parent, name, description, example, options->file);
  command.add_option("CSV", options->csv, "The CSV file: UTF-8, with a header row; a pipe, or - for standard input")
      ->required();
  command.add_flag("--again", options->again, "Also a file that was imported before");
  command.add_flag("--dry-run", options->dryRun, "Say what would be imported or refused, and write nothing");
  if (what == desk::Importable::kTransactions) {
    command.add_flag("--skip-known", options->skipKnown,
                     "Pass over transactions whose partner's requests are in the books");
  }
  invocation.When(command, [options, what](Invocation& run) { RunImport(run, *options, what); });
}

}  // namespace

void AddImport(CLI::App& program, Invocation& invocation) {
  CLI::App& import = *program.add_subcommand("import", "Add accounts, names or transactions from a CSV file");
  import.require_subcommand(1);
  import.footer(
      "Example:\n  multientity import accounts alder.company samples/alder/accounts.csv\n\n"
      "A file with bad rows changes nothing; they are named with their lines and what is wrong with them.");
  AddOne(
      import, invocation, desk::Importable::kAccounts, "accounts",
      "Add accounts. Columns: name (colon-separated; parents first), type (such as Bank), and optionally special (a\n"
      "number), deleted (yes or no) and number (the account's, such as 4000.10)",
      "import accounts alder.company samples/alder/accounts.csv");
  AddOne(import, invocation, desk::Importable::kNames, "names",
         "Add names. Columns: name (colon-separated; parents first), kind (customer, vendor, employee, other)",
         "import names alder.company samples/alder/names.csv");
  AddOne(import, invocation, desk::Importable::kTransactions, "transactions",
         "Add bills, checks and journal entries, one row per line, the rows of one transaction together. Columns:\n"
         "transaction (a key within the file), type (bill, check, journal), date (YYYY-MM-DD), name, memo, account,\n"
         "amount (debits positive, credits negative), and optionally line_memo, partner_realm, request_id, state.\n"
         "Date, name and memo stand in the first row of a transaction. A row with a partner_realm makes its line an\n"
         "intercompany one; in a journal entry the line of the due-to account follows it",
         "import transactions alder.company samples/alder/transactions.csv");
}

}  // namespace app
