#include "platform/LocalTime.h"

namespace platform {

std::tm LocalTimeOf(Clock::TimePoint moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(moment));
  std::tm local{};
  localtime_r(&seconds, &local);
  return local;
}

std::optional<Clock::TimePoint> MomentShownAs(DateType32 day, std::chrono::seconds sinceMidnight) {
  const std::chrono::hh_mm_ss time(sinceMidnight);
  std::tm local{};
  local.tm_year = day.GetYear() - kYearOfTm;
  local.tm_mon = day.GetMonth() - 1;
  local.tm_mday = day.GetDay();
  local.tm_hour = static_cast<int>(time.hours().count());
  local.tm_min = static_cast<int>(time.minutes().count());
  local.tm_sec = static_cast<int>(time.seconds().count());
  local.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&local);
  if (seconds == std::time_t{-1}) return std::nullopt;
  return std::chrono::system_clock::from_time_t(seconds);
}

}  // namespace platform
