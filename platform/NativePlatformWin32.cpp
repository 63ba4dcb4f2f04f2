#include <new>

#include "platform/NativePlatform.h"
#include "platform/SystemTime.h"

namespace {

class Win32Platform final : public Platform {
 public:
  void GetLocalTime(_SYSTEMTIME& now) override { ::GetLocalTime(&now); }

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return ::SetTimer(nullptr, timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { ::KillTimer(nullptr, timer); }

  LibraryHandle LoadLibraryA(const char* fileName) override { return ::LoadLibraryA(fileName); }
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override {
    return reinterpret_cast<LibraryEntry>(::GetProcAddress(static_cast<HMODULE>(library), entry));
  }
  void FreeLibrary(LibraryHandle library) noexcept override { ::FreeLibrary(static_cast<HMODULE>(library)); }

  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override {
    void* block = ::LocalAlloc(flags, bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
  }
  void LocalFree(void* block) noexcept override { ::LocalFree(block); }
};

constinit Win32Platform nativePlatform;

}  // namespace

Platform& NativePlatform() noexcept {
  return nativePlatform;
}
