#include <windows.h>

#include <exception>
#include <string>

#include "platform/NetworkShare.h"

namespace platform {

bool IsOnNetworkShare(const std::filesystem::path& file) noexcept {
  try {
    const std::wstring path = std::filesystem::absolute(file).native();
    std::wstring volume(path.size() + MAX_PATH, L'\0');
    if (GetVolumePathNameW(path.c_str(), volume.data(), static_cast<DWORD>(volume.size())) == 0) return false;
    return GetDriveTypeW(volume.c_str()) == DRIVE_REMOTE;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace platform
