#pragma once

#include "platform/NativePlatform.h"
#include "standalone/company/StandaloneHost.h"

namespace standalone {

// The timers that come through the host's loop: its own ones, or those of the operating system.
inline Platform& TimersOf(StandaloneHost& host) {
  Platform* const own = host.Services().platform;
  return own != nullptr ? *own : NativePlatform();
}

}  // namespace standalone
