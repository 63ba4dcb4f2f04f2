#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

#include <exception>
#include <fstream>
#include <string>

#include "platform/NetworkFileSystems.h"
#include "platform/NetworkShare.h"

namespace platform {

namespace {

constexpr std::uint32_t kKeptByAProgram = 0x65735546;

bool IsDeviceOfNetworkMount(const struct stat& status) {
  std::ifstream mounts("/proc/self/mountinfo");
  return IsNetworkMount(mounts, std::to_string(major(status.st_dev)) + ":" + std::to_string(minor(status.st_dev)));
}

}  // namespace

bool IsOnNetworkShare(const std::filesystem::path& file) noexcept {
  struct statfs fileSystem{};
  struct stat status{};
  if (statfs(file.c_str(), &fileSystem) != 0 || stat(file.c_str(), &status) != 0) return false;
  const auto type = static_cast<std::uint32_t>(fileSystem.f_type);
  try {
    return IsNetworkFileSystem(type) || (type == kKeptByAProgram && IsDeviceOfNetworkMount(status));
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace platform
