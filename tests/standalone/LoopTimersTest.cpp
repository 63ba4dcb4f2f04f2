#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/ThreadTimers.h"
#include "tests/standalone/CompanyFixture.h"
#include "tests/standalone/ScriptedLoopClock.h"

namespace standalone {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// A timer's procedure has no room for anything of its own.
std::vector<TimerId> fired;
std::function<void(TimerId)> onFire = [](TimerId) {
};

void Record(HWND__* window, std::uint32_t message, TimerId timer, std::uint32_t /*ticks*/) {
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(message, 0x0113U);
  fired.push_back(timer);
  onFire(timer);
}

void RunAtOnce(const std::function<void()>& work) {
  work();
}

class Timers : public testing::Test {
 protected:
  ScriptedLoopClock clock_;
  ThreadTimers timers_{clock_};
};

TEST_F(Timers, FireWhenTheirPeriodHasPassed) {
  const TimerId timer = timers_.Set(0, 900'000, &Record);

  clock_.Advance(milliseconds(899'999));
  EXPECT_FALSE(timers_.FireDue(RunAtOnce));
  clock_.Advance(milliseconds(1));
  EXPECT_TRUE(timers_.FireDue(RunAtOnce));

  EXPECT_NE(timer, 0U);
  EXPECT_THAT(fired, ElementsAre(timer));
}

TEST_F(Timers, FireOncePerPeriodUntilTheyAreKilled) {
  const TimerId timer = timers_.Set(0, 1000, &Record);

  clock_.Advance(milliseconds(1000));
  timers_.FireDue(RunAtOnce);
  timers_.FireDue(RunAtOnce);
  clock_.Advance(milliseconds(1000));
  timers_.FireDue(RunAtOnce);
  timers_.Kill(timer);
  clock_.Advance(milliseconds(1000));
  timers_.FireDue(RunAtOnce);

  EXPECT_THAT(fired, ElementsAre(timer, timer));
  EXPECT_EQ(timers_.NextDue(), std::nullopt);
}

TEST_F(Timers, CountPeriodsThatWereMissedOnce) {
  timers_.Set(0, 1000, &Record);

  clock_.Advance(milliseconds(5500));
  timers_.FireDue(RunAtOnce);

  EXPECT_EQ(fired.size(), 1U);
  EXPECT_EQ(timers_.NextDue(), clock_.Now() + milliseconds(1000));
}

TEST_F(Timers, MayKillThemselvesAndEachOtherWhenTheyFire) {
  const TimerId first = timers_.Set(0, 1000, &Record);
  const TimerId second = timers_.Set(0, 1000, &Record);
  onFire = [&](TimerId timer) {
    timers_.Kill(timer);
    timers_.Kill(second);
  };

  clock_.Advance(milliseconds(1000));
  timers_.FireDue(RunAtOnce);

  EXPECT_THAT(fired, ElementsAre(first));
  EXPECT_EQ(timers_.NextDue(), std::nullopt);
}

TEST_F(Timers, AreArmedAnewUnderTheirId) {
  const TimerId timer = timers_.Set(0, 1000, &Record);

  EXPECT_EQ(timers_.Set(timer, 5000, &Record), timer);

  EXPECT_EQ(timers_.NextDue(), clock_.Now() + milliseconds(5000));
}

TEST_F(Timers, HaveIdsOfTheirOwn) {
  EXPECT_NE(timers_.Set(0, 1000, &Record), timers_.Set(0, 1000, &Record));
}

TEST_F(Timers, KeepToTheShortestAndTheLongestPeriod) {
  timers_.Set(0, 0xFFFFFFFF, &Record);
  EXPECT_EQ(timers_.NextDue(), clock_.Now() + kLongestPeriod);

  timers_.Set(0, 0, &Record);
  EXPECT_EQ(timers_.NextDue(), clock_.Now() + kShortestPeriod);
}

TEST_F(Timers, ThatAreNotArmedCanBeKilled) {
  timers_.Kill(17);

  EXPECT_FALSE(timers_.FireDue(RunAtOnce));
  EXPECT_THAT(fired, IsEmpty());
}

class LoopTimers : public CompanyFixture {
 protected:
  static HostOptions By(LoopClock& clock) {
    HostOptions options;
    options.clock = &clock;
    return options;
  }
};

TEST_F(LoopTimers, FireInTheOrderOfTheirTimes) {
  ScriptedLoopClock clock;
  StandaloneHost host(path_, kAdministratorName, By(clock));
  const TimerId late = host.Services().platform->SetTimer(0, 86'400'000, &Record);
  const TimerId early = host.Services().platform->SetTimer(0, 50'000'000, &Record);
  onFire = [&](TimerId timer) {
    if (timer == late) host.Loop().Quit();
  };

  host.Loop().Run();

  EXPECT_THAT(fired, ElementsAre(early, late));
}

TEST_F(LoopTimers, FireInAUnitOfWork) {
  ScriptedLoopClock clock;
  StandaloneHost host(path_, kAdministratorName, By(clock));
  host.Services().platform->SetTimer(0, 1000, &Record);
  bool wasInUnit = false;
  onFire = [&](TimerId) {
    wasInUnit = host.Data().InUnit();
    host.Loop().Quit();
  };

  host.Loop().Run();

  EXPECT_TRUE(wasInUnit);
  EXPECT_FALSE(host.Data().InUnit());
}

TEST_F(LoopTimers, ThatAreKilledLetTheLoopSleep) {
  StandaloneHost* sleeping = nullptr;
  ScriptedLoopClock clock([&] { sleeping->Loop().Quit(); });
  StandaloneHost host(path_, kAdministratorName, By(clock));
  sleeping = &host;
  host.Services().platform->KillTimer(host.Services().platform->SetTimer(0, 1000, &Record));

  host.Loop().Run();

  EXPECT_THAT(fired, IsEmpty());
}

TEST_F(LoopTimers, FireByTheClockOfTheMachine) {
  StandaloneHost host(path_);
  onFire = [&](TimerId timer) {
    host.Services().platform->KillTimer(timer);
    host.Loop().Quit();
  };
  const auto armed = std::chrono::steady_clock::now();
  host.Services().platform->SetTimer(0, 30, &Record);

  host.Loop().Run();

  EXPECT_GE(std::chrono::steady_clock::now() - armed, milliseconds(30));
  EXPECT_EQ(fired.size(), 1U);
}

}  // namespace
}  // namespace standalone
