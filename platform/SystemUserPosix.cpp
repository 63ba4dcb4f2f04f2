#include <pwd.h>
#include <unistd.h>

#include <cstddef>
#include <vector>

#include "platform/SystemUser.h"

namespace platform {

std::string SystemUserName() {
  constexpr std::size_t kLargestEntry = std::size_t{16} * 1024;
  const uid_t id = geteuid();
  std::vector<char> buffer(kLargestEntry);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(id, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) return found->pw_name;
  return "user " + std::to_string(id);
}

}  // namespace platform
