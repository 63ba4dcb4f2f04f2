#pragma once

#include <cstddef>
#include <cstdint>

// SYSTEMTIME and the window that a timer procedure is told, as the Windows headers have them; elsewhere
// MultiEntityHost/SystemTime.h defines the first.
struct _SYSTEMTIME;
struct HWND__;

// Names an armed timer; 0 is none. The module keeps it in 32 bits.
using TimerId = std::uintptr_t;

// A timer's procedure, as Windows calls it. The window is always null; the ticks are the platform's.
using TimerProcedure = void (*)(HWND__* window, std::uint32_t message, TimerId timer, unsigned long ticks);

// An entry of a loaded library; it is cast to its real type before it is called.
using LibraryEntry = void (*)();

// Names a loaded library; null is none.
using LibraryHandle = void*;

// LocalAlloc's flag for a block filled with zeros.
inline constexpr std::uint32_t kLocalAllocZeroInitialised = 64;

// The operating system, as far as the module needs it. The library has a native one of its own; a host hands in another
// one only to replace it. The module calls it on the user-interface thread.
class Platform {
 public:
  virtual void GetLocalTime(_SYSTEMTIME& now) = 0;

  // Arms a timer without a window; `procedure` runs on this thread, through its message loop, each time the period
  // passes, until the timer is killed. 0 when it could not be armed.
  virtual TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) = 0;
  virtual void KillTimer(TimerId timer) noexcept = 0;

  // Loads a library by its file name, looked for beside the program first; null when it cannot be loaded.
  virtual LibraryHandle LoadLibraryA(const char* fileName) = 0;
  // Null when the library has no such entry.
  virtual LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) = 0;
  virtual void FreeLibrary(LibraryHandle library) noexcept = 0;

  // `flags` is kLocalAllocZeroInitialised: the block is filled with zeros. Throws std::bad_alloc when there is no
  // memory for it.
  virtual void* LocalAlloc(std::uint32_t flags, std::size_t bytes) = 0;
  virtual void LocalFree(void* block) noexcept = 0;

 protected:
  ~Platform() = default;
};
