#include <windows.h>

#include <array>
#include <filesystem>

#include "platform/SystemUser.h"

namespace platform {

std::string SystemUserName() {
  constexpr DWORD kLongestName = 256;
  std::array<wchar_t, kLongestName + 1> name{};
  DWORD length = static_cast<DWORD>(name.size());
  if (GetUserNameW(name.data(), &length) == 0) return "user unknown";
  const std::u8string text = std::filesystem::path(name.data()).u8string();
  return {text.begin(), text.end()};
}

}  // namespace platform
