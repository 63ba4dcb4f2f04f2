#include "standalone/values/Amount.h"

#include <algorithm>
#include <limits>

namespace standalone {

namespace {

constexpr std::size_t kGroup = 3;
constexpr std::size_t kDecimals = 2;

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// Digits only, or groups of three after a first one of one to three.
bool IsWholePart(std::string_view text) {
  if (text.empty()) return false;
  if (text.find(',') == std::string_view::npos) return std::all_of(text.begin(), text.end(), IsDigit);
  const std::size_t first = text.find(',');
  if (first == 0 || first > kGroup || (text.size() - first) % (kGroup + 1) != 0) return false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool isSeparatorPlace = index >= first && (index - first) % (kGroup + 1) == 0;
    if (isSeparatorPlace ? text[index] != ',' : !IsDigit(text[index])) return false;
  }
  return true;
}

bool IsDecimals(std::string_view text) {
  return (text.size() == 1 || text.size() == 2) && std::all_of(text.begin(), text.end(), IsDigit);
}

}  // namespace

std::optional<std::int64_t> ParseAmount(std::string_view text) noexcept {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);

  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  if (!IsWholePart(whole)) return std::nullopt;
  const std::string_view decimals = point == std::string_view::npos ? "0" : text.substr(point + 1);
  if (!IsDecimals(decimals)) return std::nullopt;

  std::int64_t amount = 0;
  for (const char digit : whole) {
    if (digit == ',') continue;
    amount = amount * 10 + (digit - '0');
    if (amount > kLargestAmount) return std::nullopt;
  }
  const std::int64_t tenths = decimals[0] - '0';
  const std::int64_t hundredths = decimals.size() == 2 ? decimals[1] - '0' : 0;
  amount = amount * 100 + tenths * 10 + hundredths;
  if (amount > kLargestAmount) return std::nullopt;
  return isNegative ? -amount : amount;
}

std::optional<std::int64_t> AddAmounts(std::int64_t left, std::int64_t right) noexcept {
  using Limits = std::numeric_limits<std::int64_t>;
  const bool fits = right >= 0 ? left <= Limits::max() - right : left >= Limits::min() - right;
  return fits ? std::optional(left + right) : std::nullopt;
}

std::string FormatAmount(std::int64_t minorUnits) {
  const bool isNegative = minorUnits < 0;
  const auto bits = static_cast<std::uint64_t>(minorUnits);
  std::string text = std::to_string(isNegative ? 0U - bits : bits);
  if (text.size() <= kDecimals) text.insert(0, kDecimals + 1 - text.size(), '0');
  text.insert(text.size() - kDecimals, 1, '.');
  for (std::size_t at = text.size() - kDecimals - 1; at > kGroup; at -= kGroup) text.insert(at - kGroup, 1, ',');
  if (isNegative) text.insert(0, 1, '-');
  return text;
}

}  // namespace standalone
