#pragma once

#include "MultiEntityHost/Money.h"
#include "standalone/books/SettingsTable.h"

namespace standalone {

// Money texts with the company's decimals; see Amount.h for their form. Within a unit of work.
class MoneyService final : public ::Money {
 public:
  explicit MoneyService(SettingsTable& settings) noexcept : settings_(settings) {}

  void String2Dollar(BalType& amount, const char* text) override;
  // Every format is the one for display. A text that does not fit is left out, as a part of it would be another amount.
  void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) override;

 private:
  SettingsTable& settings_;
};

}  // namespace standalone
