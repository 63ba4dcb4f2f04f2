#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntityHost/Application.h"

namespace {

class MESchedulerTimerKiller final : public CNotify<CNotifyDataCloseSystem> {
 public:
  void HandleNotification(const CNotifyDataCloseSystem& /*data*/) override {
    MESchedulerUtil::KillAnyExistingScheduler();
  }
};

// Made when the library is loaded, and known to the host from the moment it attaches.
MESchedulerTimerKiller timerKiller;

}  // namespace
