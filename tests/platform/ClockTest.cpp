#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <thread>

#include "platform/Clock.h"

namespace platform {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

class StoppedClock final : public Clock {
 public:
  explicit StoppedClock(TimePoint moment) : moment_(moment) {}
  TimePoint Now() override { return moment_; }

 private:
  TimePoint moment_;
};

TEST(LocalTime, OfAMomentIsThatWhichNamesIt) {
  const auto moment = MomentOf(DateType32(2026, 7, 4), hours(9) + seconds(58));
  ASSERT_TRUE(moment.has_value());

  const std::tm local = LocalTimeOf(*moment + std::chrono::milliseconds(999));

  EXPECT_EQ(local.tm_year, 126);
  EXPECT_EQ(local.tm_mon, 6);
  EXPECT_EQ(local.tm_mday, 4);
  EXPECT_EQ(local.tm_hour, 9);
  EXPECT_EQ(local.tm_min, 0);
  EXPECT_EQ(local.tm_sec, 58);
}

TEST(LocalTime, OfNoYearThatIsCountedHasNoMoment) {
  EXPECT_FALSE(MomentOf(DateType32(1960, 1, 1), seconds(0)).has_value());
  EXPECT_TRUE(MomentOf(DateType32(kFirstYear, 1, 1), seconds(0)).has_value());
  EXPECT_TRUE(MomentOf(DateType32(kLastYear, 12, 31), hours(24) - seconds(1)).has_value());
  EXPECT_FALSE(MomentOf(DateType32(2300, 1, 1), seconds(0)).has_value());
}

// The days around are those of any place.
TEST(AClock, ThatShowsATimeBefore1900IsNotGoneBy) {
  using std::chrono::sys_days;
  using namespace std::chrono_literals;

  EXPECT_FALSE(CanDateBy(sys_days(1899y / 12 / 30)));
  EXPECT_TRUE(CanDateBy(sys_days(1900y / 1 / 3)));
  EXPECT_TRUE(CanDateBy(sys_days(2199y / 12 / 29)));
  EXPECT_FALSE(CanDateBy(sys_days(2200y / 1 / 3)));
}

TEST(AClock, AtTheEndsOfWhatItCountsIsNotGoneBy) {
  EXPECT_FALSE(CanDateBy(Clock::TimePoint::min()));
  EXPECT_FALSE(CanDateBy(Clock::TimePoint::max()));
}

#ifndef _WIN32
// As summer time begins.
TEST(LocalTime, ThatIsNeverShownHasNoMoment) {
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  tzset();

  EXPECT_FALSE(MomentOf(DateType32(2026, 3, 29), hours(2) + std::chrono::minutes(30)).has_value());
  EXPECT_TRUE(MomentOf(DateType32(2026, 3, 29), hours(3) + std::chrono::minutes(30)).has_value());
}
#endif

TEST(Today, IsTheDayOfThisPlaceFromItsFirstSecondToItsLast) {
  StoppedClock first(*MomentOf(DateType32(2026, 1, 31), seconds(0)));
  StoppedClock last(*MomentOf(DateType32(2026, 1, 31), hours(24) - seconds(1)));

  EXPECT_EQ(Today(first), DateType32(2026, 1, 31));
  EXPECT_EQ(Today(last), DateType32(2026, 1, 31));
}

TEST(AClockThatWasSet, GoesOnFromThere) {
  const Clock::TimePoint begin = *MomentOf(DateType32(2020, 2, 29), hours(12));
  ClockFrom clock(begin);

  const Clock::TimePoint first = clock.Now();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const Clock::TimePoint later = clock.Now();

  EXPECT_GE(first, begin);
  EXPECT_LT(first, begin + hours(1));
  EXPECT_GE(later, first + std::chrono::milliseconds(20));
}

}  // namespace
}  // namespace platform
