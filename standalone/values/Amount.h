#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace standalone {

// The largest amount of one line, either way, in minor units: 99,999,999,999.99.
inline constexpr std::int64_t kLargestAmount = 9'999'999'999'999;

// Reads an amount text into minor units: an optional sign, digits with or without thousands separators (commas before
// every third digit from the right, all or none), at most two decimals after a point, which need at least one digit
// before it. Nothing else, no blanks; none beyond kLargestAmount.
std::optional<std::int64_t> ParseAmount(std::string_view text) noexcept;

// Their sum; none when it is beyond what 64 bits hold.
std::optional<std::int64_t> AddAmounts(std::int64_t left, std::int64_t right) noexcept;

// Two decimals, thousands separators, a leading minus: -1,234.50. For every 64-bit number.
std::string FormatAmount(std::int64_t minorUnits);

}  // namespace standalone
