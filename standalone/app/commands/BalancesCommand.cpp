#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/ReportTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/ListNames.h"

namespace app {

namespace {

constexpr std::int32_t kMostLevels = 1000;

struct BalancesOptions {
  std::string file;
  PeriodOptions period;
  std::optional<std::string> depth;
  std::optional<std::string> account;
  bool all = false;
};

std::string BalancesHeading(const desk::Balances& balances) {
  const std::string period = PeriodText(balances.period);
  if (period.empty()) return fmt::format("Balances of all that is in the books{}", InCurrency(balances.currency));
  return fmt::format("{} {}{}", balances.period.From() == NullDate() ? "Balances" : "Changes", period,
                     InCurrency(balances.currency));
}

// One side of the account; the other one is left blank.
std::string SideText(const desk::ReportCurrency& currency, std::int64_t amount, bool isOfThisSide) {
  return isOfThisSide ? AmountText(currency, amount) : "";
}

std::string BalancesText(const desk::Balances& balances) {
  if (balances.lines.empty()) return "No account has lines in these days.\n";
  Table table({{.title = "Number", .importance = Importance::kMinor, .fit = Fit::kWhole},
               {.title = "Account"},
               {.title = "Debit", .align = Align::kRight},
               {.title = "Credit", .align = Align::kRight}});
  for (const desk::AccountBalance& line : balances.lines) {
    const std::string name = line.level == 0 ? line.account.name : std::string(standalone::LastPart(line.account.name));
    table.Add({line.account.number, std::string(2 * line.level, ' ') + name + (line.deleted ? " (deleted)" : ""),
               SideText(balances.currency, line.balance, line.balance >= 0),
               SideText(balances.currency, -line.balance, line.balance < 0)});
  }
  if (balances.totals) {
    table.AddTotal({"", "Total", AmountText(balances.currency, balances.totals->debits),
                    AmountText(balances.currency, balances.totals->credits)});
  }
  return Wrapped(BalancesHeading(balances)) + '\n' + table.Text();
}

constexpr std::array kBalanceColumns{"id",    "number", "name",   "type", "typeNumber", "deleted",
                                     "level", "debit",  "credit", "own",  "currency"};

Json BalanceRows(const desk::Balances& balances) {
  const Json json = desk::JsonOf(balances);
  Json rows = json.at("balances");
  for (Json& row : rows) row["currency"] = json.at("currency");
  return rows;
}

void ShowBalances(Invocation& invocation, const BalancesOptions& options) {
  desk::BalancesQuery query{
      .period = PeriodOf(options.period), .account = options.account, .depth = {}, .withUnused = options.all};
  if (options.depth) query.depth = static_cast<std::size_t>(WholeNumber("--depth", *options.depth, 1, kMostLevels));
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Balances balances = desk::ReadBalances(company, query);
  invocation.ReportList(invocation.options.csv ? Json{{"rows", BalanceRows(balances)}} : desk::JsonOf(balances),
                        kBalanceColumns, BalancesText(balances));
}

}  // namespace

void AddBalances(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<BalancesOptions>();
  CLI::App& command = AddFileCommand(program, "balances",
                                     "Tell what the accounts hold at the end of a day, or what has changed in a period",
                                     "balances alder.company --as-of 2024-12-31 --depth 1", options->file);
  AddPeriod(command, options->period, /*withAsOf=*/true);
  command.add_option("--depth", options->depth, "How many levels of accounts to tell; those below are part of theirs");
  command.add_option("--account", options->account,
                     "Only this account, by number, record number or colon-separated name, and those below it");
  command.add_flag("--all", options->all, "Also accounts without a line in these days");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ShowBalances(run, *options); });
}

}  // namespace app
