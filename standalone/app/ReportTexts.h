#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "standalone/desk/Reports.h"

namespace CLI {
class App;
}

// What the reports share.
namespace app {

struct PeriodOptions {
  std::optional<std::string> asOf;  // another way to give the last day, without a first one
  std::optional<std::string> from;
  std::optional<std::string> to;
};

// --from and --to, and --as-of for what stands at the end of a day.
void AddPeriod(CLI::App& command, PeriodOptions& options, bool withAsOf);
// Throws standalone::InvalidInput.
desk::Period PeriodOf(const PeriodOptions& options);
// "from 2026-01-01 to 2026-03-31", "from 2026-01-01 on", "up to 2026-03-31"; empty for all days.
std::string PeriodText(const desk::Period& period);

// For people, and for programs.
std::string AmountText(const desk::ReportCurrency& currency, std::int64_t amount);
std::string PlainAmount(const desk::ReportCurrency& currency, std::int64_t amount);
// ", USD" behind a heading; empty when the company has no currency.
std::string InCurrency(const desk::ReportCurrency& currency);

// "6100 Utilities:Power".
std::string NumberedText(const desk::NumberedAccount& account);
// What tells people more of a line: its own memo, or that of its transaction.
const std::string& MemoText(const std::string& lineMemo, const std::string& memo);

}  // namespace app
