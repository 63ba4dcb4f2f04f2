#pragma once

#include <chrono>
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

}  // namespace platform
