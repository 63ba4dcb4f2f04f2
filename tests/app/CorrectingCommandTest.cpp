#include "app/Books.h"

using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

// A bill (1), whose partner has established it, a check (2) and an entry of a partner's request (3), as of March 2024.
class BooksWithAMistake : public Books {
 public:
  BooksWithAMistake() {
    RelateBirch();
    ImportMarch();
    ChangeTheFile("UPDATE me_transaction SET state = 3 WHERE txn_id = 1");
  }
};

}  // namespace

TEST_F(BooksWithAMistake, AReversalTellsWhatItIsAndWhomItIsSentTo) {
  const Outcome outcome = Run({"reverse", kFile, "1", "--date", "2024-04-01"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, MatchesRegex("Reversed bill 1 with bill 4 of 2024-04-01.\n"
                                        "Birch Services Company .realm 1001. is to be sent the request [0-9a-f-]*.\n"));
}

TEST_F(BooksWithAMistake, AReversalTellsWhoHasToBeTold) {
  ChangeTheFile("UPDATE me_transaction SET of_before = 1 WHERE txn_id = 1");

  EXPECT_THAT(Run({"reverse", kFile, "1"}).out,
              HasSubstr("Birch Services Company (realm 1001) has it in its books and is sent nothing; tell it.\n"));
}

TEST_F(BooksWithAMistake, AReversalIsReadByPrograms) {
  const Json answer = Answer({"reverse", kFile, "1", "--date", "2024-04-01", "--memo", "Twice"});

  EXPECT_EQ(answer.at("transaction"), 1);
  EXPECT_EQ(answer.at("toTell"), Json::array());
  EXPECT_EQ(answer.at("reversal").at("transaction"), 4);
  EXPECT_EQ(answer.at("reversal").at("date"), "2024-04-01");
  EXPECT_EQ(answer.at("reversal").at("memo"), "Twice");
  EXPECT_EQ(answer.at("reversal").at("lines").at(0).at("amount"), "100.00");
}

TEST_F(BooksWithAMistake, AReversalAsksThePartnerWithItsMemo) {
  const Json bill = Answer({"bill", "record", kFile, "--name", "Walker", "--memo", "Inspection of the lift", "--line",
                            "Utilities", "100.00", "--partner", "1001", "--share", "50%"});

  const Json reversal =
      Answer({"reverse", kFile, std::to_string(bill.at("transaction").get<int>()), "--memo", "Never delivered"})
          .at("reversal");

  EXPECT_EQ(reversal.at("lines").at(0).at("memo"), "");
  EXPECT_EQ(reversal.at("lines").at(1).at("realm"), "1001");
  EXPECT_EQ(reversal.at("lines").at(1).at("memo"), "Never delivered");
}

TEST_F(BooksWithAMistake, AReversalIsNotMadeTwice) {
  Done({"reverse", kFile, "1"});

  const Outcome outcome = Run({"reverse", kFile, "1"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("multientity: bill 1 is reversed already, by bill 4\n"));
  EXPECT_THAT(outcome.err, HasSubstr("see it with: multientity show FILE TXN"));
  EXPECT_THAT(outcome.err, HasSubstr("multientity bill copy FILE TXN"));
}

TEST_F(BooksWithAMistake, ARemovalTellsWhatIsGone) {
  ChangeTheFile("UPDATE me_transaction SET state = 0 WHERE txn_id = 2");

  EXPECT_EQ(Run({"remove", kFile, "2"}).out, "Removed check 2 of 2024-03-15.\n");
  EXPECT_EQ(Run({"remove", kFile, "2"}).err.substr(0, 39), "multientity: there is no transaction 2\n");
}

TEST_F(BooksWithAMistake, ARemovalIsReadByPrograms) {
  ChangeTheFile("UPDATE me_transaction SET state = 0 WHERE txn_id = 2");

  const Json answer = Answer({"remove", kFile, "2"});

  EXPECT_EQ(answer.at("transaction"), 2);
  EXPECT_EQ(answer.at("removed").at("type"), "check");
  EXPECT_EQ(answer.at("removed").at("lines").size(), 2);
}

TEST_F(BooksWithAMistake, AnEntryOfAPartnersRequestIsNotRemovedButTakenBack) {
  const Json error = ErrorOf({"remove", kFile, "3"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("what"), "remove-transaction");
  EXPECT_EQ(error.at("remedy"), "take-back-the-entry");
}

TEST_F(BooksWithAMistake, AnExpenseIsMovedToAnotherAccount) {
  EXPECT_EQ(Run({"journal", "move", kFile, "3", "--expense", "Utilities:Power", "--date", "2024-04-01"}).out,
            "Moved the expense of journal entry 3 from Utilities to Utilities:Power with journal entry 4 of "
            "2024-04-01.\n");

  const Json answer = Answer({"journal", "move", kFile, "3", "--expense", "Utilities", "--date", "2024-04-02"});

  EXPECT_EQ(answer.at("transaction"), 3);
  EXPECT_EQ(answer.at("from").at("name"), "Utilities:Power");
  EXPECT_EQ(answer.at("to").at("name"), "Utilities");
  EXPECT_EQ(answer.at("move").at("transaction"), 5);
}

TEST_F(BooksWithAMistake, WhatIsClosedIsTakenBackAfterTheClosingOnly) {
  Done({"settings", "set", kFile, "closing-date", "2024-12-31"});

  for (std::vector<std::string> command :
       {std::vector<std::string>{"journal", "move", kFile, "3", "--expense", "Utilities:Power", "--date", "2024-04-01"},
        {"reverse", kFile, "1", "--date", "2024-04-01"}}) {
    EXPECT_EQ(Run(command).exitCode, 2);
    command.emplace_back("--after-close");
    Done(command);
  }
}

TEST_F(BooksWithAMistake, WhatWasTakenBackIsToldInSentences) {
  Done({"reverse", kFile, "1"});
  Done({"journal", "move", kFile, "3", "--expense", "Utilities:Power"});
  ChangeTheFile("UPDATE me_transaction SET state = 0 WHERE txn_id = 2");
  Done({"remove", kFile, "2"});

  const std::string trail = Run({"audit", "show", kFile}).out;

  EXPECT_THAT(trail, HasSubstr("reversed a transaction with bill 4: "));
  EXPECT_THAT(trail, HasSubstr("moved an expense with journal entry 5: "));
  EXPECT_THAT(trail, HasSubstr("removed check 2: "));
}

TEST_F(BooksWithAMistake, ABillIsCorrectedInItsPlace) {
  const Outcome outcome = Run({"bill", "correct", kFile, "1", "--memo", "Power of March", "--date", "2024-04-01"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("Reversed bill 1 with bill 4 and posted bill 5 in its place.\n"));
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "bill"}).out, HasSubstr("corrected a bill with bill 5: "));
}

TEST_F(BooksWithAMistake, ACorrectionIsReadByPrograms) {
  const Json answer = Answer({"bill", "correct", kFile, "1", "--line", "Utilities", "90.00", "--no-partners"});

  EXPECT_EQ(answer.at("transaction"), 1);
  EXPECT_EQ(answer.at("reversal").at("transaction"), 4);
  EXPECT_EQ(answer.at("correction").at("transaction"), 5);
  EXPECT_EQ(answer.at("correction").at("lines").at(0).at("amount"), "90.00");
  EXPECT_EQ(answer.at("dryRun"), false);
}

TEST_F(BooksWithAMistake, ACorrectionIsOnlyShownWhenThatIsAskedFor) {
  const Outcome outcome = Run({"bill", "correct", kFile, "1", "--memo", "Power of March", "--dry-run"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, HasSubstr("Nothing was posted.\n"));
  Done({"bill", "correct", kFile, "1", "--memo", "Power of March"});
}

TEST_F(BooksWithAMistake, ACorrectionAsksThePartnerWithItsMemo) {
  const Json bill = Answer({"bill", "record", kFile, "--name", "Walker", "--memo", "Inspection of the lift", "--line",
                            "Utilities", "100.00", "--partner", "1001", "--share", "50%"});

  const Json correction = Answer({"bill", "correct", kFile, std::to_string(bill.at("transaction").get<int>()), "--memo",
                                  "Inspection of the WEST lift"})
                              .at("correction");

  EXPECT_EQ(correction.at("lines").at(0).at("memo"), "");
  EXPECT_EQ(correction.at("lines").at(1).at("realm"), "1001");
  EXPECT_EQ(correction.at("lines").at(1).at("memo"), "Inspection of the WEST lift");
  EXPECT_EQ(correction.at("lines").at(2).at("memo"), "Inspection of the WEST lift");
}

TEST_F(BooksWithAMistake, ACorrectionWithoutAnythingNewIsRefused) {
  EXPECT_EQ(ErrorOf({"bill", "correct", kFile, "1"}).at("remedy"), "say-what-is-wrong");
  EXPECT_EQ(ErrorOf({"bill", "correct", kFile, "1", "--line", "Utilities", "90.00"}).at("remedy"),
            "give-the-shares-again");
}
