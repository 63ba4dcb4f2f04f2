// Linked in the place of what asks the system.
#include "platform/NetworkShare.h"

namespace platform {

bool IsOnNetworkShare(const std::filesystem::path& /*file*/) noexcept {
  return true;
}

}  // namespace platform
