#include <ctime>
#include <stdexcept>
#include <string>

#include "MultiEntity/MESchedulerUtil.h"
#include "module/Arrangements.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Pair;
using testing::SizeIs;
using testing::ThrowsMessage;

constexpr const char* kAskedForHour = "GetValue2(MultiEntity, HoursToLaunchDay)";

struct TimeOfDay {
  std::uint16_t hour;
  std::uint16_t minute;
  std::uint16_t second;
};

// 3 March 2024 at noon, unless a test sets the clock.
class LaunchTiming : public AttachedTest {
 protected:
  void Configure(const std::string& key, const std::string& value) { host.values.values[{"MultiEntity", key}] = value; }
  void LaunchAt(const std::string& hour) { Configure("HoursToLaunchDay", hour); }
  void FileRemembers(const std::string& date) { host.databasePreferences.values["MEPromptLaunchDate"] = date; }

  void SetClock(TimeOfDay time) {
    host.platform.now.wHour = time.hour;
    host.platform.now.wMinute = time.minute;
    host.platform.now.wSecond = time.second;
  }
  void SetCalendar(std::uint16_t year, std::uint16_t month, std::uint16_t day) {
    host.platform.now.wYear = year;
    host.platform.now.wMonth = month;
    host.platform.now.wDay = day;
  }
};

TEST_F(LaunchTiming, HasALeastDelayOfFifteenMinutesUnlessConfigured) {
  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 900U);

  EXPECT_THAT(host.Calls(), InOrder("GetValue2(MultiEntity, InitialDelayInSeconds)"));
  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE"),
                      Trace("MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: "
                            "")));
}

TEST_F(LaunchTiming, HasTheLeastDelayThatIsConfigured) {
  Configure("InitialDelayInSeconds", "12xyz");

  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 12U);

  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE"),
                      Trace("MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: "
                            "12xyz")));
}

TEST_F(LaunchTiming, ReportsALeastDelayThatIsNoNumber) {
  Configure("InitialDelayInSeconds", "abc");

  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 900U);

  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE"),
                      Trace("MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: "
                            "abc"),
                      Error("MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE")));
}

TEST_F(LaunchTiming, ReportsALeastDelayThatCannotBeRead) {
  host.ThrowAt("GetValue2", 42);

  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 900U);

  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE"),
                      Error("MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE")));
}

TEST_F(LaunchTiming, AsksForTheLeastDelayEachTime) {
  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 900U);
  Configure("InitialDelayInSeconds", "5");
  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 5U);
}

TEST_F(LaunchTiming, LaunchesAtTenUnlessConfigured) {
  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), 10U);

  EXPECT_THAT(host.Calls(), InOrder(kAskedForHour));
  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE"),
                      Trace("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from "
                            "DCE: ")));
}

TEST_F(LaunchTiming, LaunchesAtTheHourThatIsConfiguredAlsoBeyondADay) {
  LaunchAt("25");

  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), 25U);

  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE"),
                      Trace("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from "
                            "DCE: 25")));
}

TEST_F(LaunchTiming, ReportsALaunchHourThatIsNoNumber) {
  LaunchAt("ten");

  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), 10U);

  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE"),
                      Trace("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from "
                            "DCE: ten"),
                      Error("MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE")));
}

TEST_F(LaunchTiming, ReportsALaunchHourThatCannotBeRead) {
  host.ThrowAt("GetValue2", std::runtime_error("the values cannot be reached"));

  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), 10U);

  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE"),
                      Error("MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE")));
}

struct RemoteNumber {
  const char* text;
  std::uint32_t number;
};

void PrintTo(const RemoteNumber& expected, std::ostream* out) {
  *out << '"' << expected.text << "\" as " << expected.number;
}

class NumberAtARemoteValuesStart : public LaunchTiming, public testing::WithParamInterface<RemoteNumber> {};

TEST_P(NumberAtARemoteValuesStart, IsTaken) {
  Configure("InitialDelayInSeconds", GetParam().text);
  LaunchAt(GetParam().text);

  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), GetParam().number);
  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), GetParam().number);

  EXPECT_THAT(host.Lines(), SizeIs(4));
}

INSTANTIATE_TEST_SUITE_P(Every, NumberAtARemoteValuesStart,
                         testing::Values(RemoteNumber{"0", 0}, RemoteNumber{"7", 7}, RemoteNumber{"007", 7},
                                         RemoteNumber{"12xyz", 12}, RemoteNumber{"1.5", 1}, RemoteNumber{"1,000", 1},
                                         RemoteNumber{"0x10", 0}, RemoteNumber{"12 34", 12}, RemoteNumber{"12~34", 12},
                                         RemoteNumber{" \t\n\v\f\r42", 42}, RemoteNumber{"+7", 7},
                                         RemoteNumber{" +7", 7}, RemoteNumber{"-0", 0}, RemoteNumber{"-1", 4294967295U},
                                         RemoteNumber{" -2 ", 4294967294U}, RemoteNumber{"4294967295", 4294967295U},
                                         RemoteNumber{"-4294967295", 1},
                                         RemoteNumber{"00000000000000000000000000000012", 12}));

class RemoteValueWithoutANumber : public LaunchTiming, public testing::WithParamInterface<const char*> {};

TEST_P(RemoteValueWithoutANumber, IsReportedAndReplacedByTheUsualOne) {
  Configure("InitialDelayInSeconds", GetParam());
  LaunchAt(GetParam());

  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 900U);
  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), 10U);

  ASSERT_THAT(host.Lines(), SizeIs(6));
  EXPECT_THAT(host.Lines()[2], Error("MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE"));
  EXPECT_THAT(host.Lines()[5], Error("MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE"));
}

INSTANTIATE_TEST_SUITE_P(Every, RemoteValueWithoutANumber,
                         testing::Values("abc", "x12", "~12", " ", "+", "-", "--1", "+-1", "+ 5", ".5", "4294967296",
                                         "-4294967296", "18446744073709551616", "18446744073709551615",
                                         "99999999999999999999999999999999999999"));

class LaunchDate : public LaunchTiming {};

TEST_F(LaunchDate, IsTheOneThatTheFileRemembers) {
  FileRemembers("20250105");

  EXPECT_EQ(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), DateType32(2025, 1, 5));

  EXPECT_THAT(host.Calls(),
              InOrder("GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MEPromptLaunchDate)"));
  EXPECT_THAT(host.Lines(),
              InOrder(Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db")));
}

TEST_F(LaunchDate, IsTodayWhenTheFileRemembersNone) {
  EXPECT_EQ(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), DateType32(2024, 3, 3));

  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()",
                                    "GetCompanyDBPreference(MEPromptLaunchDate)", "GetLocalTime()"));
  EXPECT_THAT(host.Lines(),
              InOrder(Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db"),
                      Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Unable to fetch next launch date from pref "
                            "db")));
}

TEST_F(LaunchDate, IsTodayWhenTheFileCannotBeRead) {
  FileRemembers("20250105");
  host.FailAt("GetCompanyDBPreference", -1);

  EXPECT_EQ(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), DateType32(2024, 3, 3));

  EXPECT_THAT(host.Lines(), SizeIs(2));
}

TEST_F(LaunchDate, IsTodayWhileNoFileIsOpen) {
  FileRemembers("20250105");
  host.application.hasActiveFile = false;

  EXPECT_EQ(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), DateType32(2024, 3, 3));

  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetLocalTime()"));
  EXPECT_THAT(host.Lines(), SizeIs(2));
}

TEST_F(LaunchDate, IsTodayWhileTheDatabaseMayNotBeUsed) {
  FileRemembers("20250105");
  host.application.fileState = 1;

  EXPECT_EQ(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), DateType32(2024, 3, 3));

  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()", "GetLocalTime()"));
  EXPECT_THAT(host.Lines(), SizeIs(2));
}

TEST_F(LaunchDate, ThatCannotBeParsedIsThrown) {
  FileRemembers("2025");

  EXPECT_THAT([] { MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(); },
              ThrowsMessage<std::out_of_range>("invalid string position"));

  EXPECT_THAT(host.Lines(), SizeIs(1));
}

TEST_F(LaunchDate, ThatIsRememberedEmptyIsThrown) {
  FileRemembers("");

  EXPECT_THAT([] { MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(); },
              ThrowsMessage<std::invalid_argument>("invalid stoi argument"));
}

class LaunchDateStep : public LaunchDate, public testing::WithParamInterface<const char*> {};

TEST_P(LaunchDateStep, LetsAnExceptionOfTheHostPass) {
  host.ThrowAt(GetParam(), std::runtime_error("the file is damaged"));

  EXPECT_THROW(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(Every, LaunchDateStep,
                         testing::Values("GetActiveFileMgr", "GetFileState", "GetCompanyDBPreference", "GetLocalTime"),
                         [](const auto& tested) { return std::string(tested.param); });

class NextLaunchDate : public LaunchTiming {
 protected:
  static constexpr const char* kOperation = "MESchedulerUtil::SetNextSchedulerTimeToPrefDb";

  static testing::Matcher<LogLine> Setting() {
    return Trace("MULTIENTITY::SetNextSchedulerTimeToPrefDb: Setting next launch date to pref db");
  }

  std::string Remembered() const { return host.databasePreferences.values.at("MEPromptLaunchDate"); }
};

TEST_F(NextLaunchDate, IsTodayWhileTheLaunchHourIsAhead) {
  SetClock({9, 59, 59});

  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_EQ(Remembered(), "20240303");
  EXPECT_THAT(host.LinesOf(kOperation), InOrder(Setting()));
}

TEST_F(NextLaunchDate, IsTomorrowFromTheLaunchHourOn) {
  SetClock({10, 0, 0});

  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_EQ(Remembered(), "20240304");
}

TEST_F(NextLaunchDate, IsWorkedOutBeforeTheFileIsAsked) {
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_THAT(host.Calls(), InOrder("GetLocalTime()", "GetLocalTime()", kAskedForHour, "GetActiveFileMgr()",
                                    "GetFileState()", "SetCompanyDBPreference(MEPromptLaunchDate, 20240304)"));
}

TEST_F(NextLaunchDate, GoesIntoTheNextMonthOrYear) {
  SetCalendar(2024, 2, 29);
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();
  EXPECT_EQ(Remembered(), "20240301");
  SetCalendar(2023, 2, 28);
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();
  EXPECT_EQ(Remembered(), "20230301");
  SetCalendar(2024, 2, 28);
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();
  EXPECT_EQ(Remembered(), "20240229");
  SetCalendar(2024, 12, 31);
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();
  EXPECT_EQ(Remembered(), "20250101");
}

TEST_F(NextLaunchDate, IsNotRememberedWhileNoFileIsOpen) {
  host.application.hasActiveFile = false;

  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_THAT(host.databasePreferences.values, IsEmpty());
  EXPECT_THAT(host.LinesOf(kOperation), InOrder(Setting()));
}

TEST_F(NextLaunchDate, IsNotRememberedWhileTheDatabaseMayNotBeUsed) {
  host.application.fileState = 1;

  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_THAT(host.databasePreferences.values, IsEmpty());
  EXPECT_THAT(host.LinesOf(kOperation), InOrder(Setting()));
}

TEST_F(NextLaunchDate, ThatCannotBeRememberedIsReportedAndTheEarlierOneStays) {
  FileRemembers("20240101");
  host.FailAt("SetCompanyDBPreference");

  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_EQ(Remembered(), "20240101");
  EXPECT_THAT(host.LinesOf(kOperation),
              InOrder(Setting(), Error("MULTIENTITY::SetNextSchedulerTimeToPrefDb: Unable to save next launch date to "
                                       "pref db")));
}

class NextLaunchDateStep : public NextLaunchDate, public testing::WithParamInterface<const char*> {};

TEST_P(NextLaunchDateStep, ReportsWhateverTheHostThrows) {
  host.ThrowAt(GetParam(), 42);

  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  EXPECT_THAT(host.databasePreferences.values, IsEmpty());
  EXPECT_THAT(host.LinesOf(kOperation),
              InOrder(Setting(), Error("MULTIENTITY:: Exception occured in SetNextSchedulerTimeToPrefDb API")));
}

INSTANTIATE_TEST_SUITE_P(Every, NextLaunchDateStep,
                         testing::Values("GetLocalTime", "GetActiveFileMgr", "GetFileState", "SetCompanyDBPreference"),
                         [](const auto& tested) { return std::string(tested.param); });

class LaunchHour : public LaunchTiming {
 protected:
  static bool IsAhead() { return MultiEntityPrivateAccess::IsTimerLaunchDateToday(); }
};

TEST_F(LaunchHour, IsAheadUntilItBegins) {
  SetClock({9, 59, 59});
  EXPECT_TRUE(IsAhead());
  SetClock({10, 0, 0});
  EXPECT_FALSE(IsAhead());
  SetClock({23, 0, 0});
  EXPECT_FALSE(IsAhead());
}

TEST_F(LaunchHour, IsAheadWhateverDateTheFileRemembers) {
  SetClock({9, 59, 59});

  FileRemembers("20991231");
  EXPECT_TRUE(IsAhead());
  FileRemembers("19991231");
  EXPECT_TRUE(IsAhead());

  EXPECT_THAT(host.Calls(), InOrder("GetLocalTime()", kAskedForHour, "GetLocalTime()"));
}

TEST_F(LaunchHour, IsNeverAheadWhenItIsZero) {
  LaunchAt("0");
  SetClock({0, 0, 0});

  EXPECT_FALSE(IsAhead());
}

TEST_F(LaunchHour, IsAlwaysAheadWhenItLiesBeyondTheDay) {
  LaunchAt("-1");
  SetClock({23, 59, 59});

  EXPECT_TRUE(IsAhead());
}

TEST_F(LaunchHour, IsReadOnceForTheDate) {
  SetClock({12, 0, 0});
  EXPECT_FALSE(IsAhead());
  LaunchAt("20");

  EXPECT_FALSE(IsAhead());

  EXPECT_THAT(host.CallsOf({"GetValue2"}), SizeIs(1));
}

TEST_F(LaunchHour, IsReadOnceForTheDelay) {
  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 0U);
  LaunchAt("20");

  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 0U);

  EXPECT_THAT(host.CallsOf({"GetValue2"}), SizeIs(1));
}

TEST_F(LaunchHour, IsReadForTheDateApartFromTheDelay) {
  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 0U);
  LaunchAt("20");

  EXPECT_TRUE(IsAhead());
  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 0U);

  EXPECT_THAT(host.CallsOf({"GetValue2"}), InOrder(kAskedForHour, kAskedForHour));
}

TEST_F(LaunchHour, ThatCouldNotBeReadStaysTheUsualOne) {
  host.ThrowAtNth("GetValue2", 1, 42);
  LaunchAt("20");
  EXPECT_FALSE(IsAhead());

  EXPECT_FALSE(IsAhead());

  EXPECT_THAT(host.CallsOf({"GetValue2"}), SizeIs(1));
}

TEST_F(LaunchHour, IsNotKeptWhenTheClockCannotBeRead) {
  host.ThrowAtNth("GetLocalTime", 1, std::runtime_error("the clock has stopped"));
  EXPECT_THROW(IsAhead(), std::runtime_error);
  LaunchAt("20");

  EXPECT_TRUE(IsAhead());
}

class LaunchDelay : public LaunchTiming {
 protected:
  static constexpr const char* kOperation = "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds";

  static std::uint32_t Seconds() { return MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(); }
};

TEST_F(LaunchDelay, AsksForTheHourThenTheDateThenTheClock) {
  FileRemembers("20240304");

  Seconds();

  EXPECT_THAT(host.Calls(), InOrder(kAskedForHour, "GetActiveFileMgr()", "GetFileState()",
                                    "GetCompanyDBPreference(MEPromptLaunchDate)", "GetLocalTime()"));
  EXPECT_THAT(host.Lines(),
              InOrder(Gate("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE"),
                      Trace("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from "
                            "DCE: "),
                      Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db"),
                      Trace("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date in future")));
}

TEST_F(LaunchDelay, IsToTodaysHourWhenTheFileRemembersNoDate) {
  SetClock({8, 30, 15});

  EXPECT_EQ(Seconds(), 5385U);

  EXPECT_THAT(host.LinesOf(kOperation), InOrder(Trace("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today")));
}

TEST_F(LaunchDelay, ThrowsWhatTheRememberedDateCannotBeParsedFor) {
  FileRemembers("2024/03/03");

  EXPECT_THAT([] { Seconds(); }, ThrowsMessage<std::invalid_argument>("invalid stoi argument"));

  EXPECT_THAT(host.LinesOf(kOperation), IsEmpty());
}

struct DelayCase {
  const char* name;
  const char* rememberedDate;
  const char* hour;
  TimeOfDay now;
  std::uint32_t seconds;
};

void PrintTo(const DelayCase& expected, std::ostream* out) {
  *out << expected.name;
}

class DelayFromNow : public LaunchDelay, public testing::WithParamInterface<DelayCase> {
 protected:
  DelayFromNow() {
    FileRemembers(GetParam().rememberedDate);
    LaunchAt(GetParam().hour);
    SetClock(GetParam().now);
  }
};

class DelayToday : public DelayFromNow {};

TEST_P(DelayToday, CountsToTheLaunchHour) {
  EXPECT_EQ(Seconds(), GetParam().seconds);

  EXPECT_THAT(host.LinesOf(kOperation), InOrder(Trace("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today")));
}

INSTANTIATE_TEST_SUITE_P(Launch, DelayToday,
                         testing::Values(DelayCase{"BeforeTheHour", "20240303", "10", {8, 30, 15}, 5385},
                                         DelayCase{"ASecondBefore", "20240303", "10", {9, 59, 59}, 1},
                                         DelayCase{"AtTheHour", "20240303", "10", {10, 0, 0}, 0},
                                         DelayCase{"WithinTheHour", "20240303", "10", {10, 59, 59}, 0},
                                         DelayCase{"AfterTheHour", "20240303", "10", {23, 59, 59}, 0},
                                         DelayCase{"FromMidnight", "20240303", "10", {0, 0, 0}, 36000},
                                         DelayCase{"HourZero", "20240303", "0", {0, 0, 0}, 0},
                                         DelayCase{"BeyondTheDay", "20240303", "24", {23, 30, 0}, 1800},
                                         DelayCase{"WrapsAround", "20240303", "-1", {0, 0, 0}, 4294963696U},
                                         DelayCase{"FiveDaysPast", "20240227", "10", {8, 30, 15}, 5385},
                                         DelayCase{"YearsPast", "19991231", "10", {12, 0, 0}, 0},
                                         DelayCase{"TheNullDate", "00000000", "10", {8, 30, 15}, 5385}),
                         [](const auto& tested) { return std::string(tested.param.name); });

class DelayToALaterDay : public DelayFromNow {};

TEST_P(DelayToALaterDay, CountsTheDaysToo) {
  EXPECT_EQ(Seconds(), GetParam().seconds);

  EXPECT_THAT(host.LinesOf(kOperation),
              InOrder(Trace("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date in future")));
}

INSTANTIATE_TEST_SUITE_P(Launch, DelayToALaterDay,
                         testing::Values(DelayCase{"JustBeforeMidnight", "20240304", "10", {23, 59, 59}, 36001},
                                         DelayCase{"Tomorrow", "20240304", "10", {12, 0, 0}, 79200},
                                         DelayCase{"HourZero", "20240304", "0", {23, 59, 59}, 1},
                                         DelayCase{"NextMonth", "20240401", "10", {10, 0, 0}, 29 * 86400},
                                         DelayCase{"NextYear", "20250303", "10", {10, 0, 0}, 365 * 86400},
                                         DelayCase{"BeyondTheDay", "20240304", "34", {12, 0, 0}, 165600},
                                         DelayCase{"WrapsAroundBelowZero", "20240304", "-30", {12, 0, 0}, 4294902496U},
                                         DelayCase{
                                             "WrapsAroundAfterACentury", "22000101", "10", {12, 0, 0}, 1253719904U}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(DateAsText, HasEightDigits) {
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 3, 3}), "20250303");
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 12, 25}), "20251225");
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 1, 5}), "20250105");
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 9, 10}), "20250910");
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 10, 9}), "20251009");
}

TEST(DateAsText, HasTheYearUnpadded) {
  EXPECT_EQ(MESchedulerUtil::DateToString({5, 1, 1}), "50101");
  EXPECT_EQ(MESchedulerUtil::DateToString({12024, 11, 30}), "120241130");
  EXPECT_EQ(MESchedulerUtil::DateToString(NullDate()), "00000");
}

TEST(DateAsText, HasFieldsThatAreOutOfRangeAsTheyAre) {
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 13, 100}), "202513100");
}

TEST(TextAsDate, IsReadInThreeFields) {
  EXPECT_EQ(MESchedulerUtil::StringToDate("20250303"), DateType32(2025, 3, 3));
  EXPECT_EQ(MESchedulerUtil::StringToDate("20251225"), DateType32(2025, 12, 25));
}

TEST(TextAsDate, HasATailThatIsIgnored) {
  EXPECT_EQ(MESchedulerUtil::StringToDate("20251225T100000"), DateType32(2025, 12, 25));
}

TEST(TextAsDate, HasFieldsThatAreNotCheckedForTheirRange) {
  EXPECT_EQ(MESchedulerUtil::StringToDate("20259999"), DateType32(2025, 99, 99));
  EXPECT_EQ(MESchedulerUtil::StringToDate("00000000"), NullDate());
}

TEST(TextAsDate, HasFieldsThatAreReadUpToTheirLastDigit) {
  EXPECT_EQ(MESchedulerUtil::StringToDate("25x.3x4x"), DateType32(25, 3, 4));
  EXPECT_EQ(MESchedulerUtil::StringToDate(" +25 3+4"), DateType32(25, 3, 4));
  EXPECT_EQ(MESchedulerUtil::StringToDate("2025031"), DateType32(2025, 3, 1));
  EXPECT_EQ(MESchedulerUtil::StringToDate("20250-11"), DateType32(2025, 0, 11));
}

TEST(TextAsDate, HasFieldsThatMayBeNegative) {
  EXPECT_EQ(MESchedulerUtil::StringToDate("-025-3-4"), DateType32(-25, -3, -4));
}

// What is thrown for a text, and in which words.
struct BadDate {
  const char* text;
  const char* what;
};

void PrintTo(const BadDate& bad, std::ostream* out) {
  *out << '"' << bad.text << '"';
}

class TextWithoutAField : public testing::TestWithParam<BadDate> {};

TEST_P(TextWithoutAField, IsThrownAsARangeError) {
  EXPECT_THAT([] { MESchedulerUtil::StringToDate(GetParam().text); },
              ThrowsMessage<std::out_of_range>(GetParam().what));
}

INSTANTIATE_TEST_SUITE_P(Every, TextWithoutAField,
                         testing::Values(BadDate{"2", "invalid string position"},
                                         BadDate{"202", "invalid string position"},
                                         BadDate{"2025", "invalid string position"},
                                         BadDate{"20251", "invalid string position"},
                                         BadDate{"202512", "invalid string position"}));

class TextWithoutDigits : public testing::TestWithParam<BadDate> {};

TEST_P(TextWithoutDigits, IsThrownAsAnInvalidArgument) {
  EXPECT_THAT([] { MESchedulerUtil::StringToDate(GetParam().text); },
              ThrowsMessage<std::invalid_argument>(GetParam().what));
}

INSTANTIATE_TEST_SUITE_P(
    Every, TextWithoutDigits,
    testing::Values(BadDate{"", "invalid stoi argument"}, BadDate{"abc", "invalid stoi argument"},
                    BadDate{"    0303", "invalid stoi argument"}, BadDate{"2025--11", "invalid stoi argument"},
                    BadDate{"2025ab11", "invalid stoi argument"}, BadDate{"2025 ", "invalid stoi argument"},
                    BadDate{"202512ab", "invalid stoi argument"}, BadDate{"202512+", "invalid stoi argument"}));

TEST(DayOfASystemTime, IsTakenWithoutItsTime) {
  const SYSTEMTIME time{.wYear = 2025,
                        .wMonth = 12,
                        .wDayOfWeek = 6,
                        .wDay = 25,
                        .wHour = 23,
                        .wMinute = 59,
                        .wSecond = 58,
                        .wMilliseconds = 999};

  EXPECT_EQ(MESchedulerUtil::SystemTimeToDate(time), DateType32(2025, 12, 25));
}

DateType32 DayOfTheRuntimesClock() {
  const std::time_t now = std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

constexpr std::uint32_t kDayInSeconds = 86400;

std::uint32_t SecondOfTheLocalDay(std::time_t time) {
  const std::tm local = *std::localtime(&time);
  return static_cast<std::uint32_t>((local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec);
}

// Seconds of the day, also over midnight.
std::uint32_t SecondsBetween(std::uint32_t from, std::uint32_t to) {
  return (to + kDayInSeconds - from) % kDayInSeconds;
}

TEST(LaunchDateByTheLibrarysOwnClock, IsTodaysLocalDay) {
  ScriptedHost host;
  HostServices services = host.Services();
  services.platform = nullptr;
  const Attachment attachment(services);

  const DateType32 before = DayOfTheRuntimesClock();
  const DateType32 launch = MESchedulerUtil::GetNextSchedulerTimeFromPrefDb();
  const DateType32 after = DayOfTheRuntimesClock();

  EXPECT_THAT(launch, AnyOf(before, after));
}

TEST(LaunchDelayByTheLibrarysOwnClock, IsWhatIsLeftOfTheLocalDayToALaunchAtItsEnd) {
  ScriptedHost host;
  HostServices services = host.Services();
  services.platform = nullptr;
  host.values.values[{"MultiEntity", "HoursToLaunchDay"}] = "24";
  const Attachment attachment(services);

  // The runtime's clock and the library's may differ by a tick.
  const std::uint32_t before = SecondOfTheLocalDay(std::time(nullptr) - 1);
  const std::uint32_t seconds = MESchedulerUtil::GetSchedulerLaunchDelayInSeconds();
  const std::uint32_t after = SecondOfTheLocalDay(std::time(nullptr) + 1);

  ASSERT_THAT(seconds, AllOf(Ge(1U), Le(kDayInSeconds)));
  EXPECT_LE(SecondsBetween(before, kDayInSeconds - seconds), SecondsBetween(before, after));
}

}  // namespace
