#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace platform {

// The time by which timers are due, and the sleep until then.
class LoopClock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  virtual ~LoopClock() = default;
  virtual TimePoint Now() = 0;
  // Lets go of the lock and sleeps until `wake` is notified or the deadline passes; it may return early.
  virtual void Wait(std::unique_lock<std::mutex>& lock, std::condition_variable& wake,
                    std::optional<TimePoint> deadline) = 0;

 protected:
  LoopClock() = default;
  LoopClock(const LoopClock&) = default;
  LoopClock& operator=(const LoopClock&) = default;
};

// The machine's steady clock. It lives as long as the program.
LoopClock& SteadyLoopClock() noexcept;

}  // namespace platform
