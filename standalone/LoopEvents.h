#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "host/Platform.h"

namespace standalone {

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

// What a message loop sleeps on, and what the operating system has for its thread. Made and used on the thread of the
// loop, except for Wake().
class LoopEvents {
 public:
  // Runs the work that it is given.
  using Dispatch = std::function<void(const std::function<void()>& work)>;

  LoopEvents(const LoopEvents&) = delete;
  LoopEvents& operator=(const LoopEvents&) = delete;
  virtual ~LoopEvents() = default;

  // The platform whose timers RunDue() fires; null when those of the module's own native one come through the loop.
  virtual Platform* TimerPlatform() noexcept = 0;
  // Dispatches what is due, each piece on its own; false when nothing was.
  virtual bool RunDue(const Dispatch& dispatch) = 0;
  // Sleeps until a timer is due, somebody has called Wake() since the last sleep, or `longest` has passed.
  virtual void Sleep(std::optional<std::chrono::milliseconds> longest) = 0;
  // From any thread.
  virtual void Wake() noexcept = 0;

 protected:
  LoopEvents() = default;
};

// Those of this operating system. `clock` is asked where the loop keeps the timers itself, which is everywhere but on
// Windows, and outlives what is made.
std::unique_ptr<LoopEvents> MakeLoopEvents(LoopClock& clock = SteadyLoopClock());

}  // namespace standalone
