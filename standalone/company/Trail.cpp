#include "standalone/company/Trail.h"

#include <chrono>
#include <utility>

#include "platform/SystemUser.h"

namespace standalone {

AuditStamp StampNow(const TrailClock& clock, std::string user) {
  platform::Clock& now = clock.clock != nullptr ? *clock.clock : platform::SystemClock();
  const auto at = std::chrono::duration_cast<std::chrono::milliseconds>(now.Now().time_since_epoch());
  static const std::string systemUser = platform::SystemUserName();
  return {.at = at.count(), .clock = clock.setTo, .user = std::move(user), .systemUser = systemUser};
}

}  // namespace standalone
