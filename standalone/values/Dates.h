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

DateType32 DayAfter(DateType32 date);

// A time of a day.
struct DayAndTime {
  DateType32 day;
  std::chrono::seconds sinceMidnight{};
};

// YYYY-MM-DD, `between`, HH:MM:SS.
std::string FormatDayAndTime(const DayAndTime& time, char between);

// A moment in UTC, to the second: 2026-01-31T09:30:00Z.
std::string FormatUtc(std::chrono::sys_time<std::chrono::milliseconds> moment);

// Reads YYYY-MM-DDTHH:MM:SS of any year; throws InvalidInput that calls the value `what`.
DayAndTime ParseDayAndTime(std::string_view what, std::string_view text);

}  // namespace standalone
