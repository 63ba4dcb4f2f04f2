#pragma once

#include <cstddef>
#include <cstdint>

// An amount of money in minor units of the company's home currency.
struct BalType {
  std::int64_t minorUnits = 0;
};

// How a money text is written. The meaning of the bits is the host's.
enum MoneyFormat : std::uint32_t {
  kMoneyFormatDisplay = 0x10000,
};

// The host's money texts. A host implements it; the module calls it on the user-interface thread.
class Money {
 public:
  // Reads an amount text into `amount`; a text that is no amount leaves `amount` as it was.
  virtual void String2Dollar(BalType& amount, const char* text) = 0;

  // Writes `amount` as a NUL-terminated text of at most size - 1 characters into `buffer`.
  virtual void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) = 0;

 protected:
  ~Money() = default;
};
