#include <algorithm>

#include "app/Books.h"
#include "app/RunningProgram.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Arguments = std::vector<std::string>;

// Birch is related; a bill of 90.00 is shared with it by halves.
class EnterBooks : public Books {
 protected:
  EnterBooks() { RelateBirch(); }

  static Arguments Bill(const Arguments& more = {}) {
    Arguments arguments{"bill",   "record",     kFile,    "--name",    "Northern Power",
                        "--date", "2024-03-05", "--line", "Utilities", "90.00",
                        "March",  "--partner",  "1001",   "--share",   "50%"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  static std::vector<std::string> LinesOf(const Json& entered) {
    std::vector<std::string> lines;
    for (const Json& line : entered.at("lines")) {
      lines.push_back(line.at("account").at("name").get<std::string>() + ' ' + line.at("amount").get<std::string>());
    }
    return lines;
  }
  std::size_t BookedLines() const { return Answer({"transactions", kFile}).at("transactions").size(); }
  RunningProgram AtATerminal(const Arguments& arguments) const {
    return RunningProgram(In("."), arguments, Console::kTerminal);
  }
};

TEST_F(EnterBooks, ABillIsPostedWithItsPartnersPart) {
  const Json bill = Answer(Bill({"--number", "NP-1", "--memo", "Power", "--attach", "a.pdf", "--attach", "b.pdf"}));

  EXPECT_THAT(LinesOf(bill), ElementsAre("Utilities 45.00", "Due from Birch 45.00", "Payables -90.00"));
  EXPECT_EQ(bill.at("transaction"), 1);
  EXPECT_EQ(bill.at("type"), "bill");
  EXPECT_EQ(bill.at("date"), "2024-03-05");
  EXPECT_EQ(bill.at("name").at("name"), "Northern Power");
  EXPECT_EQ(bill.at("documentNumber"), "NP-1");
  EXPECT_EQ(bill.at("attachments"), Json({"a.pdf", "b.pdf"}));
  EXPECT_EQ(bill.at("dryRun"), false);
  EXPECT_EQ(bill.at("lines").at(0).at("memo"), "March");
  EXPECT_EQ(bill.at("lines").at(1).at("realm"), "1001");
  EXPECT_EQ(bill.at("lines").at(1).at("state"), "entered");
  EXPECT_EQ(bill.at("lines").at(1).at("requestId").get<std::string>().size(), 36U);
  EXPECT_EQ(bill.at("lines").at(0).at("requestId"), nullptr);
}

TEST_F(EnterBooks, PeopleAreShownDebitsCreditsAndPartners) {
  const Outcome outcome = Run(Bill());

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Bill 1 of 2024-03-05, Northern Power"), HasSubstr("Birch Services Company"),
                                 HasSubstr("Debit  Credit"), HasSubstr("Total"), HasSubstr("Posted bill 1.\n")));
}

TEST_F(EnterBooks, ACheckTakesItsPairsOfPartnersAndSharesInTheirOrder) {
  Done({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar Leasing", "--due-from", "Due from Cedar",
        "--due-to", "Due to Cedar", "--state", "established"});

  const Json check = Answer({"check", "record", kFile, "--name", "Walker", "--line", "Utilities", "90.00", "--partner",
                             "Cedar Leasing", "--share", "1/3", "--partner", "1001", "--share", "10.00"});

  EXPECT_THAT(LinesOf(check),
              ElementsAre("Utilities 50.00", "Due from Cedar 30.00", "Due from Birch 10.00", "Checking -90.00"));
}

TEST_F(EnterBooks, AnEntryTakesAmountsBelowZero) {
  const Json entry = Answer({"entry", "record", kFile, "--line", "Utilities", "90.00", "--line", "Payables", "-90.00",
                             "--partner", "1001", "--share", "-30.00"});

  EXPECT_THAT(LinesOf(entry), ElementsAre("Utilities 90.00", "Due from Birch -30.00", "Payables -60.00"));
}

TEST_F(EnterBooks, APercentageOfWhatOnlyMovesMoneyIsRefusedWithWhatIsRight) {
  const auto entry = [](const char* share) {
    return Arguments{"entry",     "record", kFile,       "--line", "Checking", "90.00", "--line",
                     "Utilities", "-90.00", "--partner", "1001",   "--share",  share};
  };

  EXPECT_EQ(ErrorOf(entry("50%")).at("remedy"), "share-by-an-amount");
  EXPECT_THAT(ErrorOf(entry("50%")).at("hint").get<std::string>(), HasSubstr("--share -50.00"));
  EXPECT_THAT(ErrorOf(entry("-50%")).at("message").get<std::string>(), HasSubstr("share \"-50%\" is below zero"));
  EXPECT_THAT(LinesOf(Answer(entry("-45.00"))),
              ElementsAre("Checking 90.00", "Due from Birch -45.00", "Utilities -45.00"));
}

TEST_F(EnterBooks, ABillOnThePayableAccountIsRefusedWithWhatIsRight) {
  const Json error = ErrorOf({"bill", "record", kFile, "--name", "Walker", "--line", "Payables", "90.00"});

  EXPECT_EQ(error.at("remedy"), "give-other-lines");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("name with --line what it is for"));
  EXPECT_EQ(BookedLines(), 0U);
}

TEST_F(EnterBooks, AnEntryOfTheCompanysOwnIsListedByItsName) {
  Done({"entry", "record", kFile, "--name", "Walker", "--line", "Utilities", "90.00", "--line", "Payables", "-90.00",
        "--partner", "1001", "--share", "50%"});

  EXPECT_THAT(Run({"transactions", kFile}).out, HasSubstr("Walker"));
}

TEST_F(EnterBooks, ADryRunPostsNothing) {
  const Json preview = Answer(Bill({"--dry-run"}));

  EXPECT_THAT(LinesOf(preview), ElementsAre("Utilities 45.00", "Due from Birch 45.00", "Payables -90.00"));
  EXPECT_EQ(preview.at("transaction"), nullptr);
  EXPECT_EQ(preview.at("dryRun"), true);
  EXPECT_THAT(Run(Bill({"--dry-run"})).out, HasSubstr("Nothing was posted.\n"));
  EXPECT_EQ(BookedLines(), 0U);
}

TEST_F(EnterBooks, ACopyNamesItsOriginalByPositionOrOption) {
  Done(Bill());

  const Json copy = Answer({"bill", "copy", kFile, "1", "--date", "2024-04-05", "--number", "NP-2"});

  EXPECT_EQ(copy.at("transaction"), 2);
  EXPECT_EQ(copy.at("date"), "2024-04-05");
  EXPECT_EQ(copy.at("documentNumber"), "NP-2");
  EXPECT_EQ(Answer({"bill", "copy", kFile, "1"}).at("transaction"), 3);
}

TEST_F(EnterBooks, TheAuditTrailTellsWhoRecordedAndCopiedThem) {
  Done(Bill());
  Done({"bill", "copy", kFile, "1"});

  const std::string trail = Run({"audit", "show", kFile, "--what", "bill"}).out;

  EXPECT_THAT(trail, AllOf(HasSubstr("recorded bill 1: date 2024-03-05; name Northern Power; line Utilities 45.00 USD"),
                           HasSubstr("recorded bill 2: "), HasSubstr("copy of bill 1.")));
}

TEST_F(EnterBooks, WithoutATerminalWhatIsMissingIsAnErrorThatNamesTheOption) {
  const std::vector<std::pair<Arguments, std::string>> wrong{
      {{"bill", "record", kFile, "--name", "Walker"}, "--line is missing"},
      {{"bill", "record", kFile, "--line", "Utilities", "5"}, "--name is missing"},
      {{"check", "record", kFile, "--line", "Utilities"}, "--line"},
      {Bill({"--partner", "1002"}), "2 --partner and 1 --share are given"},
      {Bill({"--new-name", "Somebody"}), "--name excludes --new-name"},
      {Bill({"--payable", "Checking"}), "is of type Bank, which a bill does not credit"},
      {{"bill", "copy", kFile}, "TXN is required"}};
  for (const auto& [arguments, why] : wrong) {
    const Outcome outcome = Run(arguments);

    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.err, HasSubstr(why));
    EXPECT_EQ(outcome.out, "");
  }
  EXPECT_EQ(BookedLines(), 0U);
}

TEST_F(EnterBooks, ARefusalSaysWhatWouldBeRight) {
  Done(Bill({"--number", "NP-1"}));

  const Json error = ErrorOf(Bill({"--number", "NP-1"}));

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "record-again");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("--again"));
  EXPECT_EQ(BookedLines(), 1U);
}

TEST_F(EnterBooks, AClosedDayIsChangedByAnAdministratorOnly) {
  Done({"settings", "set", kFile, "closing-date", "2024-03-31"});

  EXPECT_THAT(ErrorOf(Bill()).at("message").get<std::string>(), HasSubstr("the books are closed through 2024-03-31"));
  EXPECT_EQ(BookedLines(), 0U);
  Done(Bill({"--after-close"}));
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "bill"}).out, HasSubstr("after close yes"));
}

TEST_F(EnterBooks, AtATerminalAPersonIsAskedForAllThatIsMissing) {
  RunningProgram program = AtATerminal({"bill", "record", kFile});

  program.WaitFor("Date (YYYY-MM-DD, or none for today): ");
  program.Type("5 March\n");
  program.WaitFor("The date");
  program.WaitFor("Date (YYYY-MM-DD, or none for today): ");
  program.Type("2024-03-05\n");
  program.WaitFor("From whom");
  program.Type("Nobody\n");
  program.WaitFor("There is no name \"Nobody\"");
  program.WaitFor("From whom");
  program.Type("Northern Power\n");
  program.WaitFor("Document number (or none): ");
  program.Type("NP-1\n");
  program.WaitFor("Memo (or none): ");
  program.Type("\n");
  program.WaitFor("Line 1, account");
  program.Type("Nowhere\n");
  program.WaitFor("There is no account");
  program.WaitFor("Line 1, account");
  program.Type("Utilities\n");
  program.WaitFor("amount, and a memo behind it: ");
  program.Type("a lot\n");
  program.WaitFor("amount, and a memo behind it: ");
  program.Type("90.00 March power\n");
  program.WaitFor("Line 2, account");
  program.Type("\n");
  program.WaitFor("Partner who bears a part");
  program.Type("Birch Services Company\n");
  program.WaitFor("share (");
  program.Type("90.01\n");
  program.WaitFor("the partners bear more than the bill, which comes to 90.00");
  program.WaitFor("share (");
  program.Type("50%\n");
  program.WaitFor("Partner who bears a part");
  program.Type("\n");
  program.WaitFor("Post this bill? [y/N]: ");
  program.Type("y\n");
  program.WaitFor("Posted bill 1.");

  EXPECT_EQ(program.End().exitCode, 0);
  EXPECT_EQ(BookedLines(), 1U);
}

TEST_F(EnterBooks, AtATerminalABillIsPostedOnlyWhenThePersonAgrees) {
  RunningProgram program = AtATerminal(Bill());

  program.WaitFor("Due from Birch");
  program.WaitFor("Post this bill? [y/N]: ");
  program.Type("perhaps\n");
  program.WaitFor("Post this bill? [y/N]: ");
  program.Type("\n");

  EXPECT_EQ(program.End().exitCode, 1);
  EXPECT_EQ(BookedLines(), 0U);
}

TEST_F(EnterBooks, AtATerminalNothingIsAskedWithYes) {
  RunningProgram program = AtATerminal(Bill({"--yes"}));

  program.WaitFor("Posted bill 1.");

  EXPECT_THAT(program.End().out, Not(HasSubstr("[y/N]")));
}

TEST_F(EnterBooks, AtATerminalAPersonIsToldWhatAnEntryLacksAndOnWhichSide) {
  RunningProgram program = AtATerminal({"entry", "record", kFile});
  for (const char* const question : {"Date (", "Name", "Document number (", "Memo ("}) {
    program.WaitFor(question);
    program.Type("\n");
  }
  program.WaitFor("Line 1, account");
  program.Type("Utilities\n");
  program.WaitFor("amount, and a memo behind it: ");
  program.Type("90.00\n");
  program.WaitFor("Line 2, account");

  program.Type("\n");

  program.WaitFor("do not come to the same yet: 90.00 USD are missing from the credits.");
  program.WaitFor("Line 2, account");
  program.Type("Checking\n");
  program.WaitFor("amount, and a memo behind it: ");
  program.Type("-100.00\n");
  program.WaitFor("Line 3, account");
  program.Type("\n");
  program.WaitFor("do not come to the same yet: 10.00 USD are missing from the debits.");
  program.Type("Utilities\n");
  program.WaitFor("amount, and a memo behind it: ");
  program.Type("10.00\n");
  program.WaitFor("Line 4, account");
  program.Type("\n");
  program.WaitFor("Partner who bears a part");
}

TEST_F(EnterBooks, AtATerminalWhatTheBooksRefuseIsToldBeforeTheLinesAreTyped) {
  Done(Bill({"--number", "NP-1"}));
  Done({"settings", "set", kFile, "closing-date", "2024-02-29"});
  RunningProgram program = AtATerminal({"bill", "record", kFile});

  program.WaitFor("Date (");
  program.Type("2024-02-29\n");
  program.WaitFor("the books are closed through 2024-02-29");
  program.WaitFor("Date (");
  program.Type("2024-03-06\n");
  program.WaitFor("From whom");
  program.Type("+Northern Power\n");
  program.WaitFor("there is a name \"Northern Power\" already");
  program.WaitFor("From whom");
  program.Type("Northern Power\n");
  program.WaitFor("Document number (");
  program.Type("NP-1\n");
  program.WaitFor("is in the books, as bill 1");
  program.WaitFor("Document number (");
  program.Type("NP-2\n");
  program.WaitFor("Memo (");
  program.Type("\n");
  program.WaitFor("Line 1, account");
  program.Type("Due from Birch\n");
  program.WaitFor("is paired with a partner");
  program.WaitFor("Line 1, account");
}

TEST_F(EnterBooks, AtATerminalWhatWasGivenIsLookedAtBeforeAnythingIsAsked) {
  Done(Bill({"--number", "NP-1"}));
  Done({"settings", "set", kFile, "closing-date", "2024-02-29"});
  const auto told = [&](const Arguments& given) {
    Arguments arguments{"bill", "record", kFile};
    arguments.insert(arguments.end(), given.begin(), given.end());
    const Outcome outcome = AtATerminal(arguments).End();
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.out, Not(HasSubstr("Line 1")));
    return outcome.err;
  };

  EXPECT_THAT(told({"--date", "2024-02-29"}), HasSubstr("the books are closed through 2024-02-29"));
  EXPECT_THAT(told({"--date", "2024-03-06", "--new-name", "Northern Power"}), HasSubstr("a name \"Northern Power\""));
  EXPECT_THAT(told({"--date", "2024-03-06", "--name", "Nobody"}), HasSubstr("no name \"Nobody\""));
  EXPECT_THAT(told({"--date", "2024-03-06", "--name", "Northern Power", "--number", "NP-1"}),
              HasSubstr("is in the books, as bill 1"));
}

TEST_F(EnterBooks, TheEndOfTheInputCancelsAndNothingIsSaved) {
  if (IsWindowsProgram()) GTEST_SKIP() << "Wine's console swallows Ctrl-Z";
  RunningProgram program = AtATerminal({"entry", "record", kFile});
  program.WaitFor("Date (YYYY-MM-DD, or none for today): ");

  program.Type("\x04");

  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("the input has ended; nothing was saved"));
  EXPECT_EQ(BookedLines(), 0U);
}

TEST_F(EnterBooks, AtATerminalThePayableAccountIsAskedForWhenThereAreSeveral) {
  WriteFile("more.csv", "name,type\nOther Payables,Accounts Payable\n");
  Done({"import", "accounts", kFile, "more.csv"});
  RunningProgram program = AtATerminal(Bill());

  program.WaitFor("there are 2 accounts of type Accounts Payable");
  program.WaitFor("Account to credit: ");
  program.Type("Checking\n");
  program.WaitFor("which a bill does not credit");
  program.WaitFor("Account to credit: ");
  program.Type("Other Payables\n");
  program.WaitFor("Post this bill? [y/N]: ");
  program.Type("yes\n");
  program.WaitFor("Posted bill 1.");
}

TEST_F(EnterBooks, WhoHasNoRightIsToldBeforeAnythingIsAsked) {
  Done({"users", "add", kFile, "Clerk"});
  RunningProgram program = AtATerminal({"bill", "record", kFile, "--user", "Clerk"});

  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("bills:create"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("Date")));
}

}  // namespace
