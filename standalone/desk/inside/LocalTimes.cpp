#include "standalone/desk/inside/LocalTimes.h"

#include <ctime>

#include "platform/LocalTime.h"

namespace desk {

standalone::DayAndTime LocalTimeAt(platform::Clock::TimePoint moment) {
  const std::tm shown = platform::LocalTimeOf(moment);
  return {.day = {shown.tm_year + platform::kYearOfTm, shown.tm_mon + 1, shown.tm_mday},
          .sinceMidnight = std::chrono::hours(shown.tm_hour) + std::chrono::minutes(shown.tm_min) +
                           std::chrono::seconds(shown.tm_sec)};
}

standalone::DayAndTime LocalTimeAt(std::int64_t milliseconds) {
  const std::chrono::sys_time at{std::chrono::milliseconds(milliseconds)};
  return LocalTimeAt(std::chrono::time_point_cast<platform::Clock::TimePoint::duration>(at));
}

standalone::DayAndTime LocalTimeAfter(platform::Clock& clock, std::chrono::seconds delay) {
  return LocalTimeAt(clock.Now() + delay);
}

}  // namespace desk
