#include "app/Books.h"

using testing::HasSubstr;

TEST_F(Books, AUserIsAddedWithTheGivenRights) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view", "--right", "journal:create", "--accountant"});

  const Json users = Answer({"users", "list", kFile}).at("users");

  ASSERT_EQ(users.size(), 2U);
  EXPECT_EQ(users[1], Json::parse(R"({"name":"Robin","administrator":false,"accountant":true,
                                      "rights":["journal:create","bills:view"]})"));
}

TEST_F(Books, ChangingAUserReplacesTheRights) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  Done({"users", "change", kFile, "Robin", "--right", "accounts:view"});

  const Json users = Answer({"users", "list", kFile}).at("users");
  EXPECT_EQ(users[1].at("rights"), Json::parse(R"(["accounts:view"])"));
}

TEST_F(Books, ARemovedUserCannotSignIn) {
  Done({"users", "add", kFile, "Robin"});

  Done({"users", "remove", kFile, "Robin"});

  const Outcome outcome = Run({"accounts", kFile, "--user", "Robin"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Robin"));
}

TEST_F(Books, TheLastAdministratorStays) {
  const Outcome outcome = Run({"users", "remove", kFile, "Admin"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("administrator"));
  EXPECT_EQ(Answer({"users", "list", kFile}).at("users").size(), 1U);
}

TEST_F(Books, ARightThatDoesNotExistIsNamed) {
  const Outcome outcome = Run({"users", "add", kFile, "Robin", "--right", "invoices:create"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("invoices"));
}

TEST_F(Books, AUserNameIsTakenOnlyOnce) {
  Done({"users", "add", kFile, "Robin"});

  const Outcome outcome = Run({"users", "add", kFile, "robin"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("robin"));
}

TEST_F(Books, OnlyAnAdministratorMayAddUsers) {
  Done({"users", "add", kFile, "Robin"});

  const Outcome outcome = Run({"users", "add", kFile, "Kim", "--user", "Robin"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(Answer({"users", "list", kFile}).at("users").size(), 2U);
}

TEST_F(Books, OnlyAnAdministratorMayManageRelations) {
  Done({"users", "add", kFile, "Robin", "--right", "journal:create"});

  const Json error = ErrorOf({"relation", "create", kFile, "--realm", "1001", "--partner", "Birch", "--state",
                              "without-accounts", "--user", "Robin"});

  EXPECT_EQ(error.at("status"), 3);
  EXPECT_EQ(Answer({"relation", "list", kFile}).at("relations"), Json::array());
}

TEST_F(Books, AUserWithTheRightBooksJournalEntries) {
  RelateBirch();
  Done({"users", "add", kFile, "Robin", "--right", "journal:create"});

  const Outcome outcome = Run({"journal", "record", kFile, "--realm", "1001", "--amount", "5", "--request", "r",
                               "--expense", "Utilities", "--name", "Walker", "--user", "Robin"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
}

TEST_F(Books, AUserWithoutTheRightBooksNothing) {
  RelateBirch();
  Done({"users", "add", kFile, "Robin", "--right", "journal:view"});

  const Json error = ErrorOf({"journal", "record", kFile, "--realm", "1001", "--amount", "5", "--request", "r",
                              "--expense", "Utilities", "--name", "Walker", "--user", "Robin"});

  EXPECT_EQ(error.at("status"), 3);
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("users change"));
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions"), Json::array());
}

TEST_F(Books, AUserWithoutTheRightLearnsNotWhichNamesThereAre) {
  Done({"users", "add", kFile, "Robin", "--right", "journal:view"});
  const std::vector<std::vector<std::string>> guesses = {
      {"journal", "record", kFile, "--realm", "1009", "--amount", "5", "--request", "r", "--expense", "Freight",
       "--name", "Nobody"},
      {"relation", "create", kFile, "--realm", "1009", "--partner", "Birch", "--due-from", "Freight", "--due-to",
       "Freight"},
      {"relation", "update", kFile, "--realm", "1009", "--due-from", "Freight", "--due-to", "Freight"},
      {"transaction", "set-state", kFile, "--realm", "1009", "--request", "r", "--state", "3"}};

  for (std::vector<std::string> guess : guesses) {
    guess.insert(guess.end(), {"--user", "Robin"});
    const Json error = ErrorOf(guess);

    EXPECT_EQ(error.at("exit"), 1) << guess[0];
    EXPECT_EQ(error.at("status"), 3) << guess[0];
  }
  const Json error = ErrorOf({"rejected", "delete", kFile, "--realm", "1009", "--request", "r", "--user", "Robin"});
  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("message"), "The user \"Robin\" has no right bills:view or checks:view.");
}
