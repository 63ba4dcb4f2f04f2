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
  const Outcome outcome = Run({"relation", "delete", kFile, "--parner", "1001"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("--partner is required"), HasSubstr("not understood: --parner 1001")));
}

TEST_F(EmptyDirectory, AMissingOptionIsNamed) {
  const Outcome outcome = Run({"relation", "delete", kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--partner"));
}

TEST_F(EmptyDirectory, AUsageErrorIsJsonWhenJsonIsAskedFor) {
  const Json error = ErrorOf({"relation", "delete", kFile});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr("--partner"));
}

TEST_F(EmptyDirectory, AMistypedCommandIsSuggestedWithTheUsage) {
  EXPECT_EQ(Run({"relaton", "list", kFile}).err,
            "multientity: there is no command \"relaton\". Did you mean \"relation\"? See multientity --help\n"
            "  Usage: multientity [OPTIONS] SUBCOMMAND\n");
  EXPECT_THAT(
      Run({"relation", "lst", kFile}).err,
      AllOf(HasSubstr("Did you mean \"list\"?"), HasSubstr("Usage: multientity relation [OPTIONS] SUBCOMMAND")));
}

TEST_F(EmptyDirectory, AMistypedOptionIsSuggestedWithTheUsageOfItsCommand) {
  EXPECT_EQ(Run({"accounts", kFile, "--fre"}).err,
            "multientity: not understood: --fre. Did you mean \"--free\"? See multientity accounts --help\n"
            "  Usage: multientity accounts [OPTIONS] FILE\n");
  EXPECT_THAT(Run({"relation", "delete", kFile, "--parner=1001"}).err, HasSubstr("Did you mean \"--partner\"?"));
  EXPECT_THAT(Run({"accounts", kFile, "--jsn"}).err, HasSubstr("Did you mean \"--json\"?"));
}

TEST_F(EmptyDirectory, TheUsageIsTheHintForPrograms) {
  EXPECT_EQ(ErrorOf({"accounts"}).at("hint"), "Usage: multientity accounts [OPTIONS] FILE");
}

TEST_F(Books, AMistypedAccountNameUserOrPartnerIsSuggested) {
  RelateBirch();
  const auto refusedFor = [&](const char* option, const char* text) {
    std::vector<std::string> words{"journal",   "record",  kFile,       "--partner", "1001",   "--amount",      "1.00",
                                   "--request", "request", "--expense", "Utilities", "--name", "Northern Power"};
    *std::next(std::ranges::find(words, option)) = text;
    return Run(words).err;
  };

  EXPECT_THAT(refusedFor("--expense", "Utilites"), HasSubstr(" Did you mean \"Utilities\"?"));
  EXPECT_THAT(refusedFor("--name", "Northen Power"), HasSubstr(" Did you mean \"Northern Power\"?"));
  EXPECT_THAT(refusedFor("--partner", "Birch"), HasSubstr(" Did you mean \"Birch Services Company\"?"));
  EXPECT_THAT(Run({"users", "remove", kFile, "Admon"}).err, HasSubstr(" Did you mean \"Admin\"?"));
}

class TheUsualCompany : public Books {
 public:
  TheUsualCompany() { setenv("MULTIENTITY_COMPANY", kFile, /*overwrite=*/1); }
  TheUsualCompany(const TheUsualCompany&) = delete;
  TheUsualCompany& operator=(const TheUsualCompany&) = delete;
  ~TheUsualCompany() override { unsetenv("MULTIENTITY_COMPANY"); }
};

TEST_F(TheUsualCompany, NeedNotBeNamed) {
  EXPECT_EQ(Run({"names"}).out, Run({"names", kFile}).out);
  EXPECT_EQ(Run({"--user", "Admin", "users", "--json", "list"}).out, Run({"users", "list", kFile, "--json"}).out);
}

TEST_F(TheUsualCompany, IsMeantByCommandsThatWorkOnSomethingMore) {
  WriteFile("more.csv", "name,kind\nCold Spring,vendor\n");

  Done({"users", "add", "Robin"});
  Done({"import", "names", "more.csv"});
  Done({"settings", "set", "company-name", "Other"});
  Done({"backup", "copy.company"});

  EXPECT_EQ(Answer({"users", "list", kFile}).at("users").size(), 2U);
  EXPECT_EQ(Answer({"names", kFile}).at("names").size(), 4U);
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("company-name"), "Other");
  EXPECT_EQ(Run({"names", "copy.company"}).exitCode, 0);
}

TEST_F(TheUsualCompany, IsMeantWhereATransactionIsGivenAsAnOperandOrAnOption) {
  RelateBirch();
  const std::string first = std::to_string(Book("request-1"));
  const std::string second = std::to_string(Book("request-2"));

  Done({"journal", "remove", first});
  Done({"journal", "remove", "--txn", second});

  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions"), Json::array());
  EXPECT_EQ(Run({"journal", "remove"}).exitCode, 2);
  EXPECT_EQ(Run({"journal", "remove", kFile, "1", "--txn", "1"}).exitCode, 2);
}

TEST_F(TheUsualCompany, IsMeantWhereSeveralPapersFollowATransaction) {
  RelateBirch();
  ImportMarch();

  Done({"attach", "1", "a.pdf"});
  Done({"attach", "1", "b.pdf", "c.pdf"});
  Done({"detach", kFile, "1", "a.pdf", "c.pdf"});

  EXPECT_EQ(Answer({"show", "1"}).at("attachments"), Json({"b.pdf"}));
}

TEST_F(TheUsualCompany, GivesWayToTheOneThatIsNamed) {
  Done({"init", "cedar.company", "--name", "Cedar"});

  EXPECT_EQ(Answer({"settings", "show", "cedar.company"}).at("settings").at("company-name"), "Cedar");
}

TEST_F(TheUsualCompany, IsNeitherMadeNorRestoredWithoutBeingNamed) {
  Done({"backup", "copy.company"});

  EXPECT_THAT(Run({"init", "--name", "Cedar"}).err, HasSubstr("FILE is required"));
  EXPECT_THAT(Run({"restore", "copy.company"}).err, HasSubstr("FILE is required"));
}

TEST_F(TheUsualCompany, IsSaidToBeMeantWhenItCannotBeOpened) {
  setenv("MULTIENTITY_COMPANY", "none.company", /*overwrite=*/1);

  const Outcome outcome = Run({"names"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("(MULTIENTITY_COMPANY names this file)"));
}

TEST_F(TheUsualCompany, DoesNotHideWhatElseIsMissing) {
  EXPECT_THAT(Run({"users", "remove"}).err, HasSubstr("NAME is required"));
  EXPECT_THAT(Run({"relation", "delete"}).err, HasSubstr("--partner is required"));
}

TEST_F(Books, WithoutAUsualCompanyItIsSaidThatThereMayBeOne) {
  EXPECT_THAT(Run({"names"}).err, HasSubstr("FILE is required, unless MULTIENTITY_COMPANY names the company"));
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

struct SpreadsheetList {
  const char* name;
  std::vector<std::string> words;
  const char* header;
  const char* row;
};

class AListForASpreadsheet : public Books, public testing::WithParamInterface<SpreadsheetList> {};

TEST_P(AListForASpreadsheet, HasAHeaderAndRawValues) {
  RelateBirch();
  ImportMarch();
  Done({"rejected", "save", kFile, "--realm", "1001", "--request", "rejected-1", "--type", "bill", "--amount",
        "1,234.50", "--partner-txn", "7"});
  std::vector<std::string> words = GetParam().words;
  words.emplace_back("--csv");

  const Outcome outcome = Run(words);

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith(std::string(GetParam().header) + "\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\n" + std::string(GetParam().row)));
}

INSTANTIATE_TEST_SUITE_P(
    Each, AListForASpreadsheet,
    testing::Values(
        SpreadsheetList{"Accounts",
                        {"accounts", kFile},
                        "id,name,number,type,typeNumber,special,deleted",
                        "1,Checking,,Bank,0,0,false\n"},
        SpreadsheetList{"AccountsOfAType",
                        {"accounts", kFile, "--type", "Bank"},
                        "id,name,number,type,typeNumber,special,deleted",
                        "1,Checking,,Bank,0,0,false\n"},
        SpreadsheetList{"Names", {"names", kFile}, "id,name,kind", "1,Northern Power,vendor\n"},
        SpreadsheetList{"Users",
                        {"users", "list", kFile},
                        "name,administrator,accountant,rights",
                        "Admin,true,false,checks:create checks:view "},
        SpreadsheetList{
            "Settings", {"settings", "show", kFile}, "setting,value", "company-name,Alder Supply Company\n"},
        SpreadsheetList{"Relations",
                        {"relation", "list", kFile},
                        "id,realm,partner,type,state,stateNumber,dueFrom.id,dueFrom.name,dueTo.id,dueTo.name,revision,"
                        "createdAt,changedAt",
                        "1,1001,Birch Services Company,0,established,3,"},
        SpreadsheetList{"Realms", {"relation", "list", kFile, "--realms"}, "realm", "1001\n"},
        SpreadsheetList{"Rejected",
                        {"rejected", "list", kFile},
                        "type,typeNumber,state,stateNumber,realm,partner,requestId,amount,currency,writtenAmount,"
                        "partnerTransaction",
                        "bill,9,rejected,4,1001,Birch Services Company,rejected-1,1234.50,USD,\"1,234.50\",7\n"},
        SpreadsheetList{"TheLog",
                        {"log", kFile},
                        "time,user,level,eventType,sourceFile,sourceLine,shortName,signature,message",
                        "2"}),
    [](const testing::TestParamInfo<SpreadsheetList>& list) { return list.param.name; });

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
                    Words{"import", "transactions"}, Words{"accounts"}, Words{"account"}, Words{"account", "add"},
                    Words{"account", "rename"}, Words{"account", "number"}, Words{"account", "delete"}, Words{"names"},
                    Words{"name"}, Words{"name", "add"}, Words{"name", "rename"}, Words{"name", "delete"},
                    Words{"users"}, Words{"users", "list"}, Words{"users", "add"}, Words{"users", "change"},
                    Words{"users", "remove"}, Words{"settings"}, Words{"settings", "show"}, Words{"settings", "set"},
                    Words{"relation"}, Words{"relation", "create"}, Words{"relation", "update"},
                    Words{"relation", "delete"}, Words{"relation", "show"}, Words{"relation", "list"}, Words{"journal"},
                    Words{"journal", "record"}, Words{"journal", "remove"}, Words{"transactions"}, Words{"transaction"},
                    Words{"transaction", "set-state"}, Words{"transaction", "exists"}, Words{"rejected"},
                    Words{"rejected", "save"}, Words{"rejected", "list"}, Words{"rejected", "delete"}, Words{"realm"},
                    Words{"realm", "show"}, Words{"realm", "set"}, Words{"realm", "check"}, Words{"plugin"},
                    Words{"plugin", "check"}, Words{"persona"}, Words{"reminder"}, Words{"reminder", "show"},
                    Words{"reminder", "reset"}, Words{"open"}, Words{"log"}, Words{"completion"},
                    Words{"completion", "bash"}, Words{"completion", "zsh"}, Words{"man"}),
    [](const testing::TestParamInfo<Words>& words) { return TestName(words.param); });
