#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>

#include "MultiEntityHost/Platform.h"
#include "platform/Clock.h"
#include "platform/LoopEvents.h"

namespace platform {

// The operating system for a module whose host runs a loop: the time by the host's clock, the timers through its loop,
// the rest as it is. Used on the thread of the loop.
class LoopPlatform final : public Platform {
 public:
  LoopPlatform(LoopEvents& events, Clock& clock) noexcept : events_(events), clock_(clock) {}
  LoopPlatform(const LoopPlatform&) = delete;
  LoopPlatform& operator=(const LoopPlatform&) = delete;
  ~LoopPlatform() = default;

  // Told of each timer that was armed, with the period that it has. What it throws is nobody's.
  using ArmingObserver = std::function<void(std::chrono::milliseconds period)>;
  void SetArmingObserver(ArmingObserver observer) { onArmed_ = std::move(observer); }

  void GetLocalTime(_SYSTEMTIME& now) override;

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override;
  void KillTimer(TimerId timer) noexcept override { events_.KillTimer(timer); }

  LibraryHandle LoadLibraryA(const char* fileName) override;
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override;
  void FreeLibrary(LibraryHandle library) noexcept override;

  // Blocks that nobody gives back end with this.
  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override;
  void LocalFree(void* block) noexcept override { blocks_.erase(block); }

 private:
  void TellArmed(std::chrono::milliseconds period) noexcept;

  LoopEvents& events_;
  Clock& clock_;
  ArmingObserver onArmed_;
  std::unordered_map<void*, std::unique_ptr<std::byte[]>> blocks_;
};

}  // namespace platform
