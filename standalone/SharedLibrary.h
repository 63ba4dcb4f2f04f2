#pragma once

#include "host/Platform.h"

namespace standalone {

// Loads a library by its file name, looked for beside the program first; null when it cannot be loaded.
LibraryHandle LoadSharedLibrary(const char* fileName);
// Null when the library has no such entry.
LibraryEntry FindLibraryEntry(LibraryHandle library, const char* entry);
void UnloadSharedLibrary(LibraryHandle library) noexcept;

}  // namespace standalone
