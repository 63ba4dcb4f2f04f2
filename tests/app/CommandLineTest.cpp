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

// What a command does, and whether it saves it.
struct WritingCommand {
  const char* name;
  std::vector<std::string> words;
};

class ACommandThatSaves : public Books, public testing::WithParamInterface<WritingCommand> {
 public:
  ACommandThatSaves() {
    WriteFile("names.csv", "name,kind\nCold Spring,vendor\n");
    if (std::string_view(GetParam().name) == "CreatesARelation") return;
    RelateBirch();
    ImportMarch();
    Done({"users", "add", kFile, "Robin"});
    Done({"rejected", "save", kFile, "--realm", "1001", "--request", "rejected-1", "--type", "bill", "--amount", "1.00",
          "--partner-txn", "7"});
    Remember("MEPromptLaunchDate", "21000102");
  }

 protected:
  static void ExpectSavedButNotTold(const Outcome& outcome) {
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_THAT(outcome.err,
                testing::StartsWith("multientity: the work is saved, only what it came to was not printed"));
  }
};

TEST_P(ACommandThatSaves, SaysSoOnADiskThatIsFull) {
  ExpectSavedButNotTold(RunProgramInto("/dev/full", In("."), GetParam().words));
}

TEST_P(ACommandThatSaves, SaysSoToAPipeThatNobodyReads) {
  ExpectSavedButNotTold(RunProgramIntoAClosedPipe(In("."), GetParam().words));
}

INSTANTIATE_TEST_SUITE_P(
    Each, ACommandThatSaves,
    testing::Values(WritingCommand{"MakesACompany", {"init", "cedar.company", "--name", "Cedar"}},
                    WritingCommand{"Imports", {"import", "names", kFile, "names.csv"}},
                    WritingCommand{"AddsAUser", {"users", "add", kFile, "Vera"}},
                    WritingCommand{"ChangesAUser", {"users", "change", kFile, "Robin", "--accountant"}},
                    WritingCommand{"RemovesAUser", {"users", "remove", kFile, "Robin"}},
                    WritingCommand{"SetsASetting", {"settings", "set", kFile, "company-name", "Other"}},
                    WritingCommand{"CreatesARelation",
                                   {"relation", "create", kFile, "--realm", "1001", "--partner", "Birch", "--due-from",
                                    "Due from Birch", "--due-to", "Due to Birch"}},
                    WritingCommand{"UpdatesARelation",
                                   {"relation", "update", kFile, "--realm", "1001", "--state", "pending"}},
                    WritingCommand{"DeletesARelation", {"relation", "delete", kFile, "--realm", "1001", "--force"}},
                    WritingCommand{"Books",
                                   {"journal", "record", kFile, "--realm", "1001", "--amount", "40.00", "--request",
                                    "r", "--expense", "Utilities", "--name", "Walker"}},
                    WritingCommand{"SetsAState",
                                   {"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill",
                                    "--state", "3"}},
                    WritingCommand{"DeletesARejection",
                                   {"rejected", "delete", kFile, "--realm", "1001", "--request", "rejected-1"}},
                    WritingCommand{"SetsTheRealm", {"realm", "set", kFile, "--realm", "9130"}},
                    WritingCommand{"RemembersTheRealm", {"realm", "check", kFile, "--realm", "9130"}},
                    WritingCommand{"ResetsTheReminder", {"reminder", "reset", kFile}}),
    [](const testing::TestParamInfo<WritingCommand>& command) { return command.param.name; });

TEST_F(Books, WhatIsSavedButNotToldIsInTheCompany) {
  const Outcome outcome =
      RunProgramInto("/dev/full", In("."), {"settings", "set", kFile, "company-name", "Other", "--json"});

  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(Json::parse(outcome.err).at("error").at("exit"), 4);
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("company-name"), "Other");
}

TEST_F(Books, WhatIsRefusedIsNotSaidToBeSaved) {
  const Outcome outcome = RunProgramInto("/dev/full", In("."), {"users", "remove", kFile, "Nobody"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr("saved")));
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
