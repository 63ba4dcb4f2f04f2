#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "MultiEntityHost/Platform.h"
#include "platform/SystemTime.h"
#include "support/CallScript.h"

struct ScriptedTimer {
  std::uint32_t milliseconds;
  TimerProcedure procedure;
};

class ScriptedPlatform final : public Platform {
 public:
  explicit ScriptedPlatform(CallScript& script) : script_(script) {}
  ScriptedPlatform(const ScriptedPlatform&) = delete;
  ScriptedPlatform& operator=(const ScriptedPlatform&) = delete;
  ~ScriptedPlatform();

  void GetLocalTime(_SYSTEMTIME& time) override;
  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override;
  void KillTimer(TimerId timer) noexcept override;
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
  TimerId lastTimer = 0;                    // the next timer gets the number after it
  std::map<std::string, std::map<std::string, LibraryEntry>> libraries;

  // How many libraries are loaded just now.
  std::size_t LoadedLibraries() const noexcept { return loaded_.size(); }

 private:
  CallScript& script_;
  std::map<LibraryHandle, std::unique_ptr<std::string>> loaded_;  // the handle points at the file name
  std::map<void*, std::unique_ptr<std::byte[]>> blocks_;
};
