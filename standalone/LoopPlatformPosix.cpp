// The platform of the loop where the operating system has no timers for a thread: the loop keeps them itself.
#include <sys/time.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <unordered_map>
#include <utility>

#include "host/SystemTime.h"
#include "standalone/LoopEvents.h"
#include "standalone/SharedLibrary.h"
#include "standalone/ThreadTimers.h"

namespace standalone {

namespace {

class LoopPlatform final : public Platform {
 public:
  explicit LoopPlatform(ThreadTimers& timers) noexcept : timers_(timers) {}

  void GetLocalTime(_SYSTEMTIME& now) override {
    timeval clock{};
    gettimeofday(&clock, nullptr);
    std::tm local{};
    localtime_r(&clock.tv_sec, &local);
    now.wYear = static_cast<std::uint16_t>(local.tm_year + 1900);
    now.wMonth = static_cast<std::uint16_t>(local.tm_mon + 1);
    now.wDayOfWeek = static_cast<std::uint16_t>(local.tm_wday);
    now.wDay = static_cast<std::uint16_t>(local.tm_mday);
    now.wHour = static_cast<std::uint16_t>(local.tm_hour);
    now.wMinute = static_cast<std::uint16_t>(local.tm_min);
    now.wSecond = static_cast<std::uint16_t>(local.tm_sec);
    now.wMilliseconds = static_cast<std::uint16_t>(clock.tv_usec / 1000);
  }

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return timers_.Set(timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { timers_.Kill(timer); }

  LibraryHandle LoadLibraryA(const char* fileName) override { return LoadSharedLibrary(fileName); }
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override {
    return FindLibraryEntry(library, entry);
  }
  void FreeLibrary(LibraryHandle library) noexcept override { UnloadSharedLibrary(library); }

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

}  // namespace standalone
