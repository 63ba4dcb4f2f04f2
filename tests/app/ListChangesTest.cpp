#include "app/Books.h"

using testing::HasSubstr;

TEST_F(Books, AnAccountIsAddedWithANumberAndListedWithIt) {
  const Json added =
      Answer({"account", "add", kFile, "Utilities:Gas", "--type", "Expense", "--number", "6120"}).at("account");

  EXPECT_EQ(added.at("name"), "Utilities:Gas");
  EXPECT_EQ(added.at("number"), "6120");
  EXPECT_THAT(Run({"accounts", kFile}).out, HasSubstr("6120    Utilities:Gas"));
  EXPECT_THAT(Run({"accounts", kFile, "--type", "Expense"}).out, HasSubstr("6120    Utilities:Gas"));
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "account"}).out, HasSubstr("added the account Utilities:Gas"));
}

TEST_F(Books, AnAccountIsRenamedForAllThatStandsBelowIt) {
  EXPECT_EQ(Run({"account", "rename", kFile, "Utilities", "Energy"}).out,
            "Renamed the account Utilities to Energy; sub-accounts renamed with it: 1.\n");

  EXPECT_GT(AccountId("Energy:Power"), 0);
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "account.rename"}).out,
              HasSubstr("renamed the account Utilities, #"));
}

TEST_F(Books, AnAccountNumberIsGivenAndTakenBack) {
  EXPECT_EQ(Run({"account", "number", kFile, "Utilities", "6100"}).out, "The account Utilities has the number 6100.\n");
  EXPECT_EQ(Answer({"account", "number", kFile, "6100", "none"}).at("account").at("number"), nullptr);

  const Outcome outcome = Run({"account", "number", kFile, "Utilities", "6100-"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("The account number \"6100-\" is none"));
}

TEST_F(Books, ANumberThatTwoAccountsMayBeMeantByIsRefusedByName) {
  const std::string id = std::to_string(AccountId("Utilities"));
  Done({"account", "number", kFile, "Checking", id});

  const Outcome outcome = Run({"account", "rename", kFile, id, "Energy"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("the number of the account \"Checking\""));
  EXPECT_THAT(outcome.err, HasSubstr("the record number of the account \"Utilities\" (#" + id));
  Done({"account", "rename", kFile, "#" + id, "Energy"});
}

TEST_F(Books, AnAccountThatIsUsedIsNotDeleted) {
  RelateBirch();

  const Json error = ErrorOf({"account", "delete", kFile, "Due from Birch"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("what"), "change-accounts");
  EXPECT_EQ(error.at("remedy"), "change-the-relation");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("relation update"));
  EXPECT_EQ(Answer({"account", "delete", kFile, "Utilities:Power"}).at("account").at("deleted"), true);
}

TEST_F(Books, ANameIsAddedRenamedAndDeleted) {
  EXPECT_THAT(Run({"name", "add", kFile, "Stone Insurance", "--kind", "vendor"}).out,
              HasSubstr("Added the vendor Stone Insurance, record number "));
  EXPECT_EQ(Run({"name", "rename", kFile, "Stone Insurance", "Stone & Sons"}).out,
            "Renamed Stone Insurance to Stone & Sons.\n");
  EXPECT_EQ(Answer({"name", "delete", kFile, "Stone & Sons"}).at("name").at("name"), "Stone & Sons");

  EXPECT_EQ(ErrorOf({"name", "delete", kFile, "Walker"}).at("remedy"), "delete-the-lower-first");
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "name"}).out, HasSubstr("deleted the name Stone & Sons, #"));
}

TEST_F(Books, ANameThatIsCalledAsAnotherIsNoted) {
  Done({"name", "add", kFile, "Caf\u00e9", "--kind", "vendor"});

  const Outcome outcome = Run({"name", "add", kFile, "CAF\u00c9", "--kind", "vendor"});
  const Outcome forPrograms = Run({"name", "add", kFile, "cafe\u0301", "--kind", "vendor", "--json"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(
      outcome.err,
      "note: among the names, \"CAF\u00c9\" is like \"Caf\u00e9\": they differ only by capitals or by how the same "
      "letters are written; look whether both are meant\n");
  const Json note = Json::parse(forPrograms.err).at("note");
  EXPECT_EQ(note.at("list"), "names");
  EXPECT_EQ(note.at("count"), 1);
  EXPECT_EQ(note.at("first").at(0).at("name"), "cafe\u0301");
}

TEST_F(Books, AnImportNotesTheFirstTenNamesThatAreCalledAsOthersAndCountsTheRest) {
  std::string rows = "name,kind\n";
  for (int number = 10; number < 22; ++number) {
    rows += "\u00c4rzte " + std::to_string(number) + ",other\n\u00e4rzte " + std::to_string(number) + ",other\n";
  }
  WriteFile("names.csv", rows);

  const Outcome outcome = Run({"import", "names", kFile, "names.csv"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.err, HasSubstr("\"\u00e4rzte 19\" is like \"\u00c4rzte 19\", and 2 more"));
}
