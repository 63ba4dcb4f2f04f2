#pragma once

#include "standalone/company/StandaloneHost.h"

namespace standalone {

// The timers that come through the host's loop.
inline Platform& TimersOf(StandaloneHost& host) {
  return *host.Services().platform;
}

}  // namespace standalone
