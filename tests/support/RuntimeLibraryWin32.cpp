// Libraries by the loader of Windows.
#include <gtest/gtest.h>

#include "platform/SystemTime.h"
#include "support/RuntimeLibrary.h"

RuntimeLibrary::RuntimeLibrary(const char* file) : handle_(::LoadLibraryA(file)) {
  EXPECT_NE(handle_, nullptr) << file << ": error " << ::GetLastError();
}

RuntimeLibrary::~RuntimeLibrary() {
  ::FreeLibrary(static_cast<HMODULE>(handle_));
}

RuntimeLibrary::AnyEntry RuntimeLibrary::Find(const char* name) const {
  const auto entry = reinterpret_cast<AnyEntry>(::GetProcAddress(static_cast<HMODULE>(handle_), name));
  EXPECT_NE(entry, nullptr) << name << ": error " << ::GetLastError();
  return entry;
}

bool RuntimeLibrary::IsLoaded(const char* file) {
  return ::GetModuleHandleA(file) != nullptr;
}
