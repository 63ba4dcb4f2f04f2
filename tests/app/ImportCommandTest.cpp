#include "app/Books.h"
#include "app/RunningProgram.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST_F(Books, AnImportSaysWhatItAdded) {
  WriteFile("more.csv", "name,type\nPetty Cash,Bank\nPostage,Expense\n");

  const Json answer = Answer({"import", "accounts", kFile, "more.csv"});

  EXPECT_EQ(answer.at("accounts"), 2);
  EXPECT_EQ(answer.at("rows"), 2);
}

TEST_F(Books, AnImportTellsPeopleWhatItAdded) {
  RelateBirch();

  const Outcome outcome = Run({"import", "transactions", kFile, "march.csv"});

  EXPECT_EQ(outcome.out, "Imported 3 transactions, 7 lines, 3 intercompany lines from march.csv.\n");
}

TEST_F(Books, ABadRowIsNamedAndNothingOfTheFileIsKept) {
  WriteFile("bad.csv", "name,type\nPetty Cash,Bank\nPostage,Expenses of mine\n");

  const Outcome outcome = Run({"import", "accounts", kFile, "bad.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("bad.csv"), HasSubstr("3"), HasSubstr("Expenses of mine")));
  EXPECT_THAT(Run({"accounts", kFile}).out, Not(HasSubstr("Petty Cash")));
}

TEST_F(Books, AllBadRowsOfAFileAreNamedForPeopleAndPrograms) {
  WriteFile("bad.csv", "name,kind\nHarbor Office,supplier\nElm Freight,vendor\nOak Rail,nobody\n");

  const Outcome outcome = Run({"import", "names", kFile, "bad.csv"});
  const Json error = ErrorOf({"import", "names", kFile, "bad.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("bad.csv has 2 faults:\n  line 2: "), HasSubstr("\n  line 4: ")));
  EXPECT_EQ(error.at("exit"), 2);
  ASSERT_EQ(error.at("rows").size(), 2U);
  EXPECT_EQ(error.at("rows")[0].at("line"), 2);
  EXPECT_EQ(error.at("rows")[1].at("line"), 4);
  EXPECT_THAT(error.at("rows")[1].at("reason").get<std::string>(), HasSubstr("nobody"));
  EXPECT_EQ(error.at("more"), 0);
}

TEST_F(Books, AnImportFromStandardInputIsTaken) {
  RunningProgram program(In("."), {"import", "names", kFile, "-"});
  program.Type("name,kind\nElm Freight,vendor\n");
  program.EndInput();

  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, HasSubstr("Imported 1 name from standard input."));
  EXPECT_THAT(Run({"names", kFile}).out, HasSubstr("Elm Freight"));
}

TEST_F(Books, ABadRowFromStandardInputIsNamed) {
  RunningProgram program(In("."), {"import", "names", kFile, "-"});
  program.Type("name,kind\nElm Freight,friend\n");
  program.EndInput();

  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("standard input, line 2: "));
}

TEST_F(Books, AnImportFromAPipeIsTakenAndKeepsNobodyWaitingBeforeItBegins) {
  if (IsWindowsProgram()) GTEST_SKIP() << "there is no such path";
  RunningProgram program(In("."), {"import", "names", kFile, "/dev/stdin"});
  Done({"settings", "set", kFile, "company-name", "Alder Supply"});
  program.Type("name,kind\nElm Freight,vendor\n");
  program.EndInput();

  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(Run({"names", kFile}).out, HasSubstr("Elm Freight"));
}

TEST_F(Books, AFolderIsNoFileToImport) {
  const Outcome outcome = Run({"import", "names", kFile, "."});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("is a folder"));
}

TEST_F(Books, AFileIsImportedOnceUnlessAskedForAgain) {
  RelateBirch();
  ImportMarch();

  const Outcome twice = Run({"import", "transactions", kFile, "march.csv"});
  const Json error = ErrorOf({"import", "transactions", kFile, "march.csv"});
  const Outcome again = Run({"import", "transactions", kFile, "march.csv", "--again", "--skip-known"});

  EXPECT_EQ(twice.exitCode, 2);
  EXPECT_THAT(twice.err, AllOf(HasSubstr("march.csv was imported before"), HasSubstr("--again")));
  EXPECT_EQ(error.at("remedy"), "import-again");
  EXPECT_EQ(again.exitCode, 0);
  EXPECT_EQ(again.out, "Imported nothing from march.csv; passed over 3 transactions that are known.\n");
}

TEST_F(Books, AFileThatHasGrownAddsWhatIsNew) {
  RelateBirch();
  ImportMarch();
  WriteFile("april.csv", Contents("march.csv") +
                             "B2,bill,2024-04-01,Northern Power,April power,Payables,-50.00,,,,\n"
                             "B2,bill,,,,Due from Birch,50.00,,1001,request-april,1\n");

  const Outcome refused = Run({"import", "transactions", kFile, "april.csv"});
  const Json answer = Answer({"import", "transactions", kFile, "april.csv", "--skip-known"});

  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("request-bill"), HasSubstr("request-journal"), HasSubstr("--skip-known")));
  EXPECT_EQ(answer.at("transactions"), 1);
  EXPECT_EQ(answer.at("passedOver"), 3);
}

TEST_F(Books, ARehearsedImportTellsWhatItWouldAddAndWritesNothing) {
  RelateBirch();

  const Outcome outcome = Run({"import", "transactions", kFile, "march.csv", "--dry-run"});
  const Json answer = Answer({"import", "transactions", kFile, "march.csv", "--dry-run"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out,
            "Would import 3 transactions, 7 lines, 3 intercompany lines from march.csv; nothing was written.\n");
  EXPECT_EQ(answer.at("transactions"), 3);
  EXPECT_EQ(answer.at("dryRun"), true);
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions"), Json::array());
}

TEST_F(Books, WhoMayNotImportLearnsThatWhateverTheFileIs) {
  Done({"users", "add", kFile, "Robin"});

  EXPECT_THAT(Run({"import", "names", kFile, "nowhere.csv", "--user", "Robin"}).err, HasSubstr("administrator"));
}

TEST_F(Books, ABadNameRowIsNamed) {
  WriteFile("bad.csv", "name,kind\nHarbor Office,supplier\n");

  const Outcome outcome = Run({"import", "names", kFile, "bad.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("supplier"));
}

TEST_F(Books, TransactionsForAPartnerWithoutARelationAreRefused) {
  const Outcome outcome = Run({"import", "transactions", kFile, "march.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("1001"));
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions"), Json::array());
}

TEST_F(Books, ACsvFileThatDoesNotExistIsNamed) {
  const Outcome outcome = Run({"import", "names", kFile, "nowhere.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("nowhere.csv"));
}

TEST_F(Books, OnlyAnAdministratorMayImport) {
  Done({"users", "add", kFile, "Robin", "--right", "journal:create"});

  const Outcome outcome = Run({"import", "names", kFile, "names.csv", "--user", "Robin"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("administrator"));
}

TEST_F(Books, AnImportIntoAPipeShowsNoProgress) {
  RelateBirch();

  const Outcome outcome = Run({"import", "transactions", kFile, "march.csv"});

  EXPECT_EQ(outcome.err, "");
}
