#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "MultiEntityHost/Platform.h"
#include "platform/LoopClock.h"
#include "platform/TimerPeriod.h"

namespace platform {

// The timers of a thread, on the terms of the Windows ones: each fires once per period until it is killed, periods that
// were missed count once, and a period beyond the two limits is taken as the nearer of them.
class ThreadTimers {
 public:
  // Runs the procedure that it is given.
  using Dispatch = std::function<void(const std::function<void()>& procedure)>;

  explicit ThreadTimers(LoopClock& clock) noexcept : clock_(clock) {}
  ThreadTimers(const ThreadTimers&) = delete;
  ThreadTimers& operator=(const ThreadTimers&) = delete;
  ~ThreadTimers() = default;

  // Arms the timer of that id anew if there is one, otherwise a new one. Ids are 1 and above.
  TimerId Set(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure);
  void Kill(TimerId timer) noexcept;

  std::optional<LoopClock::TimePoint> NextDue() const;
  // Dispatches the procedures of the timers that are due; false when none is.
  bool FireDue(const Dispatch& dispatch);

 private:
  struct Timer {
    std::chrono::milliseconds period{};
    LoopClock::TimePoint due;
    TimerProcedure procedure = nullptr;
  };

  void Fire(TimerId id, LoopClock::TimePoint now, const Dispatch& dispatch);

  LoopClock& clock_;
  std::map<TimerId, Timer> armed_;
  TimerId lastId_ = 0;
};

}  // namespace platform
