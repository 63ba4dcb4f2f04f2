#include "support/ScriptedPlatform.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <utility>

ScriptedPlatform::~ScriptedPlatform() {
  EXPECT_TRUE(loaded_.empty()) << "left loaded: " << loaded_.size() << " libraries";
}

void ScriptedPlatform::GetLocalTime(_SYSTEMTIME& time) {
  script_.Call("GetLocalTime");
  time = now;
}

TimerId ScriptedPlatform::SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) {
  if (script_.Call("SetTimer", timer, milliseconds)) return 0;
  timers.emplace(++lastTimer, ScriptedTimer{milliseconds, procedure});
  return lastTimer;
}

void ScriptedPlatform::KillTimer(TimerId timer) noexcept {
  script_.Note("KillTimer", timer);
  timers.erase(timer);
}

LibraryHandle ScriptedPlatform::LoadLibraryA(const char* fileName) {
  const bool failed = script_.Call("LoadLibraryA", fileName).has_value();
  if (failed || !libraries.contains(fileName)) return nullptr;
  auto name = std::make_unique<std::string>(fileName);
  LibraryHandle handle = name.get();
  loaded_.emplace(handle, std::move(name));
  return handle;
}

LibraryEntry ScriptedPlatform::GetProcAddress(LibraryHandle library, const char* entry) {
  const std::string& fileName = *loaded_.at(library);
  if (script_.Call("GetProcAddress", fileName, entry)) return nullptr;
  const auto& entries = libraries[fileName];
  const auto found = entries.find(entry);
  return found == entries.end() ? nullptr : found->second;
}

void ScriptedPlatform::FreeLibrary(LibraryHandle library) noexcept {
  const auto freed = loaded_.extract(library);
  EXPECT_FALSE(freed.empty()) << "a library was freed that is not loaded";
  script_.Note("FreeLibrary", freed.empty() ? std::string() : *freed.mapped());
}

void* ScriptedPlatform::LocalAlloc(std::uint32_t flags, std::size_t bytes) {
  if (script_.Call("LocalAlloc", flags, bytes)) throw std::bad_alloc();
  auto block = std::make_unique<std::byte[]>(bytes);
  std::memset(block.get(), flags == kLocalAllocZeroInitialised ? 0 : 'Z', bytes);
  void* address = block.get();
  blocks_.emplace(address, std::move(block));
  return address;
}

void ScriptedPlatform::LocalFree(void* block) noexcept {
  script_.Note("LocalFree");
  EXPECT_EQ(blocks_.erase(block), 1U) << "a block was freed that is not the platform's";
}

void ScriptedPlatform::Fire(TimerId timer) {
  timers.at(timer).procedure(nullptr, 0x0113, timer, 0);
}
