#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "MultiEntityHost/Platform.h"
#include "platform/LoopClock.h"

namespace platform {

// What a message loop sleeps on, and what the operating system has for its thread. Made and used on the thread of the
// loop, except for Wake().
class LoopEvents {
 public:
  // What is due: a timer, or something else that the system has for the thread.
  enum class Due { kTimer, kOther };
  // Runs the work that it is given.
  using Dispatch = std::function<void(const std::function<void()>& work, Due due)>;

  LoopEvents(const LoopEvents&) = delete;
  LoopEvents& operator=(const LoopEvents&) = delete;
  virtual ~LoopEvents() = default;

  // A timer of the thread, as Platform has it.
  virtual TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) = 0;
  virtual void KillTimer(TimerId timer) noexcept = 0;

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

}  // namespace platform
