// The loop where the operating system has no timers for a thread: it keeps them itself.
#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "platform/LoopEvents.h"
#include "platform/ThreadTimers.h"

namespace platform {

namespace {

class TimedLoopEvents final : public LoopEvents {
 public:
  explicit TimedLoopEvents(LoopClock& clock) noexcept : clock_(clock) {}

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return timers_.Set(timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { timers_.Kill(timer); }

  bool RunDue(const Dispatch& dispatch) override {
    return timers_.FireDue([&](const std::function<void()>& procedure) { dispatch(procedure, Due::kTimer); });
  }

  void Sleep(std::optional<std::chrono::milliseconds> longest) override {
    std::optional<LoopClock::TimePoint> deadline = timers_.NextDue();
    if (longest) {
      const LoopClock::TimePoint latest = clock_.Now() + *longest;
      deadline = deadline ? std::min(*deadline, latest) : latest;
    }
    std::unique_lock lock(mutex_);
    if (!isWoken_) clock_.Wait(lock, wake_, deadline);
    isWoken_ = false;
  }

  void Wake() noexcept override {
    const std::lock_guard lock(mutex_);
    isWoken_ = true;
    wake_.notify_one();
  }

 private:
  LoopClock& clock_;
  ThreadTimers timers_{clock_};
  std::mutex mutex_;
  std::condition_variable wake_;
  bool isWoken_ = false;
};

}  // namespace

std::unique_ptr<LoopEvents> MakeLoopEvents(LoopClock& clock) {
  return std::make_unique<TimedLoopEvents>(clock);
}

}  // namespace platform
