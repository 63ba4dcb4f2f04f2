#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "fuzz/Fuzzing.h"
#include "standalone/services/MoneyService.h"
#include "standalone/values/Amount.h"

// Amount texts of people, files and partners.

namespace {

using fuzzing::Require;
using standalone::FormatAmount;
using standalone::kLargestAmount;
using standalone::ParseAmount;

// Sign, whole digits without leading zeros and two decimals, found without arithmetic.
std::string Canonical(std::string text) {
  std::erase(text, ',');
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.erase(0, 1);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string whole = text.substr(0, point);
  std::string decimals = point < text.size() ? text.substr(point + 1) : "";
  decimals.resize(2, '0');
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
  const bool isZero = whole == "0" && decimals == "00";
  return (isNegative && !isZero ? "-" : "") + whole + "." + decimals;
}

void CheckText(std::string_view text) {
  const std::optional<std::int64_t> amount = ParseAmount(text);
  constexpr std::int64_t kBefore = 4711;
  BalType money{kBefore};
  standalone::MoneyService service;
  service.String2Dollar(money, std::string(text).c_str());
  const bool hasNul = text.find('\0') != std::string_view::npos;
  if (!hasNul) Require(money.minorUnits == amount.value_or(kBefore), "the host's money reads what the amount is");
  if (!amount) return;

  Require(*amount >= -kLargestAmount && *amount <= kLargestAmount, "an amount is not beyond the largest");
  Require(Canonical(std::string(text)) == Canonical(FormatAmount(*amount)), "an amount is printed as it was written");
  Require(ParseAmount(FormatAmount(*amount)) == *amount, "a printed amount is read back");
}

void CheckNumber(std::int64_t number) {
  const std::string text = FormatAmount(number);
  const bool isAmount = number >= -kLargestAmount && number <= kLargestAmount;
  Require(ParseAmount(text) == (isAmount ? std::optional(number) : std::nullopt), "any number is printed for reading");

  constexpr std::size_t kScreenWidth = 30;
  std::array<char, kScreenWidth> buffer{};
  standalone::MoneyService service;
  service.Money2Str_s(buffer.data(), buffer.size(), BalType{number}, kMoneyFormatDisplay);
  Require(text == buffer.data(), "any number fits the screen's text");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  CheckText(fuzzing::Text(bytes, size));
  std::int64_t number = 0;
  std::memcpy(&number, bytes, std::min(size, sizeof number));
  CheckNumber(number);
  return 0;
}
