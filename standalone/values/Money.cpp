#include "standalone/values/Money.h"

#include <optional>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

std::string FormatPlainAmount(std::int64_t minorUnits) {
  std::string text = FormatAmount(minorUnits);
  std::erase(text, ',');
  return text;
}

LineAmount::LineAmount(std::string_view text) {
  const std::optional<std::int64_t> amount = ParseAmount(text);
  if (!amount) {
    throw InvalidInput("amount " + Quoted(text) +
                       " is not acceptable; write it like 1234.50 or 1,234.50, with at most two decimals, up to " +
                       FormatAmount(kLargestAmount));
  }
  minorUnits_ = *amount;
}

LineAmount::LineAmount(std::int64_t minorUnits) : LineAmount(FormatAmount(minorUnits)) {}

std::string_view RequireRejectedAmount(std::string_view text) {
  static_cast<void>(LineAmount(text));
  if (text.size() <= kRejectedAmountLength) return text;
  throw InvalidInput("amount " + Quoted(text) + " is too long; write it with at most " +
                     std::to_string(kRejectedAmountLength) + " characters");
}

}  // namespace standalone
