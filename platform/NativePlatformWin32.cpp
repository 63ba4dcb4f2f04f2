#include <new>
#include <string>
#include <system_error>

#include "platform/NativePlatform.h"
#include "platform/SystemTime.h"

namespace {

// What the library needs itself is looked for beside it, beside the program and in the system's folder.
constexpr DWORD kWhereLibrariesLie =
    LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32;

// While it lives, a library that is broken is told of by its answer alone, not by a box on the screen.
class NoErrorBoxes {
 public:
  NoErrorBoxes() noexcept { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_); }
  NoErrorBoxes(const NoErrorBoxes&) = delete;
  NoErrorBoxes& operator=(const NoErrorBoxes&) = delete;
  ~NoErrorBoxes() { ::SetThreadErrorMode(before_, nullptr); }

 private:
  DWORD before_ = 0;
};

class Win32Platform final : public Platform {
 public:
  void GetLocalTime(_SYSTEMTIME& now) override { ::GetLocalTime(&now); }

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return ::SetTimer(nullptr, timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { ::KillTimer(nullptr, timer); }

  LibraryHandle LoadLibraryA(const char* fileName) override {
    const std::optional<std::filesystem::path> library = platform::BesideTheProgram(fileName);
    std::error_code error;
    if (!library || !std::filesystem::is_regular_file(*library, error)) return nullptr;
    const NoErrorBoxes quiet;
    return ::LoadLibraryExW(library->c_str(), nullptr, kWhereLibrariesLie);
  }
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override {
    return reinterpret_cast<LibraryEntry>(::GetProcAddress(static_cast<HMODULE>(library), entry));
  }
  void FreeLibrary(LibraryHandle library) noexcept override { ::FreeLibrary(static_cast<HMODULE>(library)); }

  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override {
    void* block = ::LocalAlloc(flags, bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
  }
  void LocalFree(void* block) noexcept override { ::LocalFree(block); }
};

constinit Win32Platform nativePlatform;

}  // namespace

namespace platform {

std::optional<std::filesystem::path> OwnProgram() {
  std::wstring program(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    if (length == 0) return std::nullopt;
    if (length < program.size()) return std::filesystem::path(program.substr(0, length));
    program.resize(program.size() * 2);
  }
}

std::optional<std::filesystem::path> BesideTheProgram(const char* fileName) {
  const std::optional<std::filesystem::path> program = OwnProgram();
  if (!program) return std::nullopt;
  return program->parent_path() / fileName;
}

}  // namespace platform

Platform& NativePlatform() noexcept {
  return nativePlatform;
}
