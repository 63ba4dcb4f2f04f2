#include "standalone/values/Money.h"

#include <array>
#include <optional>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Currency.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// 1,234 and a half, as far as it has halves.
constexpr std::array<std::int64_t, Decimals::kMost + 1> kExamples{1'234, 12'345, 123'450, 1'234'500, 12'345'000};

std::string MostText(Decimals decimals) {
  if (decimals.Count() == 0) return "without decimals";
  return "with at most " + std::string(InWords(decimals)) + (decimals.Count() == 1 ? " decimal" : " decimals");
}

// A company keeps the decimals it has whatever its currency has elsewhere.
std::string OwnerText(std::string_view currency, Decimals decimals) {
  if (currency.empty()) return "the company's amounts, which have ";
  return std::string(currency) + (decimals == DecimalsOf(currency) ? ", which has " : ", which in this company has ");
}

std::string ExamplesText(Decimals decimals) {
  const std::int64_t example = kExamples.at(decimals.Count());
  return FormatPlainAmount(example, decimals) + " or " + FormatAmount(example, decimals);
}

}  // namespace

std::string FormatAmount(const Money& money) {
  return FormatAmount(money.minorUnits, money.decimals);
}

std::string FormatPlainAmount(std::int64_t minorUnits, Decimals decimals) {
  std::string text = FormatAmount(minorUnits, decimals);
  std::erase(text, ',');
  return text;
}

std::string FormatPlainAmount(const Money& money) {
  return FormatPlainAmount(money.minorUnits, money.decimals);
}

std::string_view RequireLineAmount(std::string_view text) {
  if (HasAmountForm(text)) return text;
  throw InvalidInput("amount " + Quoted(text) + " is not acceptable; write it like " + ExamplesText(kTwoDecimals) +
                     ", with no more decimals than the company's currency has, up to 13 digits in all");
}

std::string_view RequireRejectedAmount(std::string_view text) {
  if (RequireLineAmount(text).size() <= kRejectedAmountLength) return text;
  throw InvalidInput("amount " + Quoted(text) + " is too long; write it with at most " +
                     std::to_string(kRejectedAmountLength) + " characters");
}

std::string WhyNoAmount(std::string_view text, std::string_view currency, Decimals decimals) {
  if (HasAmountForm(text) && WrittenDecimals(text) > decimals.Count()) {
    return Quoted(text) + " has more decimals than " + OwnerText(currency, decimals) + std::string(InWords(decimals));
  }
  return Quoted(text) + " is not acceptable; write it like " + ExamplesText(decimals) + ", " + MostText(decimals) +
         ", up to " + FormatAmount(kLargestAmount, decimals);
}

std::int64_t RequireAmount(std::string_view text, std::string_view currency, Decimals decimals) {
  if (const std::optional<std::int64_t> amount = ParseAmount(text, decimals)) return *amount;
  throw InvalidInput("amount " + WhyNoAmount(text, currency, decimals));
}

}  // namespace standalone
