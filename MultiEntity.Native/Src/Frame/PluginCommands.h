#pragma once

#include "Frame/AttachedHost.h"

// The command URLs with which the host opens its intercompany plug-in.
inline constexpr const char* kLaunchPluginForReminder = "krw:LaunchMEPlugin?context=ICT_SCHEDULER";
inline constexpr const char* kLaunchPluginForRealmReset = "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET";
inline constexpr const char* kLaunchPluginForNoRelations = "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS";

inline void LaunchPlugin(const char* url) {
  Host().application.ExecuteCommand(CCommandAndArgs(url));
}
