#include "standalone/MoneyService.h"

#include <cstring>
#include <optional>
#include <string>

#include "standalone/Amount.h"

namespace standalone {

void MoneyService::String2Dollar(BalType& amount, const char* text) {
  if (const std::optional<std::int64_t> minorUnits = ParseAmount(text)) amount.minorUnits = *minorUnits;
}

void MoneyService::Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat /*format*/) {
  if (size == 0) return;
  const std::string text = FormatAmount(amount.minorUnits);
  buffer[0] = '\0';
  if (text.size() < size) std::memcpy(buffer, text.c_str(), text.size() + 1);
}

}  // namespace standalone
