#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <new>
#include <system_error>

#include "platform/LocalTime.h"
#include "platform/NativePlatform.h"

namespace {

class PosixPlatform final : public Platform {
 public:
  void GetLocalTime(_SYSTEMTIME& now) override { platform::FillSystemTime(platform::SystemClock().Now(), now); }

  // There is no message loop of the system's own here that could run a timer: a host whose loop has timers hands in a
  // platform with them.
  TimerId SetTimer(TimerId /*timer*/, std::uint32_t /*milliseconds*/, TimerProcedure /*procedure*/) override {
    return 0;
  }
  void KillTimer(TimerId /*timer*/) noexcept override {}

  LibraryHandle LoadLibraryA(const char* fileName) override {
    const std::optional<std::filesystem::path> library = platform::BesideTheProgram(fileName);
    // The opening of what is no file may wait for another program.
    std::error_code error;
    if (!library || !std::filesystem::is_regular_file(*library, error)) return nullptr;
    return dlopen(library->c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override {
    return reinterpret_cast<LibraryEntry>(dlsym(library, entry));
  }
  void FreeLibrary(LibraryHandle library) noexcept override { dlclose(library); }

  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override {
    void* block = flags == kLocalAllocZeroInitialised ? std::calloc(bytes, 1) : std::malloc(bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
  }
  void LocalFree(void* block) noexcept override { std::free(block); }
};

constinit PosixPlatform nativePlatform;

}  // namespace

namespace platform {

std::optional<std::filesystem::path> OwnProgram() {
  std::error_code error;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return std::nullopt;
  return program;
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
