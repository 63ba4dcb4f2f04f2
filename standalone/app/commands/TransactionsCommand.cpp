#include <fmt/format.h>

#include <array>
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
#include "standalone/values/Amount.h"
#include "standalone/values/Money.h"

namespace app {

namespace {

struct TransactionsOptions {
  std::string file;
  std::optional<std::string> txn;
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<std::string> partner;
  std::optional<std::string> type;
  std::optional<std::string> state;
  std::optional<std::string> request;
  std::optional<std::string> account;
};

constexpr std::array kLineColumns{
    "transaction", "line",      "type",  "typeNumber",  "date",         "realm",           "partner",
    "name.id",     "name.name", "memo",  "account.id",  "account.name", "otherAccount.id", "otherAccount.name",
    "amount",      "currency",  "state", "stateNumber", "ofBefore",     "requestId"};

desk::LineFilter FilterOf(const TransactionsOptions& options) {
  desk::LineFilter filter;
  if (options.partner) filter.partner.emplace(*options.partner);
  if (options.type) filter.type = standalone::ParseTransactionType(*options.type);
  if (options.state) filter.state.emplace(*options.state);
  if (options.request) filter.request.emplace(*options.request);
  filter.account = options.account;
  return filter;
}

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

// The expense of an entry that was booked from a partner's request.
bool IsOwedByUs(const desk::IntercompanyLine& line) noexcept {
  return line.otherAccount.has_value();
}

// Of the lines of one side that have an amount, which is in the company's currency; none when it is more than can be
// counted.
std::optional<standalone::Money> TotalOf(const std::vector<desk::IntercompanyLine>& lines, bool isOwedByUs) {
  std::optional<standalone::Money> total;
  for (const desk::IntercompanyLine& line : lines) {
    if (!line.amount || IsOwedByUs(line) != isOwedByUs) continue;
    if (!total) {
      total = line.amount;
      continue;
    }
    const std::optional<std::int64_t> sum = standalone::AddAmounts(total->minorUnits, line.amount->minorUnits);
    if (!sum) return std::nullopt;
    total->minorUnits = *sum;
  }
  return total;
}

void AddTotal(Table& table, const char* owed, const std::optional<standalone::Money>& total) {
  if (!total) return;
  table.AddTotal({"Total", "", "", "", owed, "", "", "", standalone::FormatAmount(*total), total->currency, "", ""});
}

std::string TableText(const std::vector<desk::IntercompanyLine>& lines) {
  Table table = LinesTable(lines);
  AddTotal(table, "owed to us", TotalOf(lines, /*isOwedByUs=*/false));
  AddTotal(table, "owed by us", TotalOf(lines, /*isOwedByUs=*/true));
  return table.Text();
}

std::string ListText(const std::vector<desk::IntercompanyLine>& lines, const std::vector<std::int16_t>& notShown) {
  if (!lines.empty()) return TableText(lines);
  return notShown.empty() ? "No intercompany transactions.\n" : "No intercompany transactions that you may see.\n";
}

void ListTransaction(Invocation& invocation, const TransactionsOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", *options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::IntercompanyLine> lines = desk::ListIntercompanyLines(company, txnId);
  invocation.ReportList({{"transactions", desk::JsonOf(lines)}}, kLineColumns, ListText(lines, {}));
}

void ListPeriod(Invocation& invocation, const TransactionsOptions& options) {
  const DateType32 from = PeriodBound("--from", options.from);
  const DateType32 to = PeriodBound("--to", options.to);
  const desk::Period period(from, to);
  const desk::LineFilter filter = FilterOf(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::IntercompanyLine> lines = desk::ListIntercompanyLines(company, period, filter);
  const std::vector<std::int16_t> notShown = desk::TypesNotShown(company);
  invocation.ReportList({{"transactions", desk::JsonOf(lines)}, {"notShown", NamesOf(notShown)}}, kLineColumns,
                        ListText(lines, notShown) + NotShownText(notShown));
  // A table of a spreadsheet has no place for it.
  if (invocation.options.csv && !notShown.empty()) PrintError("note: " + NotShownText(notShown));
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
  command.add_option(kPartnerOption, options->partner, "Only those with this partner: its realm id or its name")
      ->excludes(txn);
  command.add_option("--type", options->type, "Only bill, check or journal")
      ->type_name(kTransactionTypes)
      ->excludes(txn);
  command.add_option("--state", options->state, "Only those in this state: a name such as came-back, or the number")
      ->type_name(kTransactionStates)
      ->excludes(txn);
  command.add_option("--request", options->request, "Only what has this request id")->excludes(txn);
  command
      .add_option("--account", options->account,
                  "Only lines with this account, also as the liability account; by number, record number or "
                  "colon-separated name")
      ->excludes(txn);
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) {
    if (options->txn) {
      ListTransaction(run, *options);
    } else {
      ListPeriod(run, *options);
    }
  });
}

}  // namespace app
