#include "support/ScriptedPlatform.h"

#include <gtest/gtest.h>

namespace {

LibraryHandle HandleOf(std::uint64_t number) {
  return reinterpret_cast<LibraryHandle>(static_cast<std::uintptr_t>(number));
}

std::uint64_t NumberOf(LibraryHandle handle) {
  return reinterpret_cast<std::uintptr_t>(handle);
}

}  // namespace

void ScriptedPlatform::GetLocalTime(_SYSTEMTIME& time) {
  script_.Call("GetLocalTime");
  time = now;
}

TimerId ScriptedPlatform::SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) {
  if (script_.Call("SetTimer", timer, milliseconds)) return 0;
  timers.emplace(++lastTimer_, ScriptedTimer{milliseconds, procedure});
  return lastTimer_;
}

void ScriptedPlatform::KillTimer(TimerId timer) {
  script_.Call("KillTimer", timer);
  timers.erase(timer);
}

LibraryHandle ScriptedPlatform::LoadLibraryA(const char* fileName) {
  const bool failed = script_.Call("LoadLibraryA", fileName).has_value();
  if (failed || !libraries.contains(fileName)) return nullptr;
  return HandleOf(loaded_.Open(fileName));
}

LibraryEntry ScriptedPlatform::GetProcAddress(LibraryHandle library, const char* entry) {
  const std::string& fileName = loaded_[NumberOf(library)];
  if (script_.Call("GetProcAddress", fileName, entry)) return nullptr;
  const auto& entries = libraries[fileName];
  const auto found = entries.find(entry);
  return found == entries.end() ? nullptr : found->second;
}

void ScriptedPlatform::FreeLibrary(LibraryHandle library) noexcept {
  script_.Note("FreeLibrary", loaded_.Release(NumberOf(library)));
}

void* ScriptedPlatform::LocalAlloc(std::uint32_t flags, std::size_t bytes) {
  if (script_.Call("LocalAlloc", flags, bytes)) return nullptr;
  auto block = std::make_unique<std::byte[]>(bytes);
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
