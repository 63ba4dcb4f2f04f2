#pragma once

#include <string>

// A day or month as dates are written: in decimal, with a leading zero below 10.
inline std::string TwoDigits(int number) {
  std::string digits = std::to_string(number);
  if (number < 10) digits.insert(digits.begin(), '0');
  return digits;
}
