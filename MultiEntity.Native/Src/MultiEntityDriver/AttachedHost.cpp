#include "MultiEntityDriver/AttachedHost.h"

#include <optional>
#include <vector>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntityDriver/NullHost.h"
#include "platform/NativePlatform.h"

namespace {

constinit std::optional<HostServices> attachedHost;

// Every listener there is. Built by the first one, so it outlives them all.
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

MEAttachResult AttachHost(const HostServices& services) noexcept {
  if (services.size != sizeof(HostServices)) return MEAttachSizeUnknown;
  if (services.version != kHostServicesVersion) return MEAttachVersionUnknown;
  if (services.abiTag != kHostAbiTag) return MEAttachAbiUnknown;
  if (attachedHost.has_value()) return MEAttachAlreadyAttached;

  attachedHost.emplace(services);
  if (attachedHost->platform == nullptr) attachedHost->platform = &NativePlatform();
  for (CNotifyCloseSystem* listener : Listeners()) attachedHost->application.SubscribeCloseSystem(*listener);
  return MEAttachDone;
}

void DetachHost() noexcept {
  MESchedulerUtil::KillAnyExistingScheduler();
  for (CNotifyCloseSystem* listener : Listeners()) Host().application.UnsubscribeCloseSystem(*listener);
  attachedHost.reset();
}

CNotify<CNotifyDataCloseSystem>::CNotify() {
  Listeners().push_back(this);
  Host().application.SubscribeCloseSystem(*this);
}

// Runs when the library is unloaded, after the host has detached; it never calls the host.
CNotify<CNotifyDataCloseSystem>::~CNotify() {
  std::erase(Listeners(), this);
}
