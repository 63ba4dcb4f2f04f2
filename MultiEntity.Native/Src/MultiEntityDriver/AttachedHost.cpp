#include "MultiEntityDriver/AttachedHost.h"

#include <optional>

#include "MultiEntity/AttachHost.h"
#include "MultiEntityDriver/NullHost.h"
#include "platform/NativePlatform.h"

namespace {

constinit std::optional<HostServices> attachedHost;

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
  return MEAttachDone;
}

void DetachHost() noexcept {
  attachedHost.reset();
}
