#include "standalone/values/Dates.h"

#include <algorithm>
#include <charconv>
#include <ctime>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr int kFirstYear = 1900;
constexpr std::size_t kIsoLength = 10;

bool HasIsoShape(std::string_view text) {
  if (text.size() != kIsoLength || text[4] != '-' || text[7] != '-') return false;
  return std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }) == 8;
}

int Number(std::string_view digits) {
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

std::string Padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

}  // namespace

DateType32 ParseDate(std::string_view what, std::string_view text) {
  if (HasIsoShape(text)) {
    const DateType32 date(Number(text.substr(0, 4)), Number(text.substr(5, 2)), Number(text.substr(8, 2)));
    if (date.ValidDate() && date.GetYear() >= kFirstYear) return date;
  }
  throw InvalidInput(std::string(what) + " " + Quoted(text) +
                     " is no day of the calendar from 1900 on; write it as YYYY-MM-DD, such as 2026-01-31.");
}

std::string FormatIsoDate(DateType32 date) {
  if (date == NullDate()) return {};
  return Padded(date.GetYear(), 4) + "-" + Padded(date.GetMonth(), 2) + "-" + Padded(date.GetDay(), 2);
}

DateType32 Today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#if defined(_WIN32)
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

}  // namespace standalone
