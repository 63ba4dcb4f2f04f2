#include "Frame/AttachedHost.h"

#include <optional>

#include "Frame/NullHost.h"
#include "platform/NativePlatform.h"

namespace {

constinit std::optional<HostServices> attachedHost;

// Built by the first listener, so it outlives them all.
std::vector<CNotifyCloseSystem*>& Listeners() {
  static std::vector<CNotifyCloseSystem*> listeners;
  return listeners;
}

}  // namespace

const HostServices& Host() noexcept {
  return attachedHost.has_value() ? *attachedHost : NullHostServices();
}

bool IsHostAttached() noexcept {
  return attachedHost.has_value();
}

void KeepHost(const HostServices& services) noexcept {
  attachedHost.emplace(services);
  if (attachedHost->platform == nullptr) attachedHost->platform = &NativePlatform();
}

void ForgetHost() noexcept {
  attachedHost.reset();
}

const std::vector<CNotifyCloseSystem*>& CloseSystemListeners() noexcept {
  return Listeners();
}

CNotify<CNotifyDataCloseSystem>::CNotify() {
  Listeners().push_back(this);
  Host().application.SubscribeCloseSystem(*this);
}

// Runs when the library is unloaded, after the host has detached; it never calls the host.
CNotify<CNotifyDataCloseSystem>::~CNotify() {
  std::erase(Listeners(), this);
}
