#pragma once

#include <chrono>
#include <ctime>
#include <optional>

#include "MultiEntityHost/DateType32.h"

namespace platform {

// What time it is. Every "now" and "today" of a host comes from the one that it is given; how long something takes and
// when a timer is due do not.
class Clock {
 public:
  using TimePoint = std::chrono::system_clock::time_point;

  virtual ~Clock() = default;
  virtual TimePoint Now() = 0;

 protected:
  Clock() = default;
  Clock(const Clock&) = default;
  Clock& operator=(const Clock&) = default;
};

// The machine's. It lives as long as the program.
Clock& SystemClock() noexcept;

// Shows a moment when it is made, and goes on from there.
class ClockFrom final : public Clock {
 public:
  explicit ClockFrom(TimePoint begin) : begin_(begin) {}
  TimePoint Now() override;

 private:
  TimePoint begin_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// A moment by the calendar and the clock of this place, to the second.
std::tm LocalTimeOf(Clock::TimePoint moment);
// The moment at which this place's clock shows a time of a day, given in seconds since midnight; nothing when it never
// does, as where summer time begins, and outside of the years from kFirstYear to kLastYear.
std::optional<Clock::TimePoint> MomentOf(DateType32 day, std::chrono::seconds sinceMidnight);
inline constexpr int kFirstYear = 1971;
inline constexpr int kLastYear = 2199;

// Whether a clock that shows the moment is right enough to date anything by: from 1900 on, before which no date is read
// here, to kLastYear.
bool CanDateBy(Clock::TimePoint moment);
inline constexpr int kFirstYearOfDates = 1900;

// The day that it is at this place.
DateType32 Today(Clock& clock);

}  // namespace platform
