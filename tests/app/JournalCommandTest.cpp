#include "app/Books.h"

using testing::HasSubstr;
using testing::Not;

namespace {

std::vector<std::string> Booking(const std::vector<std::string>& more) {
  std::vector<std::string> words = {"journal", "record", kFile, "--realm", "1001"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

}  // namespace

TEST_F(Books, ABookingDebitsTheExpenseAndCreditsTheRelationsDueToAccount) {
  RelateBirch();

  const Json answer = Answer(Booking(
      {"--amount", "1,234.50", "--request", "request-1", "--expense", "Utilities:Power", "--name", "Walker:Depot"}));

  EXPECT_EQ(answer.at("status"), 1);
  const Json entry = Answer({"transactions", kFile}).at("transactions").at(0);
  EXPECT_EQ(entry.at("transaction"), answer.at("transaction"));
  EXPECT_EQ(entry.at("type"), "journal");
  EXPECT_EQ(entry.at("account").at("name"), "Utilities:Power");
  EXPECT_EQ(entry.at("otherAccount").at("name"), "Due to Birch");
  EXPECT_EQ(entry.at("amount"), "1234.50");
  EXPECT_EQ(entry.at("requestId"), "request-1");
  EXPECT_EQ(entry.at("state"), "established");
}

TEST_F(Books, ABookingCreditsNoOtherAccountThanTheRelations) {
  RelateBirch();

  const Outcome outcome = Run(Booking({"--amount", "10", "--request", "r", "--new-expense", "Insurance", "--new-name",
                                       "Stone Insurance", "--due-to", "Due to Cedar"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: what this company owes Birch Services Company (realm 1001) is booked to the relation's "
            "account \"Due to Birch\", not to \"Due to Cedar\"\n"
            "  leave out --due-to; the relation gets another account with: multientity relation update FILE --realm "
            "REALM --due-from ACCOUNT --due-to ACCOUNT\n");
  EXPECT_THAT(Run({"accounts", kFile}).out, Not(HasSubstr("Insurance")));
  EXPECT_THAT(Run({"names", kFile}).out, Not(HasSubstr("Insurance")));
}

TEST_F(Books, ABookingIsDatedAndDescribedAsThePersonSays) {
  RelateBirch();

  Done(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker", "--date",
                "2026-03-31", "--memo", "March share"}));

  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("date"), "2026-03-31");
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "journal"}).out, HasSubstr("entry memo March share"));
}

TEST_F(Books, ABookingIsNotDatedOnWhatIsNoDay) {
  RelateBirch();

  const Outcome outcome = Run(Booking(
      {"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker", "--date", "2026-02-30"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("The date \"2026-02-30\" is no day of the calendar"));
}

TEST_F(Books, ABookingOnAClosedDayIsMadeAfterTheClosingOnly) {
  RelateBirch();
  Done({"settings", "set", kFile, "closing-date", "2026-06-30"});
  const std::vector<std::string> booking = Booking(
      {"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker", "--date", "2026-06-30"});
  std::vector<std::string> afterClose = booking;
  afterClose.emplace_back("--after-close");

  const Outcome refused = Run(booking);

  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_EQ(refused.err,
            "multientity: the books are closed through 2026-06-30, and 2026-06-30 is not after that\n"
            "  date it after that day, and reverse what cannot be removed any more; an administrator may change closed "
            "days with --after-close, or open them with: multientity settings set FILE closing-date DATE\n");
  Done(afterClose);
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "journal"}).out, HasSubstr("after close yes"));
}

TEST_F(Books, AnEntryOfAClosedDayIsRemovedAfterTheClosingOnly) {
  RelateBirch();
  const std::string txn = std::to_string(Book("request-1"));
  Done({"settings", "set", kFile, "closing-date", "9999-12-31"});

  EXPECT_EQ(Run({"journal", "remove", kFile, "--txn", txn}).exitCode, 2);
  Done({"journal", "remove", kFile, "--txn", txn, "--after-close"});
}

TEST_F(Books, ABookingMayNameTheAccountThatTheRelationHasAnyway) {
  RelateBirch();

  Done(Booking(
      {"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker", "--due-to", "Due to Birch"}));

  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("otherAccount").at("name"), "Due to Birch");
}

TEST_F(Books, ABookingIsRefusedThatDebitsAndCreditsOneAccount) {
  RelateBirch();

  const Json error =
      ErrorOf(Booking({"--amount", "10", "--request", "r", "--expense", "Due to Birch", "--name", "Walker"}));

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("status"), nullptr);
  EXPECT_EQ(error.at("remedy"), "name-an-expense-account");
  EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr("\"Due to Birch\" would be both debited and credited"));
}

TEST_F(Books, ABookingOverNothingIsRefused) {
  RelateBirch();

  const Outcome outcome =
      Run(Booking({"--amount", "0.00", "--request", "r", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: the amount is 0.00, and an entry over nothing is not booked\n"
            "  give with --amount what the partner paid, such as 480; a credit of the partner's is negative\n");
}

TEST_F(Books, ABookingUnderABlankRequestIdIsRefused) {
  RelateBirch();

  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "  ", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: the request id is blank\n"
            "  give with --request the id under which the partner knows the transaction\n");
}

TEST_F(Books, ABookingUnderAKnownRequestIdWithABlankMoreIsRefused) {
  RelateBirch();
  Book("request-1");

  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "request-1 ", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(
      outcome.err,
      "multientity: the request id \"request-1 \" differs from \"request-1\" of Birch Services Company (realm "
      "1001), which is in the books already, by nothing but blanks at its ends\n"
      "  if it is the same request, there is nothing to book; otherwise ask the partner for its own request id\n");
}

TEST_F(Books, ARejectedRequestIsNotBooked) {
  RelateBirch();
  Done({"rejected", "save", kFile, "--realm", "1001", "--request", "request-1", "--type", "bill", "--amount", "40.00",
        "--partner-txn", "B-1"});

  const Outcome outcome =
      Run(Booking({"--amount", "40", "--request", "request-1", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: the request \"request-1\" of Birch Services Company (realm 1001) was rejected\n"
            "  see it with: multientity rejected list FILE; to book it after all, delete the rejection first with: "
            "multientity rejected delete FILE --realm REALM --request REQUEST\n");
}

TEST_F(Books, ARequestThatThisCompanySentIsNotBooked) {
  RelateBirch();
  ImportMarch();

  const Json error =
      ErrorOf(Booking({"--amount", "40", "--request", "request-bill", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "see-own-transactions");
}

TEST_F(Books, ABookingIsRefusedWhileTheRelationIsNotEstablished) {
  RelateBirch();
  Done({"relation", "update", kFile, "--realm", "1001", "--state", "pending"});

  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: the relation with Birch Services Company (realm 1001) is not established, but pending\n"
            "  once the partner agrees, establish it with: multientity relation update FILE --realm REALM --state "
            "established; then book again\n");
}

TEST_F(Books, ABookingCreatesTheAccountAndTheNameThatAreNew) {
  RelateBirch();

  Done(Booking({"--amount", "10", "--request", "r", "--new-expense", "Insurance", "--new-name", "Stone Insurance"}));

  EXPECT_THAT(Run({"accounts", kFile, "--type", "Expense"}).out, HasSubstr("Insurance"));
  EXPECT_THAT(Run({"names", kFile}).out, HasSubstr("Stone Insurance"));
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("account").at("name"), "Insurance");
}

TEST_F(Books, ANewAccountMayHaveAnotherTypeThanExpense) {
  RelateBirch();

  Done(Booking({"--amount", "10", "--request", "r", "--new-expense", "Freight In", "--new-expense-type",
                "Cost of Goods Sold", "--name", "Walker"}));

  EXPECT_THAT(Run({"accounts", kFile, "--type", "Cost of Goods Sold"}).out, HasSubstr("Freight In"));
}

TEST_F(Books, AnAccountThatExistsIsNotCreatedAgain) {
  RelateBirch();

  const Json error =
      ErrorOf(Booking({"--amount", "10", "--request", "r", "--new-expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(error.at("status"), 5);
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("--expense"));
}

TEST_F(Books, ANameThatExistsIsNotCreatedAgain) {
  RelateBirch();

  const Json error =
      ErrorOf(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--new-name", "Walker"}));

  EXPECT_EQ(error.at("status"), 16);
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("--name"));
}

TEST_F(Books, ABookingForAnUnknownPartnerIsRefused) {
  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: there is no relation with the partner \"1001\"\n"
            "  see the partners with: multientity relation list FILE; a new one is related with: multientity relation "
            "create FILE --realm REALM --partner NAME --due-from ACCOUNT --due-to ACCOUNT\n");
}

TEST_F(Books, ARequestIsBookedOnlyOncePerPartner) {
  RelateBirch();
  Book("request-1");

  const Json error =
      ErrorOf(Booking({"--amount", "40", "--request", "request-1", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(error.at("exit"), 1);
  EXPECT_EQ(error.at("status"), 0);
  EXPECT_EQ(error.at("message"),
            "status 0: the request \"request-1\" of Birch Services Company (realm 1001) is booked already, as journal "
            "entry 1");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("journal remove FILE TXN"));
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").size(), 1U);
}

TEST_F(Books, ARefusedBookingLeavesNoNewAccountAndNoNewName) {
  RelateBirch();
  Book("request-1");

  const Json error = ErrorOf(Booking(
      {"--amount", "40", "--request", "request-1", "--new-expense", "Insurance", "--new-name", "Stone Insurance"}));

  EXPECT_EQ(error.at("status"), 0);
  EXPECT_THAT(Run({"accounts", kFile}).out, Not(HasSubstr("Insurance")));
  EXPECT_THAT(Run({"names", kFile}).out, Not(HasSubstr("Insurance")));
}

TEST_F(Books, ARequestIdOfThirtySixCharactersIsAccepted) {
  RelateBirch();

  Book(std::string(36, 'r'));

  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("requestId"), std::string(36, 'r'));
}

TEST_F(Books, ARequestIdOfThirtySevenCharactersIsRefusedBeforeTheCall) {
  RelateBirch();
  const std::string before = Contents(kFile);

  const Outcome outcome = Run(
      Booking({"--amount", "40", "--request", std::string(37, 'r'), "--new-expense", "Insurance", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("36"));
  EXPECT_EQ(Contents(kFile), before);
}

TEST_F(Books, AnAmountWithThreeDecimalsIsNamedAndNothingIsBooked) {
  RelateBirch();
  const std::string before = Contents(kFile);

  const Outcome outcome =
      Run(Booking({"--amount", "12.345", "--request", "r", "--new-expense", "Insurance", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "multientity: amount \"12.345\" has more decimals than USD, which has two\n");
  EXPECT_EQ(Contents(kFile), before);
}

TEST_F(Books, AnAmountBeyondTheRangeIsRefused) {
  RelateBirch();

  EXPECT_EQ(
      Run(Booking({"--amount", "100000000000.00", "--request", "r", "--expense", "Utilities", "--name", "Walker"}))
          .exitCode,
      2);
}

TEST_F(Books, ANegativeAmountIsACredit) {
  RelateBirch();

  Done(Booking({"--amount", "-10.00", "--request", "r", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("amount"), "-10.00");
}

TEST_F(Books, ABookingToAnAccountThatDoesNotExistNamesItAndCreatesNothing) {
  RelateBirch();

  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "r", "--expense", "Insurance", "--new-name", "Stone Insurance"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Insurance"));
  EXPECT_THAT(Run({"names", kFile}).out, testing::Not(HasSubstr("Stone")));
}

TEST_F(Books, ABookingUnderANameThatDoesNotExistNamesItAndCreatesNothing) {
  RelateBirch();

  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "r", "--new-expense", "Insurance", "--name", "Stone Insurance"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Stone Insurance"));
  EXPECT_THAT(Run({"accounts", kFile}).out, testing::Not(HasSubstr("Insurance")));
}

TEST_F(Books, ABookingNeedsOneExpenseAccountAndOneName) {
  EXPECT_EQ(Run(Booking({"--amount", "10", "--request", "r", "--name", "Walker"})).exitCode, 2);
  EXPECT_EQ(Run(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities"})).exitCode, 2);
  EXPECT_EQ(Run(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--new-expense", "Gas", "--name",
                         "Walker"}))
                .exitCode,
            2);
}

TEST_F(Books, ARelationWithoutADueToAccountNeedsOneForABooking) {
  Done({"relation", "create", kFile, "--realm", "1001", "--partner", "Birch", "--state", "without-accounts"});
  Done({"relation", "update", kFile, "--realm", "1001", "--state", "established"});

  const Outcome outcome =
      Run(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "multientity: the relation with Birch (realm 1001) has no due-to account\n"
            "  give it both with: multientity relation update FILE --realm REALM --due-from ACCOUNT --due-to ACCOUNT; "
            "then book again\n");
}

TEST_F(Books, ABookingIsNotGatedByTheFeatureSwitch) {
  RelateBirch();
  WriteFile("alder.company.remote.toml", "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  EXPECT_EQ(Run(Booking({"--amount", "10", "--request", "r", "--expense", "Utilities", "--name", "Walker"})).exitCode,
            0);
}

TEST_F(Books, ARemovedEntryIsNoLongerListed) {
  RelateBirch();
  const int transaction = Book("request-1");

  const Json answer = Answer({"journal", "remove", kFile, std::to_string(transaction)});

  EXPECT_EQ(answer.at("status"), 1);
  EXPECT_EQ(answer.at("transaction"), transaction);
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions"), Json::array());
}

TEST_F(Books, AnEntryThatDoesNotExistCannotBeRemoved) {
  const Outcome outcome = Run({"journal", "remove", kFile, "--txn", "4711"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, testing::StartsWith("multientity: there is no transaction 4711\n"));
}

TEST_F(Books, ARequestOfOnesOwnThatIsOnlyEnteredIsNotBooked) {
  RelateBirch();
  ImportMarch();
  ChangeTheFile("UPDATE me_transaction SET state = 0 WHERE txn_id = 1");

  const Outcome outcome =
      Run(Booking({"--amount", "40", "--request", "request-bill", "--expense", "Utilities", "--name", "Walker"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err,
              testing::StartsWith("multientity: the request \"request-bill\" is one of this company's own to "
                                  "Birch Services Company (realm 1001)\n"));
}

TEST_F(Books, ATransactionIdBelowOneIsNamed) {
  const Outcome outcome = Run({"journal", "remove", kFile, "--txn", "0"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"0\""));
}
