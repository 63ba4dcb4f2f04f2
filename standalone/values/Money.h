#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "standalone/values/CheckedText.h"
#include "standalone/values/Decimals.h"

namespace standalone {

// An amount with its currency. Of a line, a debit is positive and a credit negative.
struct Money {
  std::int64_t minorUnits = 0;
  std::string currency;  // ISO 4217; empty when the company has none
  Decimals decimals = kTwoDecimals;
  friend bool operator==(const Money&, const Money&) = default;
};

// As people read it: -1,234.50.
std::string FormatAmount(const Money& money);

// All decimals and a leading minus, without separators, as programs read amounts: -1234.50. For every 64-bit number.
std::string FormatPlainAmount(std::int64_t minorUnits, Decimals decimals);
std::string FormatPlainAmount(const Money& money);

// Throws InvalidInput unless the text is an amount of some currency. Whether it is one of the company's only its file
// tells: RequireAmount().
std::string_view RequireLineAmount(std::string_view text);
using LineAmount = CheckedText<RequireLineAmount>;

// Throws InvalidInput unless the text is an amount of up to 22 bytes, which a rejected transaction has for it.
std::string_view RequireRejectedAmount(std::string_view text);
using RejectedAmount = CheckedText<RequireRejectedAmount>;

// Of a text that ParseAmount() does not read: it and what would be right, as the end of a sentence, without a full
// stop. The currency is empty when the company has none.
std::string WhyNoAmount(std::string_view text, std::string_view currency, Decimals decimals);

// The minor units of an amount that one line can carry, either way up to kLargestAmount; throws InvalidInput for other
// texts.
std::int64_t RequireAmount(std::string_view text, std::string_view currency, Decimals decimals);

}  // namespace standalone
