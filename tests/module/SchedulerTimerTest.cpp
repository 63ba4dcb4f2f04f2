#include <stdexcept>
#include <string>

#include "MultiEntity/MESchedulerUtil.h"
#include "module/Arrangements.h"

namespace {

using testing::Contains;
using testing::Field;
using testing::IsEmpty;
using testing::Key;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr const char* kStart = "MESchedulerUtil::StartScheduler";

testing::Matcher<LogLine> Starting() {
  return Gate("MULTIENTITY::StartTimer: Entering function");
}
testing::Matcher<LogLine> StartingFor(const std::string& seconds) {
  return Trace("MULTIENTITY::StartScheduler: Starting Timer for " + seconds + " seconds");
}
testing::Matcher<LogLine> Started() {
  return Gate("MULTIENTITY::StartScheduler: Exiting function");
}
testing::Matcher<LogLine> NotStarted() {
  return Error("MULTIENTITY:: Exception occured in StartScheduler API");
}

// 3 March 2024 at noon, when today's launch hour has passed.
class SchedulerTimer : public AttachedTest {
 protected:
  void Configure(const std::string& key, const std::string& value) { host.values.values[{"MultiEntity", key}] = value; }
  void FileRemembers(const std::string& date) { host.databasePreferences.values["MEPromptLaunchDate"] = date; }

  // The timers that are set and killed.
  std::vector<std::string> Timers() const { return host.CallsOf({"SetTimer", "KillTimer"}); }
};

TEST_F(SchedulerTimer, IsArmedForTheLeastDelayWhenTheLaunchHourHasPassed) {
  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.platform.timers, UnorderedElementsAre(Pair(1, Field(&ScriptedTimer::milliseconds, 900000))));
}

TEST_F(SchedulerTimer, IsArmedInThisOrder) {
  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.Calls(),
              InOrder("GetValue2(MultiEntity, InitialDelayInSeconds)", "GetValue2(MultiEntity, HoursToLaunchDay)",
                      "GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MEPromptLaunchDate)",
                      "GetLocalTime()", "GetLocalTime()", "SetTimer(0, 900000)"));
}

TEST_F(SchedulerTimer, IsArmedAnewBetweenTheseLines) {
  FileRemembers("20240303");
  MESchedulerUtil::StartScheduler();
  host.Forget();

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.Events(),
              InOrder("MULTIENTITY::StartTimer: Entering function", "KillTimer(1)",
                      "MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db",
                      "GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MEPromptLaunchDate)",
                      "GetLocalTime()", "MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today",
                      "MULTIENTITY::StartScheduler: Starting Timer for 900 seconds", "SetTimer(0, 900000)",
                      "MULTIENTITY::StartScheduler: Exiting function"));
}

TEST_F(SchedulerTimer, IsArmedWithTheseLines) {
  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(
      host.Lines(),
      InOrder(Starting(), Gate("MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE"),
              Trace("MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: "),
              Gate("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE"),
              Trace("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from DCE: "),
              Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db"),
              Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Unable to fetch next launch date from pref db"),
              Trace("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today"), StartingFor("900"), Started()));
}

TEST_F(SchedulerTimer, WaitsForTheLaunchWhenThatIsLongerThanTheLeastDelay) {
  FileRemembers("20240304");
  host.platform.now.wHour = 23;
  host.platform.now.wMinute = 59;
  host.platform.now.wSecond = 59;

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 36001000)"));
  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), StartingFor("36001"), Started()));
}

TEST_F(SchedulerTimer, WaitsForTheLeastDelayWhenThatIsLongerThanToTheLaunch) {
  host.platform.now.wHour = 9;
  host.platform.now.wMinute = 50;

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 900000)"));
}

TEST_F(SchedulerTimer, WaitsNotAtAllWithoutALeastDelay) {
  Configure("InitialDelayInSeconds", "0");

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 0)"));
  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), StartingFor("0"), Started()));
}

TEST_F(SchedulerTimer, HasAPeriodThatWrapsAroundInMilliseconds) {
  Configure("InitialDelayInSeconds", "4294968");

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 704)"));
  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), StartingFor("4294968"), Started()));
}

TEST_F(SchedulerTimer, MayWaitForTheLongestDelayThereIs) {
  Configure("InitialDelayInSeconds", "-1");

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 4294966296)"));
  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), StartingFor("4294967295"), Started()));
}

TEST_F(SchedulerTimer, KeepsTheLeastDelayThatItReadFirst) {
  MESchedulerUtil::StartScheduler();
  Configure("InitialDelayInSeconds", "7");

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.CallsOf({"GetValue2"}), SizeIs(2));
  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 900000)", "KillTimer(1)", "SetTimer(0, 900000)"));
}

TEST_F(SchedulerTimer, KeepsTheUsualLeastDelayWhenItCouldNotBeReadFirst) {
  host.ThrowAtNth("GetValue2", 1, 42);
  Configure("InitialDelayInSeconds", "7");
  MESchedulerUtil::StartScheduler();

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 900000)", "KillTimer(1)", "SetTimer(0, 900000)"));
}

TEST_F(SchedulerTimer, IsArmedOnceHoweverOftenItIsStarted) {
  MESchedulerUtil::StartScheduler();
  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.platform.timers, UnorderedElementsAre(Key(2)));
}

TEST_F(SchedulerTimer, IsDisarmedBeforeAnythingElseIsAskedWhenItIsStartedAgain) {
  MESchedulerUtil::StartScheduler();
  host.Forget();

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.Calls(), InOrder("KillTimer(1)", "GetActiveFileMgr()", "GetFileState()",
                                    "GetCompanyDBPreference(MEPromptLaunchDate)", "GetLocalTime()", "GetLocalTime()",
                                    "SetTimer(0, 900000)"));
}

TEST_F(SchedulerTimer, StaysDisarmedWhenTheRememberedDateCannotBeParsed) {
  MESchedulerUtil::StartScheduler();
  FileRemembers("tomorrow");
  host.ops.lines.clear();

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.platform.timers, IsEmpty());
  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), NotStarted()));
}

TEST_F(SchedulerTimer, StaysDisarmedWhenThePlatformCannotArmIt) {
  host.FailAt("SetTimer");

  MESchedulerUtil::StartScheduler();
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 900000)"));
  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), StartingFor("900"), Started()));
}

TEST_F(SchedulerTimer, IsKnownByTheLowerHalfOfItsId) {
  host.platform.lastTimer = (TimerId{1} << 32U) + 6;

  MESchedulerUtil::StartScheduler();
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 900000)", "KillTimer(7)"));
}

TEST_F(SchedulerTimer, ReadsAsDisarmedWhenTheLowerHalfOfItsIdIsZero) {
  host.platform.lastTimer = (TimerId{1} << 32U) - 1;

  MESchedulerUtil::StartScheduler();
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(Timers(), InOrder("SetTimer(0, 900000)"));
}

class SchedulerTimerStep : public SchedulerTimer, public testing::WithParamInterface<const char*> {};

TEST_P(SchedulerTimerStep, LeavesTheTimerDisarmedWhateverTheHostThrows) {
  MESchedulerUtil::StartScheduler();
  host.ops.lines.clear();
  host.ThrowAt(GetParam(), 42);

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.platform.timers, IsEmpty());
  ASSERT_THAT(host.LinesOf(kStart), SizeIs(testing::Ge(2U)));
  EXPECT_THAT(host.LinesOf(kStart).front(), Starting());
  EXPECT_THAT(host.LinesOf(kStart).back(), NotStarted());
}

INSTANTIATE_TEST_SUITE_P(Every, SchedulerTimerStep,
                         testing::Values("GetActiveFileMgr", "GetFileState", "GetCompanyDBPreference", "GetLocalTime",
                                         "SetTimer"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(SchedulerTimer, ThatElapsesIsDisarmedAndQueuesTheReminder) {
  MESchedulerUtil::StartScheduler();
  host.Forget();
  host.ops.lines.clear();

  host.platform.Fire(1);

  EXPECT_THAT(host.Events(), InOrder("MULTIENTITY::OnTimerElapsed: Timer elapsed", "KillTimer(1)", "Enqueue()"));
  EXPECT_THAT(host.Lines(), InOrder(Trace("MULTIENTITY::OnTimerElapsed: Timer elapsed")));
  EXPECT_THAT(host.platform.timers, IsEmpty());
  EXPECT_THAT(host.application.queue, SizeIs(1));
}

TEST_F(SchedulerTimer, ThatElapsedIsNotKilledAgain) {
  MESchedulerUtil::StartScheduler();
  host.platform.Fire(1);
  host.Forget();

  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(SchedulerTimer, ThatElapsesAlthoughNoneIsArmedIsKilledAllTheSame) {
  MESchedulerUtil::OnTimerElapsed(nullptr, 0, 99, 12345);

  EXPECT_THAT(host.Calls(), InOrder("KillTimer(0)", "Enqueue()"));
}

TEST_F(SchedulerTimer, LooksAtNothingThatItsProcedureIsTold) {
  MESchedulerUtil::StartScheduler();
  host.Forget();

  MESchedulerUtil::OnTimerElapsed(reinterpret_cast<HWND__*>(&host), 7, 99, 12345);

  EXPECT_THAT(host.Calls(), InOrder("KillTimer(1)", "Enqueue()"));
}

TEST_F(SchedulerTimer, IsKilledOnceOnDemandWithoutALine) {
  MESchedulerUtil::StartScheduler();
  host.Forget();
  host.ops.lines.clear();

  MESchedulerUtil::KillAnyExistingScheduler();
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(host.Calls(), InOrder("KillTimer(1)"));
  EXPECT_THAT(host.platform.timers, IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(SchedulerTimer, IsNotKilledWhileItIsNotArmed) {
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST(SchedulerTimerOfTheLibrarysOwnPlatform, IsStartedByItsOwnClock) {
  ScriptedHost host;
  HostServices services = host.Services();
  services.platform = nullptr;
  host.values.values[{"MultiEntity", "HoursToLaunchDay"}] = "0";
  host.databasePreferences.values["MEPromptLaunchDate"] = "20010101";
  const Attachment attachment(services);

  MESchedulerUtil::StartScheduler();
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(host.LinesOf(kStart), InOrder(Starting(), StartingFor("900"), Started()));
}

class SchedulerReadiness : public AttachedTest {
 protected:
  static bool Asked() { return MESchedulerUtil::CanProcessSchedulerMsg(); }

  void ExpectTheNote() const {
    EXPECT_THAT(host.Lines(), InOrder(Trace("MULTIENTITY::System is closing or no active file manager and so skip DB "
                                            "operation")));
  }
};

TEST_F(SchedulerReadiness, IsThereWithAnOpenCompanyFile) {
  EXPECT_TRUE(Asked());

  EXPECT_THAT(host.Calls(), InOrder("IsServerMode(false)", "SystemIsOpen()", "SystemIsClosing()", "GetActiveFileMgr()",
                                    "GetFileState()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(SchedulerReadiness, IsMissingInServerMode) {
  host.application.serverMode = true;

  EXPECT_FALSE(Asked());

  EXPECT_THAT(host.Calls(), InOrder("IsServerMode(false)"));
  ExpectTheNote();
}

TEST_F(SchedulerReadiness, IsMissingWhileTheSystemIsNotOpen) {
  host.application.open = false;

  EXPECT_FALSE(Asked());

  EXPECT_THAT(host.Calls(), InOrder("IsServerMode(false)", "SystemIsOpen()"));
  ExpectTheNote();
}

TEST_F(SchedulerReadiness, IsMissingWhileTheSystemIsClosing) {
  host.application.closing = true;

  EXPECT_FALSE(Asked());

  EXPECT_THAT(host.Calls(), InOrder("IsServerMode(false)", "SystemIsOpen()", "SystemIsClosing()"));
  ExpectTheNote();
}

TEST_F(SchedulerReadiness, IsMissingWithoutAnActiveFile) {
  host.application.hasActiveFile = false;

  EXPECT_FALSE(Asked());

  EXPECT_THAT(host.Calls(),
              InOrder("IsServerMode(false)", "SystemIsOpen()", "SystemIsClosing()", "GetActiveFileMgr()"));
  ExpectTheNote();
}

TEST_F(SchedulerReadiness, IsMissingWhileTheDatabaseMayNotBeUsed) {
  host.application.fileState = 1;

  EXPECT_FALSE(Asked());

  EXPECT_THAT(host.Calls(), InOrder("IsServerMode(false)", "SystemIsOpen()", "SystemIsClosing()", "GetActiveFileMgr()",
                                    "GetFileState()"));
  ExpectTheNote();
}

TEST_F(SchedulerReadiness, IsThereInEveryOtherStateOfTheFile) {
  host.application.fileState = 2;
  EXPECT_TRUE(Asked());
  host.application.fileState = -1;
  EXPECT_TRUE(Asked());
}

TEST_F(SchedulerReadiness, LetsAnExceptionOfTheHostPass) {
  host.ThrowAt("SystemIsClosing", std::runtime_error("the system is gone"));

  EXPECT_THROW(Asked(), std::runtime_error);

  EXPECT_THAT(host.Lines(), IsEmpty());
}

}  // namespace
