// The platform of the loop where the operating system has no timers for a thread: the loop keeps them itself.
#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "platform/LoopEvents.h"
#include "platform/NativePlatform.h"
#include "platform/ThreadTimers.h"

namespace platform {

namespace {

class LoopPlatform final : public Platform {
 public:
  explicit LoopPlatform(ThreadTimers& timers) noexcept : timers_(timers) {}

  void GetLocalTime(_SYSTEMTIME& now) override { NativePlatform().GetLocalTime(now); }

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return timers_.Set(timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { timers_.Kill(timer); }

  LibraryHandle LoadLibraryA(const char* fileName) override { return NativePlatform().LoadLibraryA(fileName); }
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override {
    return NativePlatform().GetProcAddress(library, entry);
  }
  void FreeLibrary(LibraryHandle library) noexcept override { NativePlatform().FreeLibrary(library); }

  // Blocks that nobody gives back end with the host.
  void* LocalAlloc(std::uint32_t /*flags*/, std::size_t bytes) override {
    auto block = std::make_unique<std::byte[]>(bytes);
    void* const address = block.get();
    blocks_.emplace(address, std::move(block));
    return address;
  }
  void LocalFree(void* block) noexcept override { blocks_.erase(block); }

 private:
  ThreadTimers& timers_;
  std::unordered_map<void*, std::unique_ptr<std::byte[]>> blocks_;
};

class TimedLoopEvents final : public LoopEvents {
 public:
  explicit TimedLoopEvents(LoopClock& clock) noexcept : clock_(clock) {}

  Platform* TimerPlatform() noexcept override { return &platform_; }

  bool RunDue(const Dispatch& dispatch) override { return timers_.FireDue(dispatch); }

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
  LoopPlatform platform_{timers_};
  std::mutex mutex_;
  std::condition_variable wake_;
  bool isWoken_ = false;
};

}  // namespace

std::unique_ptr<LoopEvents> MakeLoopEvents(LoopClock& clock) {
  return std::make_unique<TimedLoopEvents>(clock);
}

}  // namespace platform
