#include "platform/Clock.h"

#include "platform/LocalTime.h"

namespace platform {

namespace {

constexpr int kYearOfTm = 1900;

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

DateType32 Today(Clock& clock) {
  return DayOf(LocalTimeOf(clock.Now()));
}

}  // namespace platform
