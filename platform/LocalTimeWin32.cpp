// By the zone of the system, which that of the C runtime need not be.
#include <cstdint>

#include "platform/LocalTime.h"
#include "platform/SystemTime.h"

namespace platform {

namespace {

// File times count tenths of a microsecond from 1601 on.
using FileTicks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
constexpr std::chrono::seconds kFrom1601To1970{11'644'473'600};

FILETIME FileTimeOf(Clock::TimePoint moment) {
  const auto since1601 = std::chrono::floor<FileTicks>(moment.time_since_epoch()) + kFrom1601To1970;
  const auto ticks = static_cast<std::uint64_t>(std::chrono::duration_cast<FileTicks>(since1601).count());
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32U)};
}

Clock::TimePoint MomentOfFileTime(const FILETIME& time) {
  const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
  const auto since1970 = FileTicks(static_cast<std::int64_t>(ticks)) - kFrom1601To1970;
  return Clock::TimePoint(std::chrono::duration_cast<Clock::TimePoint::duration>(since1970));
}

}  // namespace

std::tm LocalTimeOf(Clock::TimePoint moment) {
  const FILETIME time = FileTimeOf(moment);
  SYSTEMTIME utc{};
  SYSTEMTIME shown{};
  ::FileTimeToSystemTime(&time, &utc);
  ::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &shown);
  std::tm local{};
  local.tm_year = shown.wYear - kYearOfTm;
  local.tm_mon = shown.wMonth - 1;
  local.tm_mday = shown.wDay;
  local.tm_wday = shown.wDayOfWeek;
  local.tm_hour = shown.wHour;
  local.tm_min = shown.wMinute;
  local.tm_sec = shown.wSecond;
  local.tm_isdst = -1;
  return local;
}

std::optional<Clock::TimePoint> MomentShownAs(DateType32 day, std::chrono::seconds sinceMidnight) {
  const std::chrono::hh_mm_ss time(sinceMidnight);
  SYSTEMTIME shown{};
  shown.wYear = static_cast<WORD>(day.GetYear());
  shown.wMonth = static_cast<WORD>(day.GetMonth());
  shown.wDay = static_cast<WORD>(day.GetDay());
  shown.wHour = static_cast<WORD>(time.hours().count());
  shown.wMinute = static_cast<WORD>(time.minutes().count());
  shown.wSecond = static_cast<WORD>(time.seconds().count());
  SYSTEMTIME utc{};
  FILETIME moment{};
  if (::TzSpecificLocalTimeToSystemTime(nullptr, &shown, &utc) == 0 || ::SystemTimeToFileTime(&utc, &moment) == 0) {
    return std::nullopt;
  }
  return MomentOfFileTime(moment);
}

}  // namespace platform
