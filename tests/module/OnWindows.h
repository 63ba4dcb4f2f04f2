#pragma once

#include <optional>

#include "module/Arrangements.h"
#include "platform/SystemTime.h"

// The next timer that comes through this thread's message loop, or nothing when none comes for a while.
inline std::optional<MSG> NextTimer() {
  constexpr UINT kPatienceInMilliseconds = 10000;
  const UINT_PTR patience = ::SetTimer(nullptr, 0, kPatienceInMilliseconds, nullptr);
  MSG message{};
  while (::GetMessageA(&message, nullptr, 0, 0) > 0 && message.message != WM_TIMER) ::DispatchMessageA(&message);
  ::KillTimer(nullptr, patience);
  return message.wParam == patience ? std::nullopt : std::optional(message);
}

// A host whose reminder is due as soon as it is waited for.
class OnWindows : public testing::Test {
 protected:
  OnWindows() {
    host.values.values[{"MultiEntity", "InitialDelayInSeconds"}] = "0";
    host.values.values[{"MultiEntity", "HoursToLaunchDay"}] = "0";
    HostServices services = host.Services();
    services.platform = nullptr;
    attachment.emplace(services);
    host.Forget();
  }

  ScriptedHost host;
  std::optional<Attachment> attachment;
};
