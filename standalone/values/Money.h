#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "standalone/values/CheckedText.h"

namespace standalone {

// An amount with its currency. Of a line, a debit is positive and a credit negative.
struct Money {
  std::int64_t minorUnits = 0;
  std::string currency;  // ISO 4217; empty when the company has none
  friend bool operator==(const Money&, const Money&) = default;
};

// Two decimals and a leading minus, without separators, as programs read amounts: -1234.50. For every 64-bit number.
std::string FormatPlainAmount(std::int64_t minorUnits);

// An amount that one line can carry, either way up to kLargestAmount.
class LineAmount {
 public:
  // Both throw InvalidInput. The text is one as ParseAmount() reads it.
  explicit LineAmount(std::string_view text);
  explicit LineAmount(std::int64_t minorUnits);

  std::int64_t MinorUnits() const noexcept { return minorUnits_; }

 private:
  std::int64_t minorUnits_ = 0;
};

// Throws InvalidInput unless the text is an amount of up to 22 bytes, which a rejected transaction has for it.
std::string_view RequireRejectedAmount(std::string_view text);
using RejectedAmount = CheckedText<RequireRejectedAmount>;

}  // namespace standalone
