#include "platform/LoopClock.h"

namespace platform {

namespace {

class SteadyClock final : public LoopClock {
 public:
  TimePoint Now() override { return std::chrono::steady_clock::now(); }
  void Wait(std::unique_lock<std::mutex>& lock, std::condition_variable& wake,
            std::optional<TimePoint> deadline) override {
    if (deadline) {
      wake.wait_until(lock, *deadline);
    } else {
      wake.wait(lock);
    }
  }
};

}  // namespace

LoopClock& SteadyLoopClock() noexcept {
  static SteadyClock clock;
  return clock;
}

}  // namespace platform
