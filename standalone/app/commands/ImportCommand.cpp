#include <fmt/format.h>

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/ProgressBar.h"
#include "standalone/import/Import.h"

namespace app {

namespace {

using Import = standalone::ImportResult (*)(standalone::StandaloneHost&, const std::filesystem::path&,
                                            const standalone::ImportProgress&);

struct ImportOptions {
  std::string file;
  std::string csv;
};

std::string Summary(const standalone::ImportResult& result) {
  std::string text;
  const auto add = [&text](std::int64_t count, std::string_view what) {
    if (count != 0) text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, what);
  };
  add(result.accounts, "accounts");
  add(result.names, "names");
  add(result.transactions, "transactions");
  add(result.lines, "lines");
  add(result.intercompanyRows, "intercompany lines");
  return text.empty() ? "nothing" : text;
}

void RunImport(Invocation& invocation, const ImportOptions& options, Import import) {
  Company company(invocation, options.file);
  company.Host().RequireAdministrator("an import");
  standalone::ImportResult result;
  {
    ProgressBar bar("Importing " + options.csv);
    result = import(company.Host(), FilePath(options.csv),
                    [&bar](std::uint64_t read, std::uint64_t total) { bar.Show(read, total); });
  }
  invocation.Report({{"rows", result.rows},
                     {"accounts", result.accounts},
                     {"names", result.names},
                     {"transactions", result.transactions},
                     {"lines", result.lines},
                     {"intercompanyLines", result.intercompanyRows}},
                    fmt::format("Imported {} from {}.\n", Summary(result), options.csv));
}

void AddOne(CLI::App& parent, Invocation& invocation, Import import, const char* name, const char* description,
            const char* example) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App& command = AddFileCommand(parent, name, description, example, options->file);
  command.add_option("CSV", options->csv, "The CSV file: UTF-8, with a header row")->required();
  invocation.When(command, [options, import](Invocation& run) { RunImport(run, *options, import); });
}

}  // namespace

void AddImport(CLI::App& program, Invocation& invocation) {
  CLI::App& import = *program.add_subcommand("import", "Add accounts, names or transactions from a CSV file");
  import.require_subcommand(1);
  import.footer(
      "Example:\n  multientity import accounts alder.company samples/alder/accounts.csv\n\n"
      "A file with a bad row changes nothing; the row is named with its line and what is wrong with it.");
  AddOne(
      import, invocation, standalone::ImportAccounts, "accounts",
      "Add accounts. Columns: name (colon-separated; parents first), type (such as Bank), and optionally special (a\n"
      "number) and deleted (yes or no)",
      "import accounts alder.company samples/alder/accounts.csv");
  AddOne(import, invocation, standalone::ImportNames, "names",
         "Add names. Columns: name (colon-separated; parents first), kind (customer, vendor, employee, other)",
         "import names alder.company samples/alder/names.csv");
  AddOne(import, invocation, standalone::ImportTransactions, "transactions",
         "Add bills, checks and journal entries, one row per line, the rows of one transaction together. Columns:\n"
         "transaction (a key within the file), type (bill, check, journal), date (YYYY-MM-DD), name, memo, account,\n"
         "amount (debits positive, credits negative), and optionally line_memo, partner_realm, request_id, state.\n"
         "Date, name and memo stand in the first row of a transaction. A row with a partner_realm makes its line an\n"
         "intercompany one; in a journal entry the line of the due-to account follows it",
         "import transactions alder.company samples/alder/transactions.csv");
}

}  // namespace app
