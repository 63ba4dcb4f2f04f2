// Where the loop keeps the timers itself it goes by a clock that a test may hand in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/company/CompanyFixture.h"
#include "tests/platform/ScriptedLoopClock.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A timer's procedure has no room for anything of its own.
std::vector<TimerId> fired;
std::function<void(TimerId)> onFire = [](TimerId) {
};

void Record(HWND__* /*window*/, std::uint32_t /*message*/, TimerId timer, unsigned long /*ticks*/) {
  fired.push_back(timer);
  onFire(timer);
}

class TimersByAClock : public CompanyFixture {
 protected:
  static HostOptions By(platform::LoopClock& clock) {
    HostOptions options;
    options.loopClock = &clock;
    return options;
  }
};

TEST_F(TimersByAClock, FireInTheOrderOfTheirTimes) {
  platform::ScriptedLoopClock clock;
  StandaloneHost host(path_, kAdministratorName, By(clock));
  const TimerId late = host.Services().platform->SetTimer(0, 86'400'000, &Record);
  const TimerId early = host.Services().platform->SetTimer(0, 50'000'000, &Record);
  onFire = [&](TimerId timer) {
    if (timer == late) host.Loop().Quit();
  };

  host.Loop().Run();

  EXPECT_THAT(fired, ElementsAre(early, late));
}

TEST_F(TimersByAClock, ThatAreKilledLetTheLoopSleep) {
  StandaloneHost* sleeping = nullptr;
  platform::ScriptedLoopClock clock([&] { sleeping->Loop().Quit(); });
  StandaloneHost host(path_, kAdministratorName, By(clock));
  sleeping = &host;
  host.Services().platform->KillTimer(host.Services().platform->SetTimer(0, 1000, &Record));

  host.Loop().Run();

  EXPECT_THAT(fired, IsEmpty());
}

}  // namespace
}  // namespace standalone
