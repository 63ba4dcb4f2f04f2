// Shared libraries by the dynamic linker of POSIX systems.
#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "standalone/SharedLibrary.h"

namespace standalone {

namespace {

std::filesystem::path BesideTheProgram(const char* fileName) {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return program.parent_path() / fileName;
}

}  // namespace

LibraryHandle LoadSharedLibrary(const char* fileName) {
  LibraryHandle beside = dlopen(BesideTheProgram(fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
  return beside != nullptr ? beside : dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
}

LibraryEntry FindLibraryEntry(LibraryHandle library, const char* entry) {
  return reinterpret_cast<LibraryEntry>(dlsym(library, entry));
}

void UnloadSharedLibrary(LibraryHandle library) noexcept {
  dlclose(library);
}

}  // namespace standalone
