#include "MultiEntity/AttachHost.h"

#include "Frame/AttachedHost.h"
#include "MultiEntity/MESchedulerUtil.h"

MEAttachResult AttachHost(const HostServices& services) noexcept {
  if (services.size != sizeof(HostServices)) return MEAttachSizeUnknown;
  if (services.version != kHostServicesVersion) return MEAttachVersionUnknown;
  if (services.abiTag != kHostAbiTag) return MEAttachAbiUnknown;
  if (IsHostAttached()) return MEAttachAlreadyAttached;

  KeepHost(services);
  for (CNotifyCloseSystem* listener : CloseSystemListeners()) Host().application.SubscribeCloseSystem(*listener);
  return MEAttachDone;
}

void DetachHost() noexcept {
  MESchedulerUtil::KillAnyExistingScheduler();
  for (CNotifyCloseSystem* listener : CloseSystemListeners()) Host().application.UnsubscribeCloseSystem(*listener);
  ForgetHost();
}
