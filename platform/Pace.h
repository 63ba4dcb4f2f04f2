#pragma once

#include <algorithm>
#include <chrono>

namespace platform {

// Lets so many things happen in a row, and then one in each span of time; what did not happen meanwhile may be made up
// for.
class Pace {
 public:
  using Clock = std::chrono::steady_clock;

  Pace(int inARow, Clock::duration span) noexcept : span_(span), ahead_((inARow - 1) * span) {}

  // When the next one may happen, which is then counted as happening: now or later.
  Clock::time_point Next(Clock::time_point now) noexcept {
    const Clock::time_point next = std::max(now, due_ - ahead_);
    due_ = std::max(next, due_) + span_;
    return next;
  }

 private:
  Clock::duration span_;
  Clock::duration ahead_;
  Clock::time_point due_;  // of the next one, if all had kept their distance
};

}  // namespace platform
