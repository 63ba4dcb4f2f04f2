#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;

namespace {

// March's three transactions: the bill of 40.00 to be answered, and two that are settled.
class StatesOfMarch : public Books {
 public:
  StatesOfMarch() {
    RelateBirch();
    ImportMarch();
  }

 protected:
  // The only intercompany line of a transaction.
  Json LineOf(const std::string& txn) const {
    return Answer({"transactions", kFile, "--txn", txn}).at("transactions").at(0);
  }
  std::string TargetOf(const std::string& txn) const { return LineOf(txn).at("line").dump(); }
};

}  // namespace

TEST_F(StatesOfMarch, ABillIsConfirmedByThePartnersRequest) {
  const Json answer = Answer(
      {"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "established"});

  EXPECT_EQ(answer, Json::parse(R"({"status":1,"realm":"1001","requestId":"request-bill",
                                    "state":"established","stateNumber":3,"ofBefore":false})"));
  EXPECT_EQ(LineOf("1").at("state"), "established");
}

TEST_F(StatesOfMarch, AStateMayBeGivenByItsNumber) {
  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "2"});

  EXPECT_EQ(LineOf("1").at("stateNumber"), 2);
}

TEST_F(StatesOfMarch, ATransactionThatCameBackMayBeSentAgainOrClosed) {
  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "came-back"});
  EXPECT_EQ(LineOf("1").at("state"), "came-back");

  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "sent"});
  EXPECT_EQ(LineOf("1").at("state"), "sent");

  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "closed"});
  EXPECT_EQ(LineOf("1").at("state"), "closed");
}

TEST_F(StatesOfMarch, ALineOfTheBooksIsMovedToAState) {
  const Json answer =
      Answer({"transaction", "set-state", kFile, "--txn", "1", "--target", TargetOf("1"), "--state", "closed"});

  EXPECT_EQ(answer.at("status"), 1);
  EXPECT_EQ(answer.at("transaction"), 1);
  EXPECT_EQ(answer.at("state"), "closed");
  EXPECT_EQ(LineOf("1").at("stateNumber"), 5);
}

TEST_F(StatesOfMarch, AnEstablishedTransactionStaysSo) {
  const Json error =
      ErrorOf({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-check", "--state", "sent"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("status"), nullptr);
  EXPECT_EQ(error.at("what"), "set-transaction-state");
  EXPECT_EQ(error.at("remedy"), "move-as-the-state-allows");
  EXPECT_THAT(error.at("meaning").get<std::string>(), AllOf(HasSubstr("3 (established)"), HasSubstr("1 (sent)")));
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("set-state --help"));
  EXPECT_EQ(LineOf("2").at("state"), "established");
}

TEST_F(StatesOfMarch, ThoseOfBeforeAreMarkedForPeopleAndForPrograms) {
  ChangeTheFile("UPDATE me_transaction SET of_before = 1 WHERE txn_id = 1");

  EXPECT_THAT(Run({"transactions", kFile}).out, AllOf(HasSubstr("pending (before)"), HasSubstr("USD  established  ")));
  EXPECT_EQ(LineOf("1").at("state"), "pending");
  EXPECT_EQ(LineOf("1").at("ofBefore"), true);
  EXPECT_EQ(LineOf("2").at("ofBefore"), false);
  const Json answer = Answer(
      {"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "deactivated"});
  EXPECT_EQ(answer.at("state"), "deactivated");
  EXPECT_EQ(answer.at("ofBefore"), true);
}

TEST_F(StatesOfMarch, PeopleAreToldWhichTransactionIsInWhichState) {
  const Outcome outcome =
      Run({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "3"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out,
            "The transaction with request id request-bill of realm 1001 is now in state 3 (established).\n");
}

TEST_F(StatesOfMarch, AnUnknownRequestIsNotMoved) {
  const Json error =
      ErrorOf({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-x", "--state", "3"});

  EXPECT_EQ(error.at("exit"), 1);
  EXPECT_EQ(error.at("status"), 12);
  EXPECT_EQ(error.at("meaning"), "there is no such relation or intercompany transaction");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("multientity transactions FILE"));
}

TEST_F(StatesOfMarch, ARequestOfAnUnknownPartnerIsNotMoved) {
  EXPECT_EQ(ErrorOf({"transaction", "set-state", kFile, "--realm", "1009", "--request", "request-bill", "--state", "3"})
                .at("status"),
            12);
}

TEST_F(StatesOfMarch, ALineThatDoesNotExistIsNotMoved) {
  EXPECT_EQ(ErrorOf({"transaction", "set-state", kFile, "--txn", "1", "--target", "77", "--state", "3"}).at("status"),
            12);
}

TEST_F(StatesOfMarch, AUserWithoutTheRightToModifyBillsChangesNoState) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view", "--right", "checks:modify"});

  const Json error = ErrorOf({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill",
                              "--state", "3", "--user", "Robin"});

  EXPECT_EQ(error.at("status"), 3);
  EXPECT_EQ(LineOf("1").at("state"), "sent");
}

TEST_F(StatesOfMarch, WithTheFeatureSwitchedOffOnlyThePartnersRequestsAreRefused) {
  const std::string target = TargetOf("1");
  WriteFile("alder.company.remote.toml", "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  EXPECT_EQ(ErrorOf({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "3"})
                .at("status"),
            2);
  Done({"transaction", "set-state", kFile, "--txn", "1", "--target", target, "--state", "3"});
}

TEST_F(StatesOfMarch, ARequestIdOfThirtySevenCharactersIsRefusedBeforeTheCall) {
  const Outcome outcome = Run({"transaction", "set-state", kFile, "--realm", "1001", "--request", std::string(37, 'r'),
                               "--state", "3", "--trace"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("36"), testing::Not(HasSubstr("log "))));
}

TEST_F(StatesOfMarch, AStateThatIsNoneIsNamed) {
  const Outcome outcome =
      Run({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "paid"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("\"paid\""), HasSubstr("established"), HasSubstr("32767")));
}

TEST_F(StatesOfMarch, ATransactionIsNamedInOneOfTwoWays) {
  EXPECT_EQ(Run({"transaction", "set-state", kFile, "--state", "3"}).exitCode, 2);
  EXPECT_EQ(Run({"transaction", "set-state", kFile, "--realm", "1001", "--state", "3"}).exitCode, 2);
  EXPECT_EQ(Run({"transaction", "set-state", kFile, "--txn", "1", "--state", "3"}).exitCode, 2);
  EXPECT_EQ(Run({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--txn", "1",
                 "--target", "1", "--state", "3"})
                .exitCode,
            2);
}

TEST_F(StatesOfMarch, ABookedRequestIsKnown) {
  const Outcome outcome = Run({"transaction", "exists", kFile, "--realm", "1001", "--request", "request-journal"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "The request id request-journal is known for realm 1001: it is booked or was rejected.\n");
}

TEST_F(StatesOfMarch, ANewRequestIsNotKnown) {
  const Json error = ErrorOf({"transaction", "exists", kFile, "--realm", "1001", "--request", "request-new"});

  EXPECT_EQ(error.at("exit"), 1);
  EXPECT_EQ(error.at("status"), 0);
  EXPECT_EQ(error.at("meaning"), "the request is not known, or there is no relation with the partner");
}

TEST_F(StatesOfMarch, ARejectedRequestIsKnownForEveryPartner) {
  Done({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--state", "without-accounts"});
  Done({"rejected", "save", kFile, "--realm", "1001", "--request", "request-rejected", "--type", "bill", "--amount",
        "10.00", "--partner-txn", "B-1"});

  EXPECT_EQ(Answer({"transaction", "exists", kFile, "--realm", "1002", "--request", "request-rejected"}),
            Json::parse(R"({"status":1,"realm":"1002","requestId":"request-rejected"})"));
}

TEST_F(StatesOfMarch, NoRequestIsKnownOfACompanyWithoutRelation) {
  EXPECT_EQ(ErrorOf({"transaction", "exists", kFile, "--realm", "1009", "--request", "request-bill"}).at("status"), 0);
}
