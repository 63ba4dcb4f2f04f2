#include <algorithm>

#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(EmptyDirectory, TheVersionIsPrinted) {
  const Outcome outcome = Run({"--version"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, testing::MatchesRegex("multientity [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(EmptyDirectory, WithoutACommandTheUsageIsPointedOut) {
  const Outcome outcome = Run({});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--help"));
}

TEST_F(EmptyDirectory, AnUnknownCommandIsNamed) {
  const Outcome outcome = Run({"reconcile", kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("reconcile"));
}

TEST_F(EmptyDirectory, AnUnknownOptionIsNamed) {
  const Outcome outcome = Run({"accounts", kFile, "--everything"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--everything"));
}

TEST_F(EmptyDirectory, AMistypedOptionIsNamedBesideTheMissingOne) {
  const Outcome outcome = Run({"relation", "delete", kFile, "--relm", "1001"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("--realm is required"), HasSubstr("not understood: --relm 1001")));
}

TEST_F(EmptyDirectory, AMissingOptionIsNamed) {
  const Outcome outcome = Run({"relation", "delete", kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--realm"));
}

TEST_F(EmptyDirectory, AUsageErrorIsJsonWhenJsonIsAskedFor) {
  const Json error = ErrorOf({"relation", "delete", kFile});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr("--realm"));
}

TEST_F(EmptyDirectory, AnEmptyFileNameIsRefused) {
  EXPECT_EQ(Run({"accounts", ""}).exitCode, 2);
}

TEST_F(Books, AnUnknownUserIsNamed) {
  const Outcome outcome = Run({"accounts", kFile, "--user", "Nobody"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Nobody"));
}

TEST_F(Books, GlobalOptionsMayStandBeforeTheCommand) {
  EXPECT_THAT(Run({"--json", "names", kFile}).out, StartsWith("{\"names\":["));
}

TEST_F(Books, ListsHaveOneElementPerLineInJson) {
  EXPECT_THAT(Run({"names", kFile, "--json"}).out,
              StartsWith("{\"names\":[\n{\"id\":1,\"name\":\"Northern Power\",\"kind\":\"vendor\"},\n"));
}

TEST_F(Books, AClosedPipeIsNoFailure) {
  const Outcome outcome = RunProgramIntoAClosedPipe(In("."), {"accounts", kFile});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Books, OutputThatCannotBeWrittenIsAFailure) {
  const Outcome outcome = RunProgramInto("/dev/full", In("."), {"accounts", kFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("standard output"));
}

TEST_F(Books, BrokenRemoteSwitchesLeaveTheFeatureOn) {
  WriteFile("alder.company.remote.toml", "[switches\n");

  EXPECT_EQ(Run({"relation", "list", kFile}).exitCode, 0);
}

TEST_F(Books, AnErrorOfTheHostEndsTheCommandWithoutACrash) {
  WriteFile("alder.company.remote.toml", "[switches\n");

  const Outcome outcome = Run({"relation", "create", kFile, "--realm", "1001", "--partner", "Birch", "--due-from",
                               "Due from Birch", "--due-to", "Due to Birch"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("alder.company.remote.toml"));
  EXPECT_EQ(Answer({"relation", "list", kFile}).at("relations"), Json::array());
}

class EveryCommand : public EmptyDirectory, public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(EveryCommand, ExplainsItselfWithAnExample) {
  std::vector<std::string> arguments = GetParam();
  arguments.emplace_back("--help");

  const Outcome outcome = Run(arguments);

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Usage:"), HasSubstr("Example:\n  multientity ")));
  EXPECT_EQ(outcome.err, "");
}

namespace {

using Words = std::vector<std::string>;

std::string TestName(const Words& command) {
  std::string name = "multientity";
  for (const std::string& word : command) name += "_" + word;
  std::ranges::replace(name, '-', '_');
  return name;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Help, EveryCommand,
    testing::Values(Words{}, Words{"init"}, Words{"import"}, Words{"import", "accounts"}, Words{"import", "names"},
                    Words{"import", "transactions"}, Words{"accounts"}, Words{"names"}, Words{"users"},
                    Words{"users", "list"}, Words{"users", "add"}, Words{"users", "change"}, Words{"users", "remove"},
                    Words{"settings"}, Words{"settings", "show"}, Words{"settings", "set"}, Words{"relation"},
                    Words{"relation", "create"}, Words{"relation", "update"}, Words{"relation", "delete"},
                    Words{"relation", "show"}, Words{"relation", "list"}, Words{"journal"}, Words{"journal", "record"},
                    Words{"journal", "remove"}, Words{"transactions"}, Words{"transaction"},
                    Words{"transaction", "set-state"}, Words{"transaction", "exists"}, Words{"rejected"},
                    Words{"rejected", "save"}, Words{"rejected", "list"}, Words{"rejected", "delete"}, Words{"realm"},
                    Words{"realm", "show"}, Words{"realm", "set"}, Words{"realm", "check"}, Words{"plugin"},
                    Words{"plugin", "check"}, Words{"persona"}, Words{"reminder"}, Words{"reminder", "show"},
                    Words{"reminder", "reset"}, Words{"open"}, Words{"log"}),
    [](const testing::TestParamInfo<Words>& words) { return TestName(words.param); });
