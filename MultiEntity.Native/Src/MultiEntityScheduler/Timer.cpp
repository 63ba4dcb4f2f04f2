#include <algorithm>

#include "Frame/ActiveFile.h"
#include "Frame/Operations.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntityScheduler/UIPrompt.h"

namespace {

constexpr TimerId kNewTimer = 0;
constexpr std::uint32_t kMillisecondsPerSecond = 1000;

// 0 while no timer is armed.
std::uint32_t timerId = 0;

// Kept for the life of the process. Without a host there is nothing worth keeping.
std::uint32_t LeastDelayInSeconds() {
  if (!IsHostAttached()) return MESchedulerUtil::GetDelayInSecondsFromDCE();
  static const std::uint32_t delay = MESchedulerUtil::GetDelayInSecondsFromDCE();
  return delay;
}

}  // namespace

bool MESchedulerUtil::CanProcessSchedulerMsg() {
  Application& application = Host().application;
  if (!application.IsServerMode(false) && application.SystemIsOpen() && !application.SystemIsClosing() &&
      MayUseDatabase()) {
    return true;
  }
  const OperationLog log{operations::CanProcessSchedulerMsg};
  log.Note("MULTIENTITY::System is closing or no active file manager and so skip DB operation");
  return false;
}

// The log knows this operation as StartTimer when it begins.
void MESchedulerUtil::StartScheduler() {
  const OperationLog log{operations::StartScheduler};
  try {
    log.Notice("MULTIENTITY::StartTimer: Entering function");
    KillAnyExistingScheduler();
    const std::uint32_t leastDelay = LeastDelayInSeconds();
    const std::uint32_t delay = std::max(GetSchedulerLaunchDelayInSeconds(), leastDelay);
    log.Note("MULTIENTITY::StartScheduler: Starting Timer for %lu seconds", static_cast<unsigned long>(delay));
    timerId = static_cast<std::uint32_t>(
        Host().platform->SetTimer(kNewTimer, delay * kMillisecondsPerSecond, &MESchedulerUtil::OnTimerElapsed));
    log.Notice("MULTIENTITY::StartScheduler: Exiting function");
  } catch (...) {
    log.Error("MULTIENTITY:: Exception occured in StartScheduler API");
  }
}

void MESchedulerUtil::OnTimerElapsed(HWND__* /*window*/, std::uint32_t /*message*/, std::uintptr_t /*timer*/,
                                     unsigned long /*ticks*/) {
  const OperationLog log{operations::OnTimerElapsed};
  log.Note("MULTIENTITY::OnTimerElapsed: Timer elapsed");
  Host().platform->KillTimer(timerId);
  timerId = 0;
  // The host's queue takes it over while it is constructed; without a host there is no queue to own it.
  if (IsHostAttached()) new MESchedulerUIPrompt;
}

void MESchedulerUtil::KillAnyExistingScheduler() {
  if (timerId == 0) return;
  Host().platform->KillTimer(timerId);
  timerId = 0;
}
