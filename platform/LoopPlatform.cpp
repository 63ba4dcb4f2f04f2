#include "platform/LoopPlatform.h"

#include <utility>

#include "platform/LocalTime.h"
#include "platform/NativePlatform.h"
#include "platform/TimerPeriod.h"

namespace platform {

void LoopPlatform::GetLocalTime(_SYSTEMTIME& now) {
  FillSystemTime(clock_.Now(), now);
}

TimerId LoopPlatform::SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) {
  const TimerId armed = events_.SetTimer(timer, milliseconds, procedure);
  if (armed != 0) TellArmed(TimerPeriod(milliseconds));
  return armed;
}

// The timer is armed, whether or not it can be told.
void LoopPlatform::TellArmed(std::chrono::milliseconds period) noexcept {
  try {
    if (onArmed_) onArmed_(period);
  } catch (...) {
  }
}

LibraryHandle LoopPlatform::LoadLibraryA(const char* fileName) {
  return NativePlatform().LoadLibraryA(fileName);
}

LibraryEntry LoopPlatform::GetProcAddress(LibraryHandle library, const char* entry) {
  return NativePlatform().GetProcAddress(library, entry);
}

void LoopPlatform::FreeLibrary(LibraryHandle library) noexcept {
  NativePlatform().FreeLibrary(library);
}

void* LoopPlatform::LocalAlloc(std::uint32_t /*flags*/, std::size_t bytes) {
  auto block = std::make_unique<std::byte[]>(bytes);
  void* const address = block.get();
  blocks_.emplace(address, std::move(block));
  return address;
}

}  // namespace platform
