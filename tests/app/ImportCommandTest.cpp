#include "app/Books.h"

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
