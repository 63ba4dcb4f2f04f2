#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Platform.h"
#include "platform/SystemTime.h"
#include "support/CallScript.h"
#include "support/OpenObjects.h"

struct ScriptedTimer {
  std::uint32_t milliseconds;
  TimerProcedure procedure;
};

class ScriptedPlatform final : public Platform {
 public:
  explicit ScriptedPlatform(CallScript& script) : script_(script) {}

  void GetLocalTime(_SYSTEMTIME& now) override;
  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override;
  void KillTimer(TimerId timer) override;
  LibraryHandle LoadLibraryA(const char* fileName) override;
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override;
  void FreeLibrary(LibraryHandle library) noexcept override;
  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override;
  void LocalFree(void* block) noexcept override;

  // Makes a library of that name loadable that has one entry more.
  template <class Entry>
  void Provide(const std::string& fileName, const std::string& entry, Entry* function) {
    libraries[fileName][entry] = reinterpret_cast<LibraryEntry>(function);
  }

  // Runs an armed timer's procedure, as the message loop does when its period has passed.
  void Fire(TimerId timer);

  SYSTEMTIME now{.wYear = 2024,
                 .wMonth = 3,
                 .wDayOfWeek = 0,
                 .wDay = 3,
                 .wHour = 12,
                 .wMinute = 0,
                 .wSecond = 0,
                 .wMilliseconds = 0};       // the local clock
  std::map<TimerId, ScriptedTimer> timers;  // those armed
  std::map<std::string, std::map<std::string, LibraryEntry>> libraries;

  // How many libraries are loaded just now.
  std::size_t LoadedLibraries() const noexcept { return loaded_.Count(); }

 private:
  CallScript& script_;
  TimerId lastTimer_ = 0;
  OpenObjects<std::uint64_t, std::string> loaded_{"library"};
  std::map<void*, std::unique_ptr<std::byte[]>> blocks_;
};
