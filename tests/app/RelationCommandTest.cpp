#include "app/Books.h"

using testing::HasSubstr;

namespace {

const std::vector<std::string> kCreateCedar = {"relation",       "create",    kFile,           "--realm",
                                               "1002",           "--partner", "Cedar Leasing", "--due-from",
                                               "Due from Cedar", "--due-to",  "Due to Cedar"};

std::vector<std::string> With(std::vector<std::string> words, const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

}  // namespace

TEST_F(Books, ARelationIsCreatedEstablishedWithItsAccounts) {
  const Json answer = Answer(kCreateCedar);

  EXPECT_EQ(answer, Json::parse(R"({"status":1,"realm":"1002"})"));
  const Json relation = Answer({"relation", "show", kFile, "--realm", "1002"}).at("relation");
  EXPECT_EQ(relation.at("partner"), "Cedar Leasing");
  EXPECT_EQ(relation.at("state"), "established");
  EXPECT_EQ(relation.at("stateNumber"), 3);
  EXPECT_EQ(relation.at("dueFrom").at("name"), "Due from Cedar");
  EXPECT_EQ(relation.at("dueFrom").at("id"), AccountId("Due from Cedar"));
  EXPECT_EQ(relation.at("dueTo").at("name"), "Due to Cedar");
  EXPECT_EQ(relation.at("revision"), 1);
  EXPECT_EQ(relation.at("type"), 0);
}

TEST_F(Books, AccountsOfARelationMayBeGivenById) {
  Done({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--due-from",
        std::to_string(AccountId("Due from Cedar")), "--due-to", std::to_string(AccountId("Due to Cedar"))});

  EXPECT_EQ(Answer({"relation", "show", kFile, "--id", "1"}).at("relation").at("dueTo").at("name"), "Due to Cedar");
}

TEST_F(Books, ARealmIdOfNineteenCharactersIsAccepted) {
  Done({"relation", "create", kFile, "--realm", "1234567890123456789", "--partner", "Cedar", "--state", "4"});

  EXPECT_EQ(Answer({"relation", "list", kFile, "--realms"}).at("realms"), Json::parse(R"(["1234567890123456789"])"));
}

TEST_F(Books, ARealmIdOfTwentyCharactersIsRefusedBeforeTheCall) {
  const std::string before = Contents(kFile);

  const Outcome outcome = Run({"relation", "create", kFile, "--realm", "12345678901234567890", "--partner", "Cedar",
                               "--state", "4", "--trace"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("12345678901234567890"));
  EXPECT_THAT(outcome.err, HasSubstr("19"));
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr("log ")));
  EXPECT_EQ(Contents(kFile), before);
}

TEST_F(Books, APartnerNameOfSixtyCharactersIsRefusedBeforeTheCall) {
  const Outcome outcome =
      Run({"relation", "create", kFile, "--realm", "1002", "--partner", std::string(60, 'c'), "--state", "4"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("59"));
}

TEST_F(Books, APartnerNameWithAControlCharacterIsRefused) {
  EXPECT_EQ(
      Run({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar\nLeasing", "--state", "4"}).exitCode, 2);
}

TEST_F(Books, AnAccountThatDoesNotExistIsNamed) {
  const Outcome outcome = Run({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--due-from",
                               "Due from Nobody", "--due-to", "Due to Cedar"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Due from Nobody"));
}

TEST_F(Books, TheStateThatKeepsAStoredOneIsNotStored) {
  const Outcome outcome = Run({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--state", "6"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"6\""));
}

TEST_F(Books, ARelationWithoutAccountsGivenIsRefusedByTheModule) {
  const Json error = ErrorOf({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar"});

  EXPECT_EQ(error.at("exit"), 1);
  EXPECT_EQ(error.at("status"), 12);
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("--due-from"));
}

TEST_F(Books, ASecondRelationWithAPartnerIsRefused) {
  Done(kCreateCedar);

  const Outcome outcome = Run(kCreateCedar);

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("status 13: the partner is related already"));
}

TEST_F(Books, AnAccountThatCannotCarryAnIntercompanyBalanceIsRefused) {
  const Json error = ErrorOf({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--due-from",
                              "Receivables", "--due-to", "Due to Cedar"});

  EXPECT_EQ(error.at("status"), 28);
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("accounts FILE --free"));
}

TEST_F(Books, ARelationWithTheCompanyItselfIsRefused) {
  Done({"realm", "set", kFile, "--realm", "1002"});

  const Outcome outcome = Run(kCreateCedar);

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(
      outcome.err,
      "multientity: the realm \"1002\" is this company's own, and a relation is with another company\n"
      "  give the realm id of the partner company; this company's own is shown by: multientity realm show FILE\n");
}

TEST_F(Books, ADueFromAccountThatIsNoAssetIsTakenWhenThePersonSaysSo) {
  const std::vector<std::string> create = {"relation",  "create",    kFile,         "--realm",
                                           "1002",      "--partner", "Cedar",       "--due-from",
                                           "Utilities", "--due-to",  "Due to Cedar"};

  const Outcome outcome = Run(create);

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(
      outcome.err,
      "multientity: the due-from account \"Utilities\" is of the type Expense, which is no asset\n"
      "  see the accounts that are free with: multientity accounts FILE --free --for REALM; an account of another "
      "type is taken with --any-account\n");
  Done(With(create, {"--any-account"}));
}

TEST_F(Books, APartnerIsCalledByNameWhereverOneIsGiven) {
  RelateBirch();
  ImportMarch();
  const std::string birch = "birch services company";

  EXPECT_EQ(Answer({"relation", "show", kFile, "--partner", birch}).at("relation").at("realm"), "1001");
  EXPECT_EQ(Answer({"transactions", kFile, "--partner", birch}).at("transactions").size(), 3U);
  EXPECT_EQ(Answer({"transaction", "exists", kFile, "--partner", birch, "--request", "request-bill"}).at("realm"),
            "1001");
  EXPECT_EQ(Answer({"relation", "update", kFile, "--partner", birch, "--state", "deactivated"}).at("realm"), "1001");
}

TEST_F(Books, ANewRelationNeedsTheRealmIdBesideTheName) {
  EXPECT_THAT(Run({"relation", "create", kFile, "--partner", "Birch Services Company"}).err, HasSubstr("--realm"));
}

TEST_F(Books, RelationsInOneStateAreListedOnRequest) {
  RelateBirch();

  EXPECT_EQ(Answer({"relation", "list", kFile, "--state", "established"}).at("relations").size(), 1U);
  EXPECT_EQ(Answer({"relation", "list", kFile, "--state", "pending"}).at("relations"), Json::array());
}

TEST_F(Books, ADueToAccountThatIsNoLiabilityIsTakenWhenThePersonSaysSo) {
  Done(kCreateCedar);
  const std::vector<std::string> update = {"relation",   "update",         kFile,      "--realm", "1002",
                                           "--due-from", "Due from Cedar", "--due-to", "Checking"};

  const Json error = ErrorOf(update);

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("status"), nullptr);
  EXPECT_EQ(error.at("remedy"), "choose-asset-and-liability");
  EXPECT_EQ(error.at("message"), "the due-to account \"Checking\" is of the type Bank, which is no liability");
  Done(With(update, {"--any-account"}));
}

TEST_F(Books, ARelationWithOneAccountForBothIsRefusedWhateverThePersonSays) {
  const Outcome outcome = Run({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--due-from",
                               "Checking", "--due-to", "Checking", "--any-account"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: the due-from and the due-to account are one, \"Checking\"\n"
            "  give two accounts: with --due-from an asset, what the partner owes this company; with --due-to a "
            "liability, what this company owes the partner\n");
}

TEST_F(Books, APendingRelationIsTakenUpByASecondCreation) {
  Done(With(kCreateCedar, {"--state", "pending"}));

  Done(kCreateCedar);

  const Json relation = Answer({"relation", "show", kFile, "--realm", "1002"}).at("relation");
  EXPECT_EQ(relation.at("state"), "established");
  EXPECT_EQ(relation.at("revision"), 2);
}

TEST_F(Books, AnUpdateChangesTheStateAndKeepsTheAccounts) {
  Done(kCreateCedar);

  Done({"relation", "update", kFile, "--realm", "1002", "--state", "deactivated"});

  const Json relation = Answer({"relation", "show", kFile, "--realm", "1002"}).at("relation");
  EXPECT_EQ(relation.at("state"), "deactivated");
  EXPECT_EQ(relation.at("dueTo").at("name"), "Due to Cedar");
}

TEST_F(Books, AnUpdateChangesTheAccountsAndKeepsTheState) {
  Done(With(kCreateCedar, {"--state", "2"}));

  Done({"relation", "update", kFile, "--realm", "1002", "--due-from", "Checking", "--due-to", "Due to Cedar"});

  const Json relation = Answer({"relation", "show", kFile, "--realm", "1002"}).at("relation");
  EXPECT_EQ(relation.at("dueFrom").at("name"), "Checking");
  EXPECT_EQ(relation.at("state"), "state 2");
}

TEST_F(Books, AnUpdateWithOneAccountIsToldThatItNeedsBoth) {
  Done(kCreateCedar);

  const Json error = ErrorOf({"relation", "update", kFile, "--realm", "1002", "--due-from", "Checking"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("status"), nullptr);
  EXPECT_EQ(error.at("remedy"), "give-both-accounts");
}

TEST_F(Books, AnUpdateWithAccountsOfAnotherRelationIsRefused) {
  RelateBirch();
  Done(kCreateCedar);

  EXPECT_EQ(ErrorOf({"relation", "update", kFile, "--realm", "1002", "--due-from", "Due from Birch", "--due-to",
                     "Due to Cedar"})
                .at("status"),
            13);
}

TEST_F(Books, AnUnknownPartnersRelationIsNotShown) {
  const Outcome outcome = Run({"relation", "show", kFile, "--realm", "1003"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("status 12:"));
  EXPECT_THAT(outcome.err, HasSubstr("relation list"));
}

TEST_F(Books, AnUnknownRelationIdCannotBeRead) {
  EXPECT_EQ(ErrorOf({"relation", "show", kFile, "--id", "77"}).at("status"), 8);
}

TEST_F(Books, ARelationIsShownByRealmOrByIdNotByBoth) {
  EXPECT_EQ(Run({"relation", "show", kFile, "--realm", "1001", "--id", "1"}).exitCode, 2);
  EXPECT_EQ(Run({"relation", "show", kFile}).exitCode, 2);
}

TEST_F(Books, ARelationIdThatIsNoNumberIsNamed) {
  const Outcome outcome = Run({"relation", "show", kFile, "--id", "first"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"first\""));
}

TEST_F(Books, ADeletedRelationIsGone) {
  Done(kCreateCedar);

  const Json answer = Answer({"relation", "delete", kFile, "--realm", "1002"});

  EXPECT_EQ(answer.at("deactivated"), false);
  EXPECT_EQ(Run({"relation", "list", kFile}).out, "No relations.\n");
}

TEST_F(Books, APendingRelationIsDeletedOnlyByForce) {
  Done(With(kCreateCedar, {"--state", "pending"}));

  EXPECT_EQ(ErrorOf({"relation", "delete", kFile, "--realm", "1002"}).at("status"), 9);
  Done({"relation", "delete", kFile, "--realm", "1002", "--force"});

  EXPECT_EQ(Answer({"relation", "list", kFile}).at("relations"), Json::array());
}

TEST_F(Books, ARelationWithTransactionsIsDeactivatedInsteadOfDeleted) {
  RelateBirch();
  Book("request-1");

  const Outcome outcome = Run({"relation", "delete", kFile, "--realm", "1001"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "Deactivated the relation with realm 1001: transactions still refer to it.\n");
  EXPECT_EQ(Answer({"relation", "show", kFile, "--realm", "1001"}).at("relation").at("state"), "deactivated");
}

TEST_F(Books, TheRealmsMayLeaveOutRelationsWithoutAccounts) {
  RelateBirch();
  Done({"relation", "create", kFile, "--realm", "1003", "--partner", "Dogwood", "--state", "without-accounts"});

  EXPECT_EQ(Run({"relation", "list", kFile, "--realms"}).out, "1001\n1003\n");
  EXPECT_EQ(Run({"relation", "list", kFile, "--realms", "--with-accounts-only"}).out, "1001\n");
}

TEST_F(Books, RelationsAreListedWithTheirAccounts) {
  RelateBirch();

  EXPECT_EQ(Run({"relation", "list", kFile}).out,
            "Id  Realm  Partner                 State        Due from        Due to\n"
            "--  -----  ----------------------  -----------  --------------  ------------\n"
            " 1  1001   Birch Services Company  established  Due from Birch  Due to Birch\n");
}
