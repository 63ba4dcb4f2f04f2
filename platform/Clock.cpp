#include "platform/Clock.h"

namespace platform {

namespace {

constexpr int kFirstYear = 1900;

class MachineClock final : public Clock {
 public:
  TimePoint Now() override { return std::chrono::system_clock::now(); }
};

DateType32 DayOf(const std::tm& local) {
  return {local.tm_year + kFirstYear, local.tm_mon + 1, local.tm_mday};
}

}  // namespace

Clock& SystemClock() noexcept {
  static MachineClock clock;
  return clock;
}

Clock::TimePoint ClockFrom::Now() {
  return begin_ + std::chrono::duration_cast<TimePoint::duration>(std::chrono::steady_clock::now() - start_);
}

std::tm LocalTimeOf(Clock::TimePoint moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(moment));
  std::tm local{};
#if defined(_WIN32)
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  return local;
}

std::optional<Clock::TimePoint> MomentOf(DateType32 day, std::chrono::seconds sinceMidnight) {
  const auto hours = std::chrono::duration_cast<std::chrono::hours>(sinceMidnight);
  const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(sinceMidnight - hours);
  std::tm local{};
  local.tm_year = day.GetYear() - kFirstYear;
  local.tm_mon = day.GetMonth() - 1;
  local.tm_mday = day.GetDay();
  local.tm_hour = static_cast<int>(hours.count());
  local.tm_min = static_cast<int>(minutes.count());
  local.tm_sec = static_cast<int>((sinceMidnight - hours - minutes).count());
  local.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&local);
  if (seconds == std::time_t{-1}) return std::nullopt;
  return std::chrono::system_clock::from_time_t(seconds);
}

DateType32 Today(Clock& clock) {
  return DayOf(LocalTimeOf(clock.Now()));
}

}  // namespace platform
