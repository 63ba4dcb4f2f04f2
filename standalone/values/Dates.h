#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "MultiEntityHost/DateType32.h"

namespace standalone {

// Reads YYYY-MM-DD, years 1900 to 9999; throws InvalidInput that calls the value `what`.
DateType32 ParseDate(std::string_view what, std::string_view text);

// YYYY-MM-DD; empty for the null date.
std::string FormatIsoDate(DateType32 date);

// A time of a day.
struct DayAndTime {
  DateType32 day;
  std::chrono::seconds sinceMidnight{};
};

// Reads YYYY-MM-DDTHH:MM:SS; throws InvalidInput that calls the value `what`.
DayAndTime ParseDayAndTime(std::string_view what, std::string_view text);

}  // namespace standalone
