#include "platform/ThreadTimers.h"

#include <algorithm>
#include <vector>

namespace platform {

namespace {

// What the Windows headers call WM_TIMER.
constexpr std::uint32_t kTimerMessage = 0x0113;

unsigned long Ticks(LoopClock::TimePoint now) {
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count());
}

}  // namespace

TimerId ThreadTimers::Set(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) {
  const std::chrono::milliseconds period = TimerPeriod(milliseconds);
  const TimerId id = armed_.contains(timer) ? timer : ++lastId_;
  armed_.insert_or_assign(id, Timer{period, clock_.Now() + period, procedure});
  return id;
}

void ThreadTimers::Kill(TimerId timer) noexcept {
  armed_.erase(timer);
}

std::optional<LoopClock::TimePoint> ThreadTimers::NextDue() const {
  const auto next = std::ranges::min_element(armed_, {}, [](const auto& idAndTimer) { return idAndTimer.second.due; });
  if (next == armed_.end()) return std::nullopt;
  return next->second.due;
}

bool ThreadTimers::FireDue(const Dispatch& dispatch) {
  const LoopClock::TimePoint now = clock_.Now();
  std::vector<TimerId> due;
  for (const auto& [id, timer] : armed_) {
    if (timer.due <= now) due.push_back(id);
  }
  for (const TimerId id : due) Fire(id, now, dispatch);
  return !due.empty();
}

void ThreadTimers::Fire(TimerId id, LoopClock::TimePoint now, const Dispatch& dispatch) {
  // One that was due before it may have killed it.
  const auto found = armed_.find(id);
  if (found == armed_.end()) return;
  Timer& timer = found->second;
  timer.due = std::max(timer.due, now) + timer.period;
  dispatch([procedure = timer.procedure, id, now] { procedure(nullptr, kTimerMessage, id, Ticks(now)); });
}

}  // namespace platform
