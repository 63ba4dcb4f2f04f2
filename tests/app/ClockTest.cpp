#include <cstdlib>

#include "app/Books.h"

using testing::HasSubstr;

namespace {

constexpr const char* kVariable = "MULTIENTITY_NOW";

}  // namespace

TEST_F(Books, ABookingBearsTheDayToWhichTheClockIsSet) {
  RelateBirch();
  setenv(kVariable, "2020-02-29T23:30:00", 1);

  Book("request-1");

  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("date"), "2020-02-29");
  EXPECT_THAT(Run({"log", kFile}).out, HasSubstr("HOST:: the clock was set to 2020-02-29T23:30:00 by MULTIENTITY_NOW"));
}

TEST_F(Books, TheReminderIsReckonedFromTheTimeToWhichTheClockIsSet) {
  RelateBirch();
  setenv(kVariable, "2020-02-29T07:00:00", 1);

  const Json reminder = Answer({"reminder", "show", kFile});

  EXPECT_EQ(reminder.at("launchDate"), "2020-02-29");
  EXPECT_THAT(reminder.at("dueAt").get<std::string>(), HasSubstr("2020-02-29T10:00:"));
}

TEST_F(Books, ATimeThatIsNoneIsNamedAndNothingIsDone) {
  RelateBirch();
  setenv(kVariable, "tomorrow", 1);

  const Outcome outcome = Run({"journal", "record", kFile, "--realm", "1001", "--amount", "40.00", "--request", "r",
                               "--expense", "Utilities", "--name", "Walker"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("MULTIENTITY_NOW \"tomorrow\""));
  EXPECT_THAT(outcome.err, HasSubstr("YYYY-MM-DDTHH:MM:SS"));
  unsetenv(kVariable);
  EXPECT_TRUE(Answer({"transactions", kFile}).at("transactions").empty());
}

TEST_F(Books, ATimeOfAnotherAgeIsNamed) {
  setenv(kVariable, "2300-01-01T00:00:00", 1);

  const Outcome outcome = Run({"reminder", "show", kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err,
              HasSubstr("MULTIENTITY_NOW \"2300-01-01T00:00:00\" is no time of this place from 1971 to 2199"));
}

TEST_F(Books, ATimeBefore1900IsNamed) {
  setenv(kVariable, "1899-12-31T00:00:00", 1);

  const Outcome outcome = Run({"reminder", "show", kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, testing::AllOf(HasSubstr("MULTIENTITY_NOW \"1899-12-31"), HasSubstr("from 1971 to 2199")));
}

TEST_F(Books, ATimeThatIsEmptyLeavesTheClockAsItIs) {
  RelateBirch();
  setenv(kVariable, "", 1);

  Book("request-1");

  EXPECT_THAT(Run({"log", kFile}).out, testing::Not(HasSubstr("the clock was set")));
}
