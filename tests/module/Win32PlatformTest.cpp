// The library with no platform handed in: Windows itself, its thread timers, clock, loader and local memory.
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "module/OnWindows.h"

namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

// Windows knows a thread timer by its id as long as it is armed.
bool IsArmed(const MSG& timer) {
  return ::KillTimer(nullptr, timer.wParam) != 0;
}

std::uint32_t SecondsOfTheDay(const SYSTEMTIME& time) {
  return ((time.wHour * 60U) + time.wMinute) * 60U + time.wSecond;
}

SYSTEMTIME WindowsTime() {
  SYSTEMTIME time{};
  ::GetLocalTime(&time);
  return time;
}

TEST_F(OnWindows, TheTimerComesWithoutAWindowThroughTheLoopOfTheThreadThatArmedIt) {
  MESchedulerUtil::StartScheduler();
  EXPECT_THAT(host.application.queue, IsEmpty());

  const auto timer = NextTimer();
  ASSERT_TRUE(timer.has_value());
  EXPECT_EQ(timer->hwnd, nullptr);
  EXPECT_THAT(host.application.queue, IsEmpty());
  ::DispatchMessageA(&*timer);

  EXPECT_THAT(host.application.queue, SizeIs(1));
  EXPECT_THAT(host.LinesOf("MESchedulerUtil::OnTimerElapsed"), SizeIs(1));
}

TEST_F(OnWindows, TheTimerElapsesOnce) {
  MESchedulerUtil::StartScheduler();
  const auto timer = NextTimer();
  ASSERT_TRUE(timer.has_value());

  ::DispatchMessageA(&*timer);

  EXPECT_FALSE(IsArmed(*timer));
}

TEST_F(OnWindows, TheTimerStaysArmedUntilItIsDispatched) {
  MESchedulerUtil::StartScheduler();
  const auto timer = NextTimer();
  ASSERT_TRUE(timer.has_value());

  EXPECT_TRUE(IsArmed(*timer));
}

TEST_F(OnWindows, TheTimerIsKilledWithTheScheduler) {
  MESchedulerUtil::StartScheduler();
  const auto timer = NextTimer();
  ASSERT_TRUE(timer.has_value());

  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_FALSE(IsArmed(*timer));
}

TEST_F(OnWindows, TheTimerIsKilledWhenTheCompanyIsClosed) {
  MESchedulerUtil::StartScheduler();
  const auto timer = NextTimer();
  ASSERT_TRUE(timer.has_value());

  host.application.NotifyClose();

  EXPECT_FALSE(IsArmed(*timer));
}

TEST_F(OnWindows, TheTimerIsKilledWhenTheHostLetsGo) {
  MESchedulerUtil::StartScheduler();
  const auto timer = NextTimer();
  ASSERT_TRUE(timer.has_value());

  attachment.reset();

  EXPECT_FALSE(IsArmed(*timer));
}

TEST_F(OnWindows, TodayIsThatOfTheLocalClock) {
  const DateType32 before = MESchedulerUtil::SystemTimeToDate(WindowsTime());
  const DateType32 today = MESchedulerUtil::GetNextSchedulerTimeFromPrefDb();
  const DateType32 after = MESchedulerUtil::SystemTimeToDate(WindowsTime());

  EXPECT_THAT(today, AnyOf(before, after));
}

TEST_F(OnWindows, TheWaitForTheLaunchIsCountedFromTheLocalClock) {
  constexpr std::uint32_t kTwoDaysInSeconds = 48 * 60 * 60;
  host.values.values[{"MultiEntity", "HoursToLaunchDay"}] = "48";

  const std::uint32_t before = SecondsOfTheDay(WindowsTime());
  const std::uint32_t wait = MESchedulerUtil::GetSchedulerLaunchDelayInSeconds();
  const std::uint32_t after = SecondsOfTheDay(WindowsTime());

  EXPECT_THAT(wait, AllOf(Ge(kTwoDaysInSeconds - after), Le(kTwoDaysInSeconds - before)));
}

TEST_F(OnWindows, TheRememberedRealmIdIsALocalBlockThatItsCallerFrees) {
  host.databasePreferences.values["MERealmId"] = "9130";
  bool ok = false;

  char* block = MultiEntityDriver::GetMECacheRealmId("", ok);

  EXPECT_STREQ(block, "9130");
  EXPECT_NE(::LocalFlags(block), static_cast<UINT>(LMEM_INVALID_HANDLE));
  EXPECT_EQ(::LocalSize(block), 5U);
  EXPECT_EQ(::LocalFree(block), nullptr);
}

TEST_F(OnWindows, AnEmptyRememberedRealmIdIsALocalBlockOfOneByte) {
  host.databasePreferences.values["MERealmId"] = "";
  bool ok = false;

  char* block = MultiEntityDriver::GetMECacheRealmId("", ok);

  EXPECT_STREQ(block, "");
  EXPECT_EQ(::LocalSize(block), 1U);
  EXPECT_EQ(::LocalFree(block), nullptr);
}

}  // namespace
