#include "standalone/values/Dates.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "standalone/values/Characters.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr int kFirstYear = 1900;
constexpr std::size_t kIsoLength = 10;

bool HasIsoShape(std::string_view text) {
  if (text.size() != kIsoLength || text[4] != '-' || text[7] != '-') return false;
  return std::ranges::count_if(text, IsAsciiDigit) == 8;
}

int Number(std::string_view digits) {
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

std::optional<DateType32> DayOfTheCalendar(std::string_view text) {
  if (!HasIsoShape(text)) return std::nullopt;
  const DateType32 date(Number(text.substr(0, 4)), Number(text.substr(5, 2)), Number(text.substr(8, 2)));
  return date.ValidDate() ? std::optional(date) : std::nullopt;
}

std::string Padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

}  // namespace

DateType32 ParseDate(std::string_view what, std::string_view text) {
  const std::optional<DateType32> date = DayOfTheCalendar(text);
  if (date && date->GetYear() >= kFirstYear) return *date;
  throw InvalidInput(std::string(what) + " " + Quoted(text) +
                     " is no day of the calendar from 1900 on; write it as YYYY-MM-DD, such as 2026-01-31.");
}

DayAndTime ParseDayAndTime(std::string_view what, std::string_view text) {
  constexpr std::size_t kLength = 19;
  const auto isNumber = [](std::string_view digits, int least, int most) {
    const bool areDigits = std::ranges::all_of(digits, IsAsciiDigit);
    return areDigits && Number(digits) >= least && Number(digits) <= most;
  };
  const bool hasShape = text.size() == kLength && text[kIsoLength] == 'T' && text[13] == ':' && text[16] == ':';
  const std::optional<DateType32> day = hasShape ? DayOfTheCalendar(text.substr(0, kIsoLength)) : std::nullopt;
  if (day && isNumber(text.substr(11, 2), 0, 23) && isNumber(text.substr(14, 2), 0, 59) &&
      isNumber(text.substr(17, 2), 0, 59)) {
    const std::chrono::seconds time = std::chrono::hours(Number(text.substr(11, 2))) +
                                      std::chrono::minutes(Number(text.substr(14, 2))) +
                                      std::chrono::seconds(Number(text.substr(17, 2)));
    return {*day, time};
  }
  throw InvalidInput(std::string(what) + " " + Quoted(text) +
                     " is no time of a day; write the local time as YYYY-MM-DDTHH:MM:SS, such as 2026-01-31T09:30:00.");
}

std::string FormatIsoDate(DateType32 date) {
  if (date == NullDate()) return {};
  return Padded(date.GetYear(), 4) + "-" + Padded(date.GetMonth(), 2) + "-" + Padded(date.GetDay(), 2);
}

std::string FormatDayAndTime(const DayAndTime& time, char between) {
  const std::chrono::hh_mm_ss<std::chrono::seconds> clock(time.sinceMidnight);
  const auto part = [](auto count) {
    return Padded(static_cast<int>(count.count()), 2);
  };
  return FormatIsoDate(time.day) + between + part(clock.hours()) + ":" + part(clock.minutes()) + ":" +
         part(clock.seconds());
}

std::string FormatUtc(std::chrono::sys_time<std::chrono::milliseconds> moment) {
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const DayAndTime time{.day = {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
                                static_cast<int>(static_cast<unsigned>(date.day()))},
                        .sinceMidnight = std::chrono::floor<std::chrono::seconds>(moment - day)};
  return FormatDayAndTime(time, 'T') + "Z";
}

DateType32 DayAfter(DateType32 date) {
  const std::chrono::year_month_day next(date.Days() + std::chrono::days(1));
  return {static_cast<int>(next.year()), static_cast<int>(static_cast<unsigned>(next.month())),
          static_cast<int>(static_cast<unsigned>(next.day()))};
}

}  // namespace standalone
