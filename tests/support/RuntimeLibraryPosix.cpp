// Libraries by the dynamic linker of POSIX systems.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "support/RuntimeLibrary.h"

RuntimeLibrary::RuntimeLibrary(const char* file) : handle_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
  EXPECT_NE(handle_, nullptr) << dlerror();
}

RuntimeLibrary::~RuntimeLibrary() {
  dlclose(handle_);
}

RuntimeLibrary::AnyEntry RuntimeLibrary::Find(const char* name) const {
  void* entry = dlsym(handle_, name);
  EXPECT_NE(entry, nullptr) << dlerror();
  return reinterpret_cast<AnyEntry>(entry);
}

bool RuntimeLibrary::IsLoaded(const char* file) {
  void* handle = dlopen(file, RTLD_NOW | RTLD_NOLOAD);
  if (handle == nullptr) return false;
  dlclose(handle);
  return true;
}
