#include "standalone/services/MoneyService.h"

#include <cstring>
#include <optional>
#include <string>

#include "standalone/values/Amount.h"

namespace standalone {

void MoneyService::String2Dollar(BalType& amount, const char* text) {
  if (const std::optional<std::int64_t> minorUnits = ParseAmount(text, settings_.Get().decimals))
    amount.minorUnits = *minorUnits;
}

void MoneyService::Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat /*format*/) {
  if (size == 0) return;
  const std::string text = FormatAmount(amount.minorUnits, settings_.Get().decimals);
  const std::size_t length = text.size() < size ? text.size() : 0;
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

}  // namespace standalone
