#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/values/Decimals.h"

namespace standalone {

// The largest amount of one line, either way, in minor units: 99,999,999,999.99 of a currency with two decimals.
inline constexpr std::int64_t kLargestAmount = 9'999'999'999'999;

// Reads an amount text into minor units: an optional sign, digits with or without thousands separators (commas before
// every third digit from the right, all or none), and after a point, which needs at least one digit before it, one
// decimal or more, up to `decimals`. Nothing else, no blanks; none beyond kLargestAmount.
std::optional<std::int64_t> ParseAmount(std::string_view text, Decimals decimals) noexcept;

// Whether the text is an amount of some currency; of an amount, how many decimals are written.
bool HasAmountForm(std::string_view text) noexcept;
std::size_t WrittenDecimals(std::string_view amount) noexcept;

// Their sum; none when it is beyond what 64 bits hold.
std::optional<std::int64_t> AddAmounts(std::int64_t left, std::int64_t right) noexcept;

// All decimals, thousands separators, a leading minus: -1,234.50. For every 64-bit number.
std::string FormatAmount(std::int64_t minorUnits, Decimals decimals);

}  // namespace standalone
