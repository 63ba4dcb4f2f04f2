#pragma once

#include <functional>
#include <utility>

#include "platform/LoopClock.h"

namespace platform {

// A clock that jumps to whatever the loop sleeps for. `onIdle` is called when the loop would sleep without an end.
class ScriptedLoopClock final : public LoopClock {
 public:
  explicit ScriptedLoopClock(std::function<void()> onIdle = [] {}) : onIdle_(std::move(onIdle)) {}

  TimePoint Now() override { return now_; }

  void Wait(std::unique_lock<std::mutex>& lock, std::condition_variable& /*wake*/,
            std::optional<TimePoint> deadline) override {
    if (deadline) {
      now_ = *deadline;
      return;
    }
    lock.unlock();
    onIdle_();
    lock.lock();
  }

  void Advance(std::chrono::milliseconds time) { now_ += time; }

 private:
  std::function<void()> onIdle_;
  TimePoint now_{std::chrono::hours(1)};
};

}  // namespace platform
