#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;

namespace {

// A company that needs the reminder.
class RelatedBooks : public Books {
 public:
  RelatedBooks() { RelateBirch(); }

 protected:
  Json Reminder() const { return Answer({"reminder", "show", kFile}); }
  // What people read.
  std::string Why(const std::string& user = "Admin") const {
    const std::string shown = Run({"reminder", "show", kFile, "--user", user}).out;
    const std::string title = "Why:        ";
    const std::size_t begin = shown.find(title) + title.size();
    return shown.substr(begin, shown.find('\n', begin) - begin);
  }
  void SetRemoteValues(const std::string& delay, const std::string& hour) const {
    WriteFile("alder.company.remote.toml",
              "[values.MultiEntity]\nInitialDelayInSeconds = \"" + delay + "\"\nHoursToLaunchDay = \"" + hour + "\"\n");
  }
};

}  // namespace

TEST_F(RelatedBooks, AfterTheLaunchHourTheLeastDelayCounts) {
  SetRemoteValues("7", "0");

  const Json reminder = Reminder();

  EXPECT_EQ(reminder.at("comes"), true);
  EXPECT_EQ(reminder.at("remembered"), false);
  EXPECT_EQ(reminder.at("delaySeconds"), 7);
  EXPECT_EQ(Why(), "00:00 today has passed, so the least delay of 7 seconds counts");
}

TEST_F(RelatedBooks, BeforeTheLaunchHourItIsWaitedFor) {
  SetRemoteValues("7", "48");

  const Json reminder = Reminder();

  EXPECT_GT(reminder.at("delaySeconds"), 23 * 3600);
  EXPECT_LE(reminder.at("delaySeconds"), 48 * 3600);
  EXPECT_EQ(Why(), "48:00 today is still ahead");
}

TEST_F(RelatedBooks, ALaunchHourThatComesTooSoonWaitsForTheLeastDelay) {
  SetRemoteValues("1000000", "48");

  const Json reminder = Reminder();

  EXPECT_EQ(reminder.at("delaySeconds"), 1000000);
  EXPECT_EQ(Why(), "48:00 today comes before the least delay of 1000000 seconds is over");
}

TEST_F(RelatedBooks, ARememberedDayInTheFutureIsWaitedFor) {
  setenv("MULTIENTITY_NOW", "2026-01-31T09:00:00", 1);
  Remember("MEPromptLaunchDate", "20260220");

  const Json reminder = Reminder();

  EXPECT_EQ(reminder.at("launchDate"), "2026-02-20");
  EXPECT_EQ(reminder.at("remembered"), true);
  EXPECT_EQ(reminder.at("comesEarly"), false);
  EXPECT_EQ(Why(), "10:00 on 2026-02-20 is still ahead");
}

TEST_F(RelatedBooks, ADayFurtherAheadThanATimerWaitsIsSaidToLieAheadOfTheReminder) {
  setenv("MULTIENTITY_NOW", "2026-01-31T09:00:00", 1);
  Remember("MEPromptLaunchDate", "20260302");

  const Json reminder = Reminder();

  EXPECT_EQ(reminder.at("comesEarly"), true);
  EXPECT_EQ(reminder.at("delaySeconds"), 2147483);
  EXPECT_GT(reminder.at("secondsUntilLaunch"), 2147483);
  EXPECT_THAT(reminder.at("dueAt").get<std::string>(), testing::StartsWith("2026-02-25T"));
  EXPECT_EQ(Why(), "10:00 on 2026-03-02 lies further ahead than a timer can wait, so the reminder comes earlier");
}

TEST_F(RelatedBooks, ALeastDelayThatNoTimerWaitsForIsSaidToBeTooLong) {
  SetRemoteValues("2592000", "0");

  EXPECT_EQ(Reminder().at("delaySeconds"), 2147483);
  EXPECT_EQ(Why(), "a timer cannot wait for the least delay of 2592000 seconds, so the reminder comes earlier");
}

TEST_F(RelatedBooks, ARememberedDayInThePastCountsAsToday) {
  SetRemoteValues("7", "0");
  Remember("MEPromptLaunchDate", "20200102");

  const Json reminder = Reminder();

  EXPECT_EQ(reminder.at("launchDate"), "2020-01-02");
  EXPECT_EQ(reminder.at("delaySeconds"), 7);
  EXPECT_THAT(Why(), HasSubstr("as which a day in the past counts"));
}

TEST_F(RelatedBooks, ADayThatCannotBeReadIsNamed) {
  Remember("MEPromptLaunchDate", "soon");

  const Json reminder = Reminder();

  EXPECT_EQ(reminder.at("comes"), false);
  EXPECT_EQ(reminder.at("launchDate"), nullptr);
  EXPECT_EQ(reminder.at("delaySeconds"), nullptr);
  EXPECT_EQ(Why(), "the company file remembers \"soon\" as the day of the next reminder, which is no day");
}

TEST_F(RelatedBooks, ShowingTheReminderHasTheFileRememberNothing) {
  const Json first = Reminder();
  const Json second = Reminder();

  EXPECT_EQ(first.at("remembered"), false);
  EXPECT_EQ(second.at("remembered"), false);
}

TEST_F(RelatedBooks, TheReminderIsShownForPeople) {
  SetRemoteValues("1", "0");

  EXPECT_THAT(Run({"reminder", "show", kFile}).out,
              testing::MatchesRegex("Reminder:   comes while the company is open\n"
                                    "Launch day: [0-9-]+ \\(today, as the company file remembers no day\\)\n"
                                    "Delay:      1 second, until [0-9-]+ [0-9:]+\n"
                                    "Why:        00:00 today has passed, so the least delay of 1 second counts\n"
                                    "Waiting:    nothing\n"));
}

TEST_F(RelatedBooks, AFarDayIsResetToToday) {
  setenv("MULTIENTITY_NOW", "2026-01-31T09:00:00", 1);
  Remember("MEPromptLaunchDate", "21000102");

  const Outcome outcome = Run({"reminder", "reset", kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "The company file remembered \"21000102\" as the day of the next reminder and has forgotten it; today, "
            "2026-01-31, counts as the launch day.\n");
  EXPECT_EQ(Reminder().at("launchDate"), "2026-01-31");
  EXPECT_EQ(Why(), "10:00 today is still ahead");
}

TEST_F(RelatedBooks, WithNoDayRememberedAResetSaysSo) {
  setenv("MULTIENTITY_NOW", "2026-01-31T09:00:00", 1);

  EXPECT_EQ(Answer({"reminder", "reset", kFile}),
            Json::parse(R"({"rememberedBefore":null,"rememberedDay":null,"launchDate":"2026-01-31"})"));
  EXPECT_EQ(Run({"reminder", "reset", kFile}).out,
            "The company file remembered no day of the next reminder; today, 2026-01-31, counts as the launch day.\n");
}

TEST_F(RelatedBooks, WhoIsNoAdministratorResetsNoReminder) {
  Done({"users", "add", kFile, "Robin", "--accountant"});
  Remember("MEPromptLaunchDate", "21000102");

  const Outcome outcome = Run({"reminder", "reset", kFile, "--user", "Robin"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"Robin\" is no administrator"));
  EXPECT_EQ(Reminder().at("rememberedDay"), "21000102");
}

TEST_F(Books, WithoutRelationsNoReminderComes) {
  const Outcome outcome = Run({"reminder", "show", kFile});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Reminder:   does not come\n"), HasSubstr("Delay:      none\n"),
                                 HasSubstr("there is no relation with a partner company")));
}

TEST_F(RelatedBooks, ASampleFileAnAccountantsCopyAndSeveralCurrenciesNeedNoReminder) {
  Done({"settings", "set", kFile, "multi-currency", "yes"});
  EXPECT_EQ(Reminder().at("obstacle"), "several-currencies");
  EXPECT_EQ(Why(), "the company keeps several currencies");
  Done({"settings", "set", kFile, "accountants-copy", "yes"});
  EXPECT_EQ(Why(), "this is an accountant's copy");
  Done({"settings", "set", kFile, "sample-file", "yes"});
  EXPECT_EQ(Why(), "this is a sample file");
}

TEST_F(RelatedBooks, AUserWhoMayNotCreateJournalEntriesNeedsNoReminder) {
  Done({"users", "add", kFile, "Robin", "--right", "journal:view"});

  EXPECT_EQ(Why("Robin"), "this user is no administrator and no accountant and may not create journal entries");
}

TEST_F(RelatedBooks, AnAccountantNeedsTheReminder) {
  Done({"users", "add", kFile, "Robin", "--accountant"});

  EXPECT_EQ(Answer({"reminder", "show", kFile, "--user", "Robin"}).at("comes"), true);
}

TEST_F(RelatedBooks, WithTheFeatureSwitchedOffNoReminderComes) {
  WriteFile("alder.company.remote.toml", "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  EXPECT_EQ(Why(), "the multi-entity feature is switched off");
}
