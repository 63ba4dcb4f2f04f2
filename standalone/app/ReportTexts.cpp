#include "standalone/app/ReportTexts.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "standalone/app/Values.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Dates.h"

namespace app {

void AddPeriod(CLI::App& command, PeriodOptions& options, bool withAsOf) {
  CLI::Option* from = command.add_option("--from", options.from, "First day, YYYY-MM-DD; open when left out");
  CLI::Option* to = command.add_option("--to", options.to, "Last day, YYYY-MM-DD; open when left out");
  if (!withAsOf) return;
  command.add_option("--as-of", options.asOf, "The day at whose end this stands so, YYYY-MM-DD")
      ->excludes(from)
      ->excludes(to);
}

desk::Period PeriodOf(const PeriodOptions& options) {
  if (options.asOf) return {NullDate(), PeriodBound("--as-of", options.asOf)};
  return {PeriodBound("--from", options.from), PeriodBound("--to", options.to)};
}

std::string PeriodText(const desk::Period& period) {
  const std::string from = standalone::FormatIsoDate(period.From());
  const std::string to = standalone::FormatIsoDate(period.To());
  if (from.empty()) return to.empty() ? "" : "up to " + to;
  return to.empty() ? fmt::format("from {} on", from) : fmt::format("from {} to {}", from, to);
}

std::string AmountText(const desk::ReportCurrency& currency, std::int64_t amount) {
  return standalone::FormatAmount(amount, currency.decimals);
}

std::string PlainAmount(const desk::ReportCurrency& currency, std::int64_t amount) {
  return standalone::FormatPlainAmount(amount, currency.decimals);
}

std::string InCurrency(const desk::ReportCurrency& currency) {
  return currency.code.empty() ? "" : ", " + currency.code;
}

std::string NumberedText(const desk::NumberedAccount& account) {
  return account.number.empty() ? account.name : account.number + ' ' + account.name;
}

const std::string& MemoText(const std::string& lineMemo, const std::string& memo) {
  return lineMemo.empty() ? memo : lineMemo;
}

}  // namespace app
