#include "standalone/values/Amount.h"

#include <algorithm>
#include <limits>

#include "standalone/values/Characters.h"

namespace standalone {

namespace {

constexpr std::size_t kGroup = 3;

// Digits only, or groups of three after a first one of one to three.
bool IsWholePart(std::string_view text) {
  if (text.empty()) return false;
  if (text.find(',') == std::string_view::npos) return std::all_of(text.begin(), text.end(), IsAsciiDigit);
  const std::size_t first = text.find(',');
  if (first == 0 || first > kGroup || (text.size() - first) % (kGroup + 1) != 0) return false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool isSeparatorPlace = index >= first && (index - first) % (kGroup + 1) == 0;
    if (isSeparatorPlace ? text[index] != ',' : !IsAsciiDigit(text[index])) return false;
  }
  return true;
}

bool AreDecimals(std::string_view text, Decimals most) {
  return !text.empty() && text.size() <= most.Count() && std::all_of(text.begin(), text.end(), IsAsciiDigit);
}

struct Parts {
  bool isNegative = false;
  std::int64_t whole = 0;
  std::string_view decimals;  // as they are written
};

// None when the whole part alone is beyond what a line carries.
std::optional<std::int64_t> WholeOf(std::string_view text) {
  if (!IsWholePart(text)) return std::nullopt;
  std::int64_t whole = 0;
  for (const char digit : text) {
    if (digit == ',') continue;
    whole = whole * 10 + (digit - '0');
    if (whole > kLargestAmount) return std::nullopt;
  }
  return whole;
}

std::optional<Parts> PartsOf(std::string_view text, Decimals most) {
  Parts parts{.isNegative = text.starts_with('-'), .whole = 0, .decimals = {}};
  if (parts.isNegative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  if (point != std::string_view::npos) {
    parts.decimals = text.substr(point + 1);
    if (!AreDecimals(parts.decimals, most)) return std::nullopt;
  }
  const std::optional<std::int64_t> whole = WholeOf(text.substr(0, point));
  if (!whole) return std::nullopt;
  parts.whole = *whole;
  return parts;
}

}  // namespace

std::optional<std::int64_t> ParseAmount(std::string_view text, Decimals decimals) noexcept {
  const std::optional<Parts> parts = PartsOf(text, decimals);
  if (!parts) return std::nullopt;
  std::int64_t amount = parts->whole;
  for (const char digit : parts->decimals) amount = amount * 10 + (digit - '0');
  for (std::size_t count = parts->decimals.size(); count < decimals.Count(); ++count) amount *= 10;
  if (amount > kLargestAmount) return std::nullopt;
  return parts->isNegative ? -amount : amount;
}

bool HasAmountForm(std::string_view text) noexcept {
  return PartsOf(text, Decimals(Decimals::kMost)).has_value();
}

std::size_t WrittenDecimals(std::string_view amount) noexcept {
  const std::size_t point = amount.find('.');
  return point == std::string_view::npos ? 0 : amount.size() - point - 1;
}

std::optional<std::int64_t> AddAmounts(std::int64_t left, std::int64_t right) noexcept {
  using Limits = std::numeric_limits<std::int64_t>;
  const bool fits = right >= 0 ? left <= Limits::max() - right : left >= Limits::min() - right;
  return fits ? std::optional(left + right) : std::nullopt;
}

std::string FormatAmount(std::int64_t minorUnits, Decimals decimals) {
  const bool isNegative = minorUnits < 0;
  const auto bits = static_cast<std::uint64_t>(minorUnits);
  const std::size_t count = decimals.Count();
  std::string text = std::to_string(isNegative ? 0U - bits : bits);
  if (text.size() <= count) text.insert(0, count + 1 - text.size(), '0');
  const std::size_t whole = text.size() - count;
  if (count != 0) text.insert(whole, 1, '.');
  for (std::size_t at = whole; at > kGroup; at -= kGroup) text.insert(at - kGroup, 1, ',');
  if (isNegative) text.insert(0, 1, '-');
  return text;
}

}  // namespace standalone
