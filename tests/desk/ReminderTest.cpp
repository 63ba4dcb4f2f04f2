#include <cstring>
#include <tuple>

#include "MultiEntityHost/Preferences.h"
#include "standalone/desk/Reminder.h"
#include "tests/desk/DayOfACompany.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

constexpr double kSecondsThatMayPass = 2;

// A company that is opened for the reminder alone, as the module keeps switches and values for the life of a process.
class TheReminder : public testing::Test {
 protected:
  void Make(const NewCompany& company = {}) {
    NewCompany made = company;
    made.file = path_;
    made.name = "Alder Supply Company";
    CreateCompany(made);
  }
  template <typename Change>
  void ChangeFile(Change&& change) {
    standalone::StandaloneHost host(path_);
    host.Request(standalone::Access::kWrite, [&] { change(host); });
  }
  void RelateBirch() {
    ChangeFile([](standalone::StandaloneHost& host) {
      DBMultiEntityRelation relation{};
      std::strcpy(relation.realmId, "1001");
      std::strcpy(relation.partnerName, "Birch Services Company");
      relation.state = 3;
      host.Services().multiEntity.SaveRelation(relation);
    });
  }
  void AddRobin(const std::vector<standalone::FeatureRight>& rights, bool accountant = false) {
    ChangeFile([&](standalone::StandaloneHost& host) {
      standalone::User robin;
      robin.name = "Robin";
      robin.accountant = accountant;
      robin.featureRights = rights;
      host.Users().Add(robin);
    });
  }
  void Remember(const char* day) {
    ChangeFile([&](standalone::StandaloneHost& host) { host.Preferences().Set(kLaunchDatePreference, day); });
  }
  void RememberDay(DateType32 day) {
    std::string text = standalone::FormatIsoDate(day);
    std::erase(text, '-');
    Remember(text.c_str());
  }
  void SetRemote(std::string_view text) { standalone::WriteFile(standalone::CompanyFile::RemotePath(path_), text); }
  void SetTimes(const std::string& delay, const std::string& hour) {
    SetRemote("[values.MultiEntity]\nInitialDelayInSeconds = \"" + delay + "\"\nHoursToLaunchDay = \"" + hour + "\"\n");
  }

  // What is told beforehand and what happens then.
  struct ToldAndDone {
    Reminder told;
    DayOfACompany day;
    std::chrono::duration<double> tookSeconds{};  // from the one to the other
  };
  ToldAndDone TellAndKeepOpen(const std::string& user = kFirstUser) {
    Company company(path_, {.user = user, .onOpened = {}, .onLogLine = {}, .onAnswer = {}});
    EXPECT_TRUE(company.HasBridge());
    ToldAndDone result;
    const auto begun = std::chrono::steady_clock::now();
    result.told = ShowReminder(company);
    result.day = KeepOpen(company);
    result.tookSeconds = std::chrono::steady_clock::now() - begun;
    return result;
  }
  static void ExpectTheSame(const ToldAndDone& result) {
    EXPECT_THAT(result.day.failures, testing::IsEmpty());
    EXPECT_EQ(result.day.timesArmed + result.day.timesNotArmed, 1);
    ASSERT_EQ(result.told.obstacle.has_value(), !result.day.armed.has_value());
    EXPECT_EQ(result.told.timing.has_value(), result.day.armed.has_value());
    if (!result.day.armed || !result.told.timing) return;
    const double secondsThatMayPass = kSecondsThatMayPass + result.tookSeconds.count();
    EXPECT_NEAR(static_cast<double>(result.told.timing->delay.count()), static_cast<double>(result.day.armed->count()),
                secondsThatMayPass);
    EXPECT_NEAR(SecondsOf(result.told.timing->due), SecondsOf(*result.day.due), secondsThatMayPass);
  }
  static double SecondsOf(const standalone::DayAndTime& time) {
    constexpr std::int32_t kSecondsOfADay = 86400;
    const double days = DateMinusDate(time.day, {2000, 1, 1});
    return days * kSecondsOfADay + static_cast<double>(time.sinceMidnight.count());
  }

  standalone::TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "alder.company";
};

using Circumstances = std::tuple<bool, bool, bool, bool, bool, bool>;

class TheReminderUnder : public TheReminder, public testing::WithParamInterface<Circumstances> {};

TEST_P(TheReminderUnder, TheseCircumstancesComesExactlyWhenItIsSaidTo) {
  const auto [isOff, isSample, isCopy, hasCurrencies, hasNoRight, hasNoRelation] = GetParam();
  Make({.file = {}, .name = {}, .multiCurrency = hasCurrencies, .sampleFile = isSample, .accountantsCopy = isCopy});
  SetRemote(std::string("[switches.MultiEntityFeature]\nME_FOR_ALL = ") + (isOff ? "false" : "true") +
            "\n[values.MultiEntity]\nInitialDelayInSeconds = \"700\"\nHoursToLaunchDay = \"0\"\n");
  if (!hasNoRelation) RelateBirch();
  AddRobin({{kFeatureJournalEntries, hasNoRight ? kActionView : kActionCreate}});

  const ToldAndDone result = TellAndKeepOpen("Robin");

  const bool stands = isOff || isSample || isCopy || hasCurrencies || hasNoRight || hasNoRelation;
  EXPECT_EQ(result.day.armed.has_value(), !stands);
  ExpectTheSame(result);
  if (!stands) return;
  const NoReminder first = isOff           ? NoReminder::kFeatureIsOff
                           : isSample      ? NoReminder::kSampleFile
                           : isCopy        ? NoReminder::kAccountantsCopy
                           : hasCurrencies ? NoReminder::kSeveralCurrencies
                           : hasNoRight    ? NoReminder::kNoRight
                                           : NoReminder::kNoRelation;
  EXPECT_EQ(result.told.obstacle, first);
}

INSTANTIATE_TEST_SUITE_P(All, TheReminderUnder,
                         testing::Combine(testing::Bool(), testing::Bool(), testing::Bool(), testing::Bool(),
                                          testing::Bool(), testing::Bool()));

TEST_F(TheReminder, ComesToAnAdministrator) {
  Make();
  RelateBirch();

  const ToldAndDone result = TellAndKeepOpen();

  EXPECT_TRUE(result.day.armed.has_value());
  ExpectTheSame(result);
}

TEST_F(TheReminder, ComesToAnAccountantWithoutRights) {
  Make();
  RelateBirch();
  AddRobin({}, /*accountant=*/true);

  const ToldAndDone result = TellAndKeepOpen("Robin");

  EXPECT_TRUE(result.day.armed.has_value());
  ExpectTheSame(result);
}

TEST_F(TheReminder, WaitsForTheLeastDelayAfterTheLaunchHour) {
  Make();
  RelateBirch();
  SetTimes("7", "0");

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  EXPECT_EQ(result.told.rememberedDay, std::nullopt);
  ASSERT_TRUE(result.told.timing.has_value());
  EXPECT_EQ(result.told.timing->delay, std::chrono::seconds(7));
  EXPECT_EQ(result.told.timing->untilLaunch, std::chrono::seconds(0));
  EXPECT_EQ(result.told.timing->leastDelay, std::chrono::seconds(7));
  EXPECT_EQ(result.told.timing->launchHour, 0U);
}

TEST_F(TheReminder, WaitsForTheLaunchHour) {
  Make();
  RelateBirch();
  SetTimes("7", "36");
  const DateType32 today = platform::Today(platform::SystemClock());

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  ASSERT_TRUE(result.told.timing.has_value());
  EXPECT_EQ(result.told.timing->delay, result.told.timing->untilLaunch);
  EXPECT_EQ(result.told.timing->launchHour, 36U);
  EXPECT_EQ(result.told.timing->due.day, DateAdd(today, 1));
}

TEST_F(TheReminder, WaitsForTheRememberedDay) {
  Make();
  RelateBirch();
  const DateType32 today = platform::Today(platform::SystemClock());
  RememberDay(DateAdd(today, 20));
  SetTimes("7", "10");

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  EXPECT_EQ(result.told.launchDay, DateAdd(today, 20));
  ASSERT_TRUE(result.told.timing.has_value());
  EXPECT_TRUE(result.told.timing->isLaunchDayAhead);
  EXPECT_FALSE(result.told.timing->isLaunchDayPast);
  EXPECT_EQ(result.told.timing->due.day, DateAdd(today, 20));
}

// Around 24 days, which is as long as a timer lasts, 49 and 99, after which its milliseconds begin again at zero, and
// 136 years, after which the module's seconds do.
class TheReminderForAFarDay : public TheReminder, public testing::WithParamInterface<int> {};

TEST_P(TheReminderForAFarDay, ComesWhenItIsSaidTo) {
  Make();
  RelateBirch();
  SetTimes("7", "10");
  const DateType32 today = platform::Today(platform::SystemClock());
  RememberDay(DateAdd(today, GetParam()));

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  ASSERT_TRUE(result.told.timing.has_value());
  const ReminderTiming& timing = *result.told.timing;
  EXPECT_LE(timing.delay, std::chrono::seconds(2'147'483));
  EXPECT_EQ(timing.comesEarly, GetParam() > 24);
  EXPECT_NEAR(std::chrono::duration<double>(timing.untilLaunch).count(), GetParam() * 86400.0, 86400.0);
}

INSTANTIATE_TEST_SUITE_P(Each, TheReminderForAFarDay,
                         testing::Values(23, 26, 48, 49, 50, 51, 60, 73, 76, 98, 100, 365, 49'700, 49'712, 99'430));

TEST_F(TheReminder, TakesARememberedDayInThePastForToday) {
  Make();
  RelateBirch();
  Remember("20200102");
  SetTimes("7", "0");

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  EXPECT_EQ(result.told.rememberedDay, "20200102");
  EXPECT_EQ(result.told.launchDay, DateType32(2020, 1, 2));
  ASSERT_TRUE(result.told.timing.has_value());
  EXPECT_TRUE(result.told.timing->isLaunchDayPast);
  EXPECT_EQ(result.told.timing->delay, std::chrono::seconds(7));
}

TEST_F(TheReminder, DoesNotComeWhenTheRememberedDayIsNone) {
  Make();
  RelateBirch();
  Remember("soon");

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  EXPECT_EQ(result.told.obstacle, NoReminder::kRememberedDayIsNone);
  EXPECT_EQ(result.told.rememberedDay, "soon");
  EXPECT_EQ(result.told.launchDay, std::nullopt);
}

TEST_F(TheReminder, IsShownWithTheDayAlsoWhenItDoesNotCome) {
  Make();
  Remember("20200102");

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  EXPECT_EQ(result.told.obstacle, NoReminder::kNoRelation);
  EXPECT_EQ(result.told.launchDay, DateType32(2020, 1, 2));
}

TEST_F(TheReminder, IsShownWithoutTheCompanyRememberingAnything) {
  Make();
  RelateBirch();
  Company company(path_);

  ShowReminder(company);

  EXPECT_EQ(ShowReminder(company).rememberedDay, std::nullopt);
}

TEST_F(TheReminder, ComesTodayOnceAFarDayWasReset) {
  Make();
  RelateBirch();
  Remember("21000102");
  SetTimes("7", "0");
  {
    Company company(path_);
    const ReminderReset reset = ResetReminder(company);
    EXPECT_EQ(reset.before, "21000102");
    EXPECT_EQ(reset.launchDay, platform::Today(platform::SystemClock()));
  }

  const ToldAndDone result = TellAndKeepOpen();

  ExpectTheSame(result);
  EXPECT_EQ(result.told.rememberedDay, std::nullopt);
  ASSERT_TRUE(result.told.timing.has_value());
  EXPECT_EQ(result.told.timing->delay, std::chrono::seconds(7));
}

TEST_F(TheReminder, ComesTodayOnceADayThatIsNoneWasReset) {
  Make();
  RelateBirch();
  Remember("soon");
  Company company(path_);

  EXPECT_EQ(ResetReminder(company).before, "soon");

  EXPECT_EQ(ShowReminder(company).obstacle, std::nullopt);
}

TEST_F(TheReminder, IsResetAlsoWhereNothingIsRemembered) {
  Make();
  Company company(path_);

  EXPECT_EQ(ResetReminder(company).before, std::nullopt);
}

TEST_F(TheReminder, IsResetByAdministratorsOnly) {
  Make();
  Remember("21000102");
  AddRobin({}, /*accountant=*/true);
  Company company(path_, {.user = "Robin", .onOpened = {}, .onLogLine = {}, .onAnswer = {}});

  const Refusal refusal = RefusalOf([&] { ResetReminder(company); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(refusal.what, UseCase::kResetReminder);
  EXPECT_EQ(ShowReminder(company).rememberedDay, "21000102");
}

TEST_F(TheReminder, ComesWhenTheSwitchesCannotBeRead) {
  Make();
  RelateBirch();
  SetRemote("[switches.MultiEntityFeature\n");

  const ToldAndDone result = TellAndKeepOpen();

  EXPECT_TRUE(result.day.armed.has_value());
  ExpectTheSame(result);
}

}  // namespace
}  // namespace desk
