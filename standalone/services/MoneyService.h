#pragma once

#include "MultiEntityHost/Money.h"

namespace standalone {

// Money texts of a currency with two decimals; see Amount.h for their form.
class MoneyService final : public Money {
 public:
  void String2Dollar(BalType& amount, const char* text) override;
  // Every format is the one for display. A text that does not fit is left out, as a part of it would be another amount.
  void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) override;
};

}  // namespace standalone
