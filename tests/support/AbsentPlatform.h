#pragma once

#include <new>

#include "MultiEntityHost/Platform.h"

// The operating system of a host that has none: its clock stands, it arms no timer, loads nothing and has no memory. A
// test derives its platform from it and overrides what it has.
class AbsentPlatform : public Platform {
 public:
  void GetLocalTime(_SYSTEMTIME&) override {}
  TimerId SetTimer(TimerId, std::uint32_t, TimerProcedure) override { return 0; }
  void KillTimer(TimerId) noexcept override {}
  LibraryHandle LoadLibraryA(const char*) override { return nullptr; }
  LibraryEntry GetProcAddress(LibraryHandle, const char*) override { return nullptr; }
  void FreeLibrary(LibraryHandle) noexcept override {}
  void* LocalAlloc(std::uint32_t, std::size_t) override { throw std::bad_alloc(); }
  void LocalFree(void*) noexcept override {}

 protected:
  ~AbsentPlatform() = default;
};
