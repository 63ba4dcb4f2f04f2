#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

#include "platform/ThreadTimers.h"
#include "tests/platform/ScriptedLoopClock.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// A timer's procedure has no room for anything of its own.
std::vector<TimerId> fired;
std::function<void(TimerId)> onFire = [](TimerId) {
};

void Record(HWND__* window, std::uint32_t message, TimerId timer, unsigned long /*ticks*/) {
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

}  // namespace
}  // namespace platform
