#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"

namespace app {

namespace {

struct TransactionsOptions {
  std::string file;
  std::optional<std::string> txn;
  std::optional<std::string> from;
  std::optional<std::string> to;
};

std::string PluralOf(std::int16_t type) {
  const std::string name = standalone::TransactionTypeName(type);
  return name == "journal" ? "journal entries" : name + "s";
}

// "You may not see bills and checks.", or nothing.
std::string NotShownText(const std::vector<std::int16_t>& types) {
  std::string text;
  for (std::size_t index = 0; index < types.size(); ++index) {
    if (index != 0) text += index + 1 == types.size() ? " and " : ", ";
    text += PluralOf(types[index]);
  }
  return text.empty() ? text : fmt::format("You may not see {}.\n", text);
}

Json NamesOf(const std::vector<std::int16_t>& types) {
  Json names = Json::array();
  for (const std::int16_t type : types) names.push_back(standalone::TransactionTypeName(type));
  return names;
}

std::string ListText(const std::vector<desk::IntercompanyLine>& lines, const std::vector<std::int16_t>& notShown) {
  if (!lines.empty()) return LinesTable(lines).Text();
  return notShown.empty() ? "No intercompany transactions.\n" : "No intercompany transactions that you may see.\n";
}

void ListTransaction(Invocation& invocation, const TransactionsOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", *options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::IntercompanyLine> lines = desk::ListIntercompanyLines(company, txnId);
  invocation.Report({{"transactions", desk::JsonOf(lines)}}, ListText(lines, {}));
}

void ListPeriod(Invocation& invocation, const TransactionsOptions& options) {
  const DateType32 from = PeriodBound("--from", options.from);
  const DateType32 to = PeriodBound("--to", options.to);
  const desk::Period period(from, to);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::IntercompanyLine> lines = desk::ListIntercompanyLines(company, period);
  const std::vector<std::int16_t> notShown = desk::TypesNotShown(company);
  invocation.Report({{"transactions", desk::JsonOf(lines)}, {"notShown", NamesOf(notShown)}},
                    ListText(lines, notShown) + NotShownText(notShown));
}

}  // namespace

void AddTransactions(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<TransactionsOptions>();
  CLI::App& command =
      AddFileCommand(program, "transactions", "List the intercompany lines of one transaction, or of a period",
                     "transactions alder.company --from 2024-12-01 --to 2024-12-31", options->file);
  CLI::Option* txn = command.add_option("--txn", options->txn, "The id of one bill, check or journal entry");
  command.add_option("--from", options->from, "First day of the period, YYYY-MM-DD; open when left out")->excludes(txn);
  command.add_option("--to", options->to, "Last day of the period, YYYY-MM-DD; open when left out")->excludes(txn);
  invocation.When(command, [options](Invocation& run) {
    if (options->txn) {
      ListTransaction(run, *options);
    } else {
      ListPeriod(run, *options);
    }
  });
}

}  // namespace app
