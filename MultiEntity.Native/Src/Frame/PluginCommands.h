#pragma once

#include "Frame/AttachedHost.h"

// One of the command URLs with which the host opens its intercompany plug-in.
inline void LaunchPlugin(const char* url) {
  Host().application.ExecuteCommand(CCommandAndArgs(url));
}
