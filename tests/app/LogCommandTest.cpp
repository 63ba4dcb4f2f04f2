#include <sys/stat.h>

#include "app/Books.h"

using testing::HasSubstr;

TEST_F(Books, TheLogShowsWhoDidWhat) {
  RelateBirch();

  const Json lines = Answer({"log", kFile, "--last", "4"}).at("lines");

  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0].at("level"), 0);
  EXPECT_EQ(lines[0].at("eventType"), 6);
  EXPECT_EQ(lines[0].at("user"), "Admin");
  EXPECT_EQ(lines[0].at("sourceFile"), "Src/MultiEntityDriver");
  EXPECT_EQ(lines[0].at("shortName"), "MultiEntityDriver::CreateRelation");
  EXPECT_EQ(lines[0].at("message"), "MULTIENTITY::Entering MultiEntityDriver::CreateRelation");
  EXPECT_EQ(lines[3].at("message"), "MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission");
}

TEST_F(Books, TheLogShowsItsLastLinesOldestFirst) {
  RelateBirch();

  const Json lines = Answer({"log", kFile, "--last", "1"}).at("lines");

  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].at("message"), "MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission");
}

TEST_F(EmptyDirectory, ANewCompanysLogHasNoLines) {
  Done({"init", kFile, "--name", "Alder"});

  EXPECT_EQ(Run({"log", kFile}).out, "The operations log has no lines.\n");
}

TEST_F(Books, ANumberOfLinesThatIsNoneIsNamed) {
  const Outcome outcome = Run({"log", kFile, "--last", "many"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"many\""));
}

TEST_F(Books, TheTraceShowsTheLinesThatACommandAddedToTheLog) {
  const Outcome outcome = Run({"relation", "show", kFile, "--realm", "1003", "--trace"});

  EXPECT_THAT(outcome.err,
              testing::StartsWith(
                  "log level 0 event 6 MultiEntityDriver::GetRelation: MULTIENTITY::Entering "
                  "MultiEntityDriver::GetRelation\n"
                  "log level 1 event 5 MultiEntityDriver::IsFeatureEnabled: MULTIENTITY::Entering "
                  "MultiEntityDriver::IsFeatureEnabled\n"
                  "log level 1 event 5 MultiEntityDriver::HasMEPermission: MULTIENTITY::Entering "
                  "MultiEntityDriver::HasMEPermission\n"
                  "log level 1 event 5 MultiEntityDriver::HasMEPermission: MULTIENTITY::Exiting "
                  "MultiEntityDriver::HasMEPermission\n"
                  "log level 3 event 5 MultiEntityDriver::GetRelation: MULTIENTITY_WARNING:: not able to get the "
                  "relation as it is not part of table realm [1003]\n"
                  "multientity: status 12:"));
}

TEST_F(Books, TheTraceEndsWithTheModulesAnswer) {
  EXPECT_THAT(Run({"relation", "list", kFile, "--trace"}).err, testing::EndsWith("\nstatus 1: done\n"));
}

TEST_F(Books, TheTraceIsJsonWhenJsonIsAskedFor) {
  const Outcome outcome = Run({"relation", "list", kFile, "--trace", "--json"});

  const Json first = Json::parse(outcome.err.substr(0, outcome.err.find('\n'))).at("log");
  EXPECT_EQ(first.at("level"), 0);
  EXPECT_EQ(first.at("eventType"), 6);
  EXPECT_EQ(first.at("shortName"), "MultiEntityDriver::GetRelationsList");
  EXPECT_EQ(first.at("message"), "MULTIENTITY::Entering MultiEntityDriver::GetRelationsList");
}

TEST_F(Books, WithoutATraceNothingIsPrintedBesideTheResult) {
  EXPECT_EQ(Run({"relation", "list", kFile}).err, "");
}

TEST_F(Books, AnUnwritableLogDoesNotStopTheWork) {
  std::filesystem::remove(In("alder.company.log"));
  std::filesystem::create_directory(In("alder.company.log"));

  RelateBirch();

  EXPECT_EQ(Answer({"relation", "list", kFile}).at("relations").size(), 1U);
}

TEST_F(Books, ALogThatIsAFolderIsNoEmptyLog) {
  std::filesystem::remove(In("alder.company.log"));
  std::filesystem::create_directory(In("alder.company.log"));

  const Outcome outcome = Run({"log", kFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, testing::AllOf(HasSubstr("alder.company.log"), HasSubstr("move it away")));
}

TEST_F(Books, APipeInThePlaceOfTheLogStopsNoWorkAndIsNotRead) {
  if (IsWindowsProgram()) GTEST_SKIP() << "Windows has no pipes beside files";
  std::filesystem::remove(In("alder.company.log"));
  ASSERT_EQ(mkfifo(In("alder.company.log").c_str(), S_IRUSR | S_IWUSR), 0);

  RelateBirch();
  const Outcome outcome = Run({"log", kFile});

  EXPECT_EQ(Answer({"relation", "list", kFile}).at("relations").size(), 1U);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, testing::AllOf(HasSubstr("alder.company.log"), HasSubstr("a pipe")));
}
