#include "platform/Clock.h"

#include "platform/LocalTime.h"
#include "platform/SystemTime.h"

namespace platform {

namespace {

class MachineClock final : public Clock {
 public:
  TimePoint Now() override { return std::chrono::system_clock::now(); }
};

DateType32 DayOf(const std::tm& local) {
  return {local.tm_year + kYearOfTm, local.tm_mon + 1, local.tm_mday};
}

}  // namespace

Clock& SystemClock() noexcept {
  static MachineClock clock;
  return clock;
}

Clock::TimePoint ClockFrom::Now() {
  return begin_ + std::chrono::duration_cast<TimePoint::duration>(std::chrono::steady_clock::now() - start_);
}

std::optional<Clock::TimePoint> MomentOf(DateType32 day, std::chrono::seconds sinceMidnight) {
  if (day.GetYear() < kFirstYear || day.GetYear() > kLastYear) return std::nullopt;
  const std::optional<Clock::TimePoint> moment = MomentShownAs(day, sinceMidnight);
  if (!moment) return moment;
  const std::tm shown = LocalTimeOf(*moment);
  const auto shownTime =
      std::chrono::hours(shown.tm_hour) + std::chrono::minutes(shown.tm_min) + std::chrono::seconds(shown.tm_sec);
  return DayOf(shown) == day && shownTime == sinceMidnight ? moment : std::nullopt;
}

void FillSystemTime(Clock::TimePoint moment, _SYSTEMTIME& filled) {
  const auto second = std::chrono::floor<std::chrono::seconds>(moment);
  const std::tm local = LocalTimeOf(moment);
  filled.wYear = static_cast<std::uint16_t>(local.tm_year + kYearOfTm);
  filled.wMonth = static_cast<std::uint16_t>(local.tm_mon + 1);
  filled.wDayOfWeek = static_cast<std::uint16_t>(local.tm_wday);
  filled.wDay = static_cast<std::uint16_t>(local.tm_mday);
  filled.wHour = static_cast<std::uint16_t>(local.tm_hour);
  filled.wMinute = static_cast<std::uint16_t>(local.tm_min);
  filled.wSecond = static_cast<std::uint16_t>(local.tm_sec);
  filled.wMilliseconds =
      static_cast<std::uint16_t>(std::chrono::floor<std::chrono::milliseconds>(moment - second).count());
}

bool CanDateBy(Clock::TimePoint moment) {
  // Beyond all those years; at the ends of what the clock counts, whole seconds cannot be told.
  constexpr std::chrono::days kFarthest{366 * 250};
  if (moment.time_since_epoch() > kFarthest || moment.time_since_epoch() < -kFarthest) return false;
  const int year = LocalTimeOf(moment).tm_year + kYearOfTm;
  return year >= kFirstYearOfDates && year <= kLastYear;
}

DateType32 Today(Clock& clock) {
  return DayOf(LocalTimeOf(clock.Now()));
}

}  // namespace platform
