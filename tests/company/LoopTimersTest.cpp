#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/company/CompanyFixture.h"
#include "tests/company/LoopTimers.h"

namespace standalone {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

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

// A host by the clock of the machine.
class LoopTimers : public CompanyFixture {
 protected:
  StandaloneHost host_{path_};
  Platform& timers_ = TimersOf(host_);
};

TEST_F(LoopTimers, FireInTheOrderOfTheirTimes) {
  const TimerId late = timers_.SetTimer(0, 90, &Record);
  const TimerId early = timers_.SetTimer(0, 50, &Record);
  onFire = [&](TimerId timer) {
    if (timer == late) host_.Loop().Quit();
  };

  host_.Loop().Run();

  EXPECT_THAT(fired, ElementsAre(early, late));
}

TEST_F(LoopTimers, FireUntilTheyAreKilled) {
  const TimerId timer = timers_.SetTimer(0, 10, &Record);
  TimerId last = 0;
  onFire = [&](TimerId id) {
    if (id == last) host_.Loop().Quit();
    if (fired.size() != 3) return;
    timers_.KillTimer(timer);
    last = timers_.SetTimer(0, 100, &Record);
  };

  host_.Loop().Run();

  EXPECT_THAT(fired, ElementsAre(timer, timer, timer, last));
}

TEST_F(LoopTimers, FireAlsoWhenNobodyCanBeToldOfThem) {
  host_.SetTimerObserver({.onArmed = [](milliseconds) { throw std::runtime_error("the disk is full"); },
                          .onDue =
                              [] {
                                throw std::runtime_error("the disk is full");
                              }});
  std::vector<std::string> failures;
  host_.Loop().SetFailureHandler([&](std::string_view what) { failures.emplace_back(what); });
  onFire = [&](TimerId) {
    host_.Loop().Quit();
  };

  const TimerId timer = timers_.SetTimer(0, 10, &Record);
  host_.Loop().Run();

  EXPECT_THAT(fired, ElementsAre(timer));
  EXPECT_THAT(failures, ElementsAre("the disk is full"));
}

TEST_F(LoopTimers, TellWhoObservesThem) {
  std::vector<std::string> told;
  host_.SetTimerObserver({.onArmed = [&](milliseconds period) { told.push_back(std::to_string(period.count())); },
                          .onDue =
                              [&] {
                                told.emplace_back("due");
                              }});
  onFire = [&](TimerId) {
    told.emplace_back("fired");
    host_.Loop().Quit();
  };

  timers_.SetTimer(0, 10, &Record);
  host_.Loop().Run();

  EXPECT_THAT(told, ElementsAre("10", "due", "fired"));
}

TEST_F(LoopTimers, TellThePeriodThatTheyReallyHave) {
  std::vector<milliseconds> told;
  host_.SetTimerObserver({.onArmed = [&](milliseconds period) { told.push_back(period); }, .onDue = {}});

  for (const std::uint32_t asked : {0U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) timers_.SetTimer(0, asked, &Record);

  EXPECT_THAT(told, ElementsAre(milliseconds(10), milliseconds(2147483647), milliseconds(2147483647),
                                milliseconds(2147483647)));
}

TEST_F(LoopTimers, FireInAUnitOfWork) {
  timers_.SetTimer(0, 10, &Record);
  bool wasInUnit = false;
  onFire = [&](TimerId) {
    wasInUnit = host_.Data().InUnit();
    host_.Loop().Quit();
  };

  host_.Loop().Run();

  EXPECT_TRUE(wasInUnit);
  EXPECT_FALSE(host_.Data().InUnit());
}

TEST_F(LoopTimers, FireByTheClockOfTheMachine) {
  onFire = [&](TimerId timer) {
    timers_.KillTimer(timer);
    host_.Loop().Quit();
  };
  const auto armed = std::chrono::steady_clock::now();
  timers_.SetTimer(0, 30, &Record);

  host_.Loop().Run();

  EXPECT_GE(std::chrono::steady_clock::now() - armed, milliseconds(30));
  EXPECT_EQ(fired.size(), 1U);
}

}  // namespace
}  // namespace standalone
