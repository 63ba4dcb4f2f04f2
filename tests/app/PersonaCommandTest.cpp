#include "app/Books.h"

using testing::HasSubstr;

TEST_F(Books, ARelationsManagersRoleNeedsNoRight) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  EXPECT_EQ(Answer({"persona", kFile, "--role", "15", "--user", "Robin"}),
            Json::parse(R"({"role":15,"persona":"manager","personaNumber":3})"));
}

TEST_F(Books, AContributorIsWhoMaySeeTheAccounts) {
  Done({"users", "add", kFile, "Robin", "--right", "accounts:view"});

  EXPECT_EQ(Answer({"persona", kFile, "--role", "1", "--user", "Robin"}).at("persona"), "contributor");
  EXPECT_EQ(Answer({"persona", kFile, "--role", "2", "--user", "Robin"}).at("persona"), "viewer");
}

TEST_F(Books, WhoMayDeleteAccountsManagesInTheFirstRole) {
  Done({"users", "add", kFile, "Robin", "--right", "accounts:delete"});

  EXPECT_EQ(Answer({"persona", kFile, "--role", "1", "--user", "Robin"}).at("persona"), "manager");
}

TEST_F(Books, WithoutRightsForAccountsThereIsNoPersona) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  const Outcome outcome = Run({"persona", kFile, "--role", "-7", "--user", "Robin"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "In role -7 this user works with the relations as: none (persona 0).\n");
}

TEST_F(Books, ARoleThatIsNoNumberIsNamed) {
  const Outcome outcome = Run({"persona", kFile, "--role", "boss"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"boss\""));
}
