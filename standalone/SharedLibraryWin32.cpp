// Shared libraries on Windows, which looks beside the program first by itself.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "standalone/SharedLibrary.h"

namespace standalone {

LibraryHandle LoadSharedLibrary(const char* fileName) {
  return ::LoadLibraryA(fileName);
}

LibraryEntry FindLibraryEntry(LibraryHandle library, const char* entry) {
  return reinterpret_cast<LibraryEntry>(::GetProcAddress(static_cast<HMODULE>(library), entry));
}

void UnloadSharedLibrary(LibraryHandle library) noexcept {
  ::FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace standalone
