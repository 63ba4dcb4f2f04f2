#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

// With one blank where columns are apart, and none where a line begins.
std::string Squeezed(const std::string& text) {
  std::string squeezed;
  for (const char c : text) {
    if (c != ' ' || !(squeezed.ends_with(' ') || squeezed.ends_with('\n'))) squeezed += c;
  }
  return squeezed;
}

}  // namespace

// The books of March 2024: a bill (1), a check (2), a journal entry (3).
class BooksOfMarch : public Books {
 public:
  BooksOfMarch() {
    RelateBirch();
    ImportMarch();
  }
};

TEST_F(BooksOfMarch, ShowBalancesAsATreeWithDebitsAndCreditsThatAgree) {
  const std::string out = Squeezed(Run({"balances", kFile}).out);

  EXPECT_THAT(out, StartsWith("Balances of all that is in the books, USD\n"));
  EXPECT_THAT(out, HasSubstr("\nChecking 1,250.00\nDue from Birch 1,290.00\nDue to Birch 75.50\nPayables 100.00\n"
                             "Utilities 135.50\nPower 60.00\n"));
  EXPECT_THAT(out, HasSubstr("\nTotal 1,425.50 1,425.50\n"));
}

TEST_F(BooksOfMarch, ShowBalancesWithAccountNumbersAndWithoutTheLevelsBelowADepth) {
  ChangeTheFile("UPDATE account SET number = '6100' WHERE full_name = 'Utilities'");

  const std::string out = Squeezed(Run({"balances", kFile, "--depth", "1", "--as-of", "2024-03-31"}).out);

  EXPECT_THAT(out, AllOf(StartsWith("Balances up to 2024-03-31, USD\n"), HasSubstr("\n6100 Utilities 135.50\n"),
                         Not(HasSubstr("Power"))));
}

TEST_F(BooksOfMarch, ShowWhatAPeriodHasChanged) {
  const std::string out = Squeezed(Run({"balances", kFile, "--from", "2024-03-02", "--to", "2024-03-15"}).out);

  EXPECT_THAT(out, AllOf(StartsWith("Changes from 2024-03-02 to 2024-03-15, USD\n"),
                         HasSubstr("\nDue from Birch 1,250.00\n"), Not(HasSubstr("Utilities"))));
  EXPECT_EQ(Run({"balances", kFile, "--from", "2025-01-01"}).out, "No account has lines in these days.\n");
}

TEST_F(BooksOfMarch, ShowUnusedAccountsOnRequest) {
  EXPECT_THAT(Squeezed(Run({"balances", kFile, "--all"}).out), HasSubstr("\nOld Rent (deleted) 0.00\n"));
}

TEST_F(BooksOfMarch, AreNotAskedForADayAndAPeriodAtOnce) {
  EXPECT_EQ(Run({"balances", kFile, "--as-of", "2024-03-31", "--from", "2024-03-01"}).exitCode, 2);
  EXPECT_EQ(Run({"balances", kFile, "--csv", "--json"}).exitCode, 2);
}

TEST_F(BooksOfMarch, NameAnUnknownAccountAndABadDepth) {
  const Outcome account = Run({"balances", kFile, "--account", "Heating"});
  const Outcome depth = Run({"balances", kFile, "--depth", "0"});
  const Outcome listed = Run({"register", kFile, "Heating"});

  EXPECT_EQ(account.exitCode, 2);
  EXPECT_THAT(account.err, HasSubstr("no account \"Heating\""));
  EXPECT_EQ(depth.exitCode, 2);
  EXPECT_THAT(depth.err, HasSubstr("--depth \"0\""));
  EXPECT_EQ(listed.exitCode, 2);
  EXPECT_THAT(listed.err, HasSubstr("no account \"Heating\""));
}

TEST_F(Books, WithoutTransactionsHaveNoBalances) {
  EXPECT_EQ(Run({"balances", kFile}).out, "No account has lines in these days.\n");
  EXPECT_EQ(Answer({"balances", kFile}).at("total").dump(), R"({"credit":"0.00","debit":"0.00"})");
}

TEST_F(BooksOfMarch, ReadBalancesForASpreadsheet) {
  const std::string out = Run({"balances", kFile, "--account", "Utilities:Power", "--csv"}).out;

  EXPECT_EQ(out, "id,number,name,type,typeNumber,deleted,level,debit,credit,own,currency\n" +
                     std::to_string(AccountId("Utilities:Power")) +
                     ",,Utilities:Power,Expense,12,false,0,60.00,0.00,60.00,USD\n");
}

TEST_F(BooksOfMarch, ListTheRegisterOfAnAccountFromItsOpeningToItsClosing) {
  const std::string out =
      Squeezed(Run({"register", kFile, "Due from Birch", "--from", "2024-03-02", "--to", "2024-03-31"}).out);

  EXPECT_THAT(out, StartsWith("Register of Due from Birch from 2024-03-02 to 2024-03-31, USD\n"));
  EXPECT_THAT(out, HasSubstr("\n2024-03-02 opening 40.00\n"
                             "2024-03-15 check 2 Walker:Depot Refund Checking 1,250.00 1,290.00\n"
                             "2024-03-31 closing 1,290.00\n"));
}

TEST_F(BooksOfMarch, ListTheRegisterWithTheAccountsBelow) {
  const std::string out = Squeezed(Run({"register", kFile, "Utilities", "--with-sub-accounts"}).out);

  EXPECT_THAT(out, AllOf(HasSubstr(" March power Utilities:Power split 60.00 60.00\n"),
                         HasSubstr(" Heating Utilities Due to Birch 75.50 135.50\n")));
  EXPECT_THAT(Run({"register", kFile, "Utilities"}).out, Not(HasSubstr("March power")));
}

TEST_F(BooksOfMarch, NameTheOpeningAndTheClosingBalanceOfARegisterOnANarrowTerminal) {
  if (IsWindowsProgram()) GTEST_SKIP() << "an emulated program has no console here";

  const std::string out =
      RunProgramAtATerminal(50, In("."), {"register", kFile, "Checking", "--from", "2024-03-10"}).out;

  EXPECT_THAT(out, testing::ContainsRegex("2024-03-10  opening +0\\.00"));
  EXPECT_THAT(out, testing::ContainsRegex("closing +-1,250\\.00"));
  EXPECT_THAT(out, HasSubstr("(--wide shows also: Number, Name, Memo, Other"));
}

TEST_F(BooksOfMarch, SayThatARegisterHasNoLines) {
  EXPECT_THAT(Run({"register", kFile, "Receivables"}).out, StartsWith("Register of Receivables, USD; no lines\n"));
}

TEST_F(Books, TellTextsWithCommasQuotesAndBlanksToASpreadsheetAsTheyAre) {
  WriteFile("odd.csv",
            "transaction,type,date,name,memo,account,amount,line_memo\n"
            "J1,journal,2024-03-31,,\"Fuel, \"\"diesel\"\"\",Utilities,75.50,\"a, b\"\n"
            "J1,journal,,,,Checking,-75.50,\n");
  Done({"import", "transactions", kFile, "odd.csv"});

  const std::string out = Run({"register", kFile, "Utilities", "--csv"}).out;
  const std::string id = std::to_string(AccountId("Utilities"));

  EXPECT_THAT(
      out,
      AllOf(StartsWith("date,type,typeNumber,transaction,line,documentNumber,name,memo,lineMemo,account,"
                       "otherAccount.id,otherAccount.name,amount,balance,currency,accountId,accountNumber\n"
                       ",opening,,,,,,,,Utilities,,,,0.00,USD," +
                       id + ",\n"),
            HasSubstr("2024-03-31,journal,8,1,1,,,\"Fuel, \"\"diesel\"\"\",\"a, b\",Utilities,"),
            HasSubstr(",Checking,75.50,75.50,USD," + id + ",\n,closing,,,,,,,,Utilities,,,,75.50,USD," + id + ",\n")));
}

TEST_F(BooksOfMarch, TellASpreadsheetTheAccountOfEachLineByItsNumbers) {
  Done({"account", "number", kFile, "Utilities", "6000"});
  Done({"account", "number", kFile, "Utilities:Power", "6010"});
  const std::string upper = std::to_string(AccountId("Utilities"));
  const std::string lower = std::to_string(AccountId("Utilities:Power"));

  const std::string out = Run({"register", kFile, "Utilities", "--with-sub-accounts", "--csv"}).out;

  EXPECT_THAT(out, HasSubstr("0.00,USD," + upper + ",6000\n2024-03-01,bill,9,1,"));
  EXPECT_THAT(out, HasSubstr("60.00,60.00,USD," + lower + ",6010\n"));
  EXPECT_THAT(out, HasSubstr(",USD," + upper + ",6000\n,closing,"));
}

TEST_F(BooksOfMarch, TellALineBreakOfAnotherProgramToASpreadsheetWithinQuotes) {
  ChangeTheFile("INSERT INTO txn_attachment (txn_id, reference) VALUES (1, 'a' || char(10) || 'b')");
  ChangeTheFile(
      "INSERT INTO account (name, full_name, type, special_kind, deleted, number) "
      "VALUES ('Two' || char(10) || 'lines', 'Two' || char(10) || 'lines', 12, 0, 0, '')");

  EXPECT_THAT(Run({"balances", kFile, "--all", "--csv"}).out, HasSubstr(",\"Two\nlines\",Expense,"));
  EXPECT_THAT(Run({"show", kFile, "1"}).out, HasSubstr("attached: a\\x0Ab\n"));
}

TEST_F(BooksOfMarch, ListWhatIsOpenWithAPartnerByAge) {
  const std::string out =
      Squeezed(Run({"open-items", kFile, "--as-of", "2024-05-15", "--partner", "birch services company"}).out);

  EXPECT_THAT(out, StartsWith("Open items as of 2024-05-15, USD; their states are those of now\n"));
  EXPECT_THAT(
      out,
      HasSubstr("\nBirch Services Company owed to us 2024-03-01 bill 1 Northern Power March power 40.00 40.00 75 sent "
                "not-answered\n"));
  EXPECT_THAT(out, HasSubstr("\nBirch Services Company owed by us 2024-03-31 journal 3 Birch paid for us 75.50 75.50 "
                             "45 established agreed\n"));
  EXPECT_THAT(out, HasSubstr("\nBirch Services Company owed to us Due from Birch 0.00 0.00 1,290.00 0.00 1,290.00 "
                             "0.00 40.00 0.00 1,290.00\n"));
  EXPECT_THAT(out, Not(HasSubstr("differs")));
}

TEST_F(BooksOfMarch, ListWhatIsOpenWithTheMemoOfItsLineWhereItsTransactionHasNone) {
  WriteFile("more.csv",
            "transaction,type,date,name,memo,account,amount,line_memo\n"
            "J2,journal,2024-04-02,,Rent of April,Checking,-7.00,\n"
            "J2,journal,,,,Due from Birch,7.00,Hillcrest Lift Service\n"
            "J3,journal,2024-04-03,,,Checking,-8.00,\n"
            "J3,journal,,,,Due from Birch,8.00,Postage\n");
  Done({"import", "transactions", kFile, "more.csv"});

  const std::string out = Squeezed(Run({"open-items", kFile, "--as-of", "2024-05-15"}).out);

  EXPECT_THAT(out, AllOf(HasSubstr(" journal 4 Rent of April 7.00 "), HasSubstr(" journal 5 Postage 8.00 ")));
}

TEST_F(BooksOfMarch, ListWhatIsOpenWithoutItsMemoAndThenItsNameWhereThereIsNoRoom) {
  if (IsWindowsProgram()) GTEST_SKIP() << "an emulated program has no console here";

  const std::vector<std::string> command = {"open-items", kFile, "--as-of", "2024-05-01"};

  EXPECT_THAT(RunProgramAtATerminal(125, In("."), command).out,
              AllOf(testing::ContainsRegex("Number +Name +Amount"), HasSubstr("(--wide shows also: Memo)")));
  EXPECT_THAT(RunProgramAtATerminal(112, In("."), command).out,
              AllOf(testing::ContainsRegex("Number +Amount"), HasSubstr("(--wide shows also: Name, Memo)")));
}

TEST_F(BooksOfMarch, AddUpWhatIsOpenOnEachSideOfAllPartners) {
  Done({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar Leasing", "--due-from", "Due from Cedar",
        "--due-to", "Due to Cedar"});
  WriteFile("more.csv",
            "transaction,type,date,name,memo,account,amount,line_memo\n"
            "J2,journal,2024-04-02,,Cedar pays ahead,Checking,30.00,\n"
            "J2,journal,,,,Due from Cedar,-30.00,\n");
  Done({"import", "transactions", kFile, "more.csv"});

  const std::string out = Squeezed(Run({"open-items", kFile, "--as-of", "2024-05-15"}).out);
  const std::string csv = Run({"open-items", kFile, "--as-of", "2024-05-15", "--csv"}).out;

  EXPECT_THAT(out, HasSubstr("\nTotal owed to us 1,260.00\nTotal owed by us 75.50\n"));
  EXPECT_THAT(csv, Not(HasSubstr("Total")));
}

TEST_F(BooksOfMarch, HaveNoTotalOfASideOnWhichNothingIsOpen) {
  const std::string out = Squeezed(Run({"open-items", kFile, "--as-of", "2024-03-20"}).out);

  EXPECT_THAT(out, AllOf(HasSubstr("\nTotal owed to us 1,290.00\n"), Not(HasSubstr("Total owed by us"))));
}

TEST_F(BooksOfMarch, AddUpTheIntercompanyLinesThatAreListedForEachSide) {
  EXPECT_THAT(Squeezed(Run({"transactions", kFile}).out),
              HasSubstr("\nTotal owed to us 1,290.00 USD\nTotal owed by us 75.50 USD\n"));
  EXPECT_THAT(Squeezed(Run({"transactions", kFile, "--type", "bill"}).out),
              AllOf(HasSubstr("\nTotal owed to us 40.00 USD\n"), Not(HasSubstr("owed by us"))));
  EXPECT_THAT(Squeezed(Run({"transactions", kFile, "--txn", "3"}).out),
              AllOf(HasSubstr("\nTotal owed by us 75.50 USD\n"), Not(HasSubstr("owed to us"))));
  EXPECT_THAT(Run({"transactions", kFile, "--csv"}).out, Not(HasSubstr("Total")));
}

TEST_F(BooksOfMarch, TellOpenItemsToASpreadsheet) {
  Done({"account", "number", kFile, "Due from Birch", "1300"});
  const std::string out = Run({"open-items", kFile, "--as-of", "2024-03-01", "--csv"}).out;

  EXPECT_THAT(out,
              StartsWith("realm,partner,side,account,date,type,typeNumber,transaction,line,documentNumber,name,memo,"
                         "lineMemo,amount,open,days,age,standing,state,stateNumber,ofBefore,currency,"
                         "accountId,accountNumber\n"
                         "1001,Birch Services Company,owedToUs,Due from Birch,2024-03-01,bill,9,1,"));
  EXPECT_THAT(out, HasSubstr(",,Northern Power,March power,,40.00,40.00,0,0-30,not-answered,sent,1,false,USD," +
                             std::to_string(AccountId("Due from Birch")) + ",1300\n"));
}

TEST_F(BooksOfMarch, ListWhatIsOpenFromADayOnAfterOneLineForWhatIsOlder) {
  const std::string out = Squeezed(Run({"open-items", kFile, "--from", "2024-03-02", "--to", "2024-05-15"}).out);
  const std::string all = Squeezed(Run({"open-items", kFile, "--as-of", "2024-05-15"}).out);

  EXPECT_THAT(out, StartsWith("Open items as of 2024-05-15, dated from 2024-03-02 on, USD; their states are those of "
                              "now\n"));
  EXPECT_THAT(out, HasSubstr("\nBirch Services Company owed to us before 2024-03-02 40.00\n"
                             "Birch Services Company owed to us 2024-03-15 check 2 "));
  EXPECT_THAT(out, AllOf(Not(HasSubstr("March power")), Not(HasSubstr("owed by us before"))));
  EXPECT_EQ(out.substr(out.find("\nTotal ")), all.substr(all.find("\nTotal ")));
}

TEST_F(BooksOfMarch, TellASpreadsheetWhatIsOlderInARowOfItsOwnType) {
  const std::string out = Run({"open-items", kFile, "--from", "2024-03-16", "--to", "2024-05-15", "--csv"}).out;

  EXPECT_THAT(out, HasSubstr("\n1001,Birch Services Company,owedToUs,Due from Birch,2024-03-16,earlier,,,,,,,,,1290.00,"
                             ",,,,,,USD," +
                             std::to_string(AccountId("Due from Birch")) +
                             ",\n1001,Birch Services Company,owedByUs,Due to Birch,2024-03-31,journal,8,3,"));
}

TEST_F(BooksOfMarch, AreNotAskedForOpenItemsFromADayAfterTheLastOne) {
  const Outcome outcome = Run({"open-items", kFile, "--from", "2024-05-16", "--as-of", "2024-05-15"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("2024-05-16"), HasSubstr("ends before it begins")));
}

TEST_F(BooksOfMarch, SayThatNothingIsOpen) {
  EXPECT_EQ(Run({"open-items", kFile, "--as-of", "2024-02-29"}).out,
            "Nothing is open with any partner as of 2024-02-29.\n");
}

TEST_F(BooksOfMarch, NameAnUnknownPartner) {
  const Outcome outcome = Run({"open-items", kFile, "--partner", "Dogwood"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("partner \"Dogwood\""));
}

TEST_F(BooksOfMarch, ShowATransactionWithAllThatBelongsToIt) {
  const std::string out = Run({"show", kFile, "1"}).out;

  EXPECT_THAT(out, StartsWith("bill 1\n"
                              "  Date       2024-03-01\n"
                              "  Name       Northern Power\n"
                              "  Memo       March power\n"
                              "  Confirmed  no\n"
                              "  Currency   USD\n"));
  EXPECT_THAT(Squeezed(out), HasSubstr(" Due from Birch 40.00 Birch Services Company sent request-bill\n"));
  EXPECT_THAT(out, HasSubstr(" imported march.csv: "));
}

TEST_F(BooksOfMarch, ShowThatATransactionImportedAsEstablishedIsConfirmed) {
  EXPECT_THAT(Run({"show", kFile, "3"}).out, HasSubstr("  Confirmed  yes\n"));
  EXPECT_THAT(Run({"show", kFile, "3", "--csv"}).out, HasSubstr("\n3,journal,8,2024-03-31,,,,Birch paid for us,true,"));
}

TEST_F(BooksOfMarch, ShowTheTrailOfATransactionToAdministratorsAndAccountants) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  const std::string out = Run({"show", kFile, "1", "--user", "Robin"}).out;

  EXPECT_THAT(out, AllOf(HasSubstr("The audit trail is shown to administrators and accountants.\n"),
                         Not(HasSubstr("march.csv"))));
}

TEST_F(BooksOfMarch, ShowTheTrailOfATransactionOfSomeDaysOnly) {
  EXPECT_THAT(Run({"show", kFile, "1", "--to", "1999-12-31"}).out,
              AllOf(HasSubstr("Northern Power"), HasSubstr("The audit trail up to 1999-12-31 does not tell of it.\n")));
  EXPECT_THAT(Run({"show", kFile, "1", "--from", "2000-01-01"}).out,
              AllOf(HasSubstr("The audit trail from 2000-01-01 on:\n"), HasSubstr("march.csv")));
  EXPECT_EQ(Run({"show", kFile, "1", "--from", "2000-01-02", "--to", "2000-01-01"}).exitCode, 2);
}

TEST_F(BooksOfMarch, ShowTheLinesOfATransactionToASpreadsheet) {
  const std::string out = Run({"show", kFile, "3", "--csv"}).out;

  EXPECT_THAT(out,
              StartsWith("transaction,type,typeNumber,date,name.id,name.name,documentNumber,memo,confirmed,line,"
                         "account.id,account.number,account.name,amount,lineMemo,request.realm,request.partner,"
                         "request.requestId,request.state,request.stateNumber,request.ofBefore,request.reversesLine,"
                         "request.correctsLine,currency,reverses,reversedBy,corrects,correctedBy,attachments,moves,"
                         "movedBy\n"
                         "3,journal,8,2024-03-31,,,,Birch paid for us,"));
  EXPECT_THAT(out, HasSubstr(",,Utilities,75.50,Heating,1001,Birch Services Company,request-journal,established,3,"
                             "false,,,USD,,,,,,,\n"));
}

TEST_F(BooksOfMarch, TellASpreadsheetWhatATransactionIsLinkedToAndItsPapers) {
  ChangeTheFile(
      "INSERT INTO txn_link (txn_id, kind, earlier_txn_id) VALUES (2, 'reverses', 1), (2, 'corrects', 1), "
      "(3, 'corrects', 1)");
  ChangeTheFile("INSERT INTO txn_attachment (txn_id, reference) VALUES (1, 'power bill.pdf'), (1, 'https://papers/7')");

  EXPECT_THAT(Run({"show", kFile, "1", "--csv"}).out,
              HasSubstr(",request-bill,sent,1,false,,,USD,,2,,2 3,\"power bill.pdf\nhttps://papers/7\",,\n"));
  EXPECT_THAT(Run({"show", kFile, "2", "--csv"}).out, HasSubstr(",established,3,false,,,USD,1,,1,,,,\n"));
}

TEST_F(BooksOfMarch, TellASpreadsheetWhichEntryMovedAnExpense) {
  Done({"journal", "move", kFile, "3", "--expense", "Utilities:Power", "--date", "2024-04-01"});

  EXPECT_THAT(Run({"show", kFile, "3", "--csv"}).out, HasSubstr(",established,3,false,,,USD,,,,,,,4\n"));
  EXPECT_THAT(Run({"show", kFile, "4", "--csv"}).out, HasSubstr(",USD,,,,,,3,\n"));
}

TEST_F(BooksOfMarch, TellASpreadsheetWhichEarlierLineARequestReverses) {
  const std::string earlier = Answer({"transactions", kFile, "--txn", "2"}).at("transactions").at(0).at("line").dump();
  Done({"reverse", kFile, "2", "--date", "2024-04-01"});

  EXPECT_THAT(Run({"show", kFile, "4", "--csv"}).out, HasSubstr(",entered,0,false," + earlier + ",,USD,2,,,,,,\n"));
}

TEST_F(BooksOfMarch, NameATransactionThatThereIsNot) {
  const Outcome unknown = Run({"show", kFile, "4711"});
  const Outcome none = Run({"show", kFile, "bill"});

  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_THAT(unknown.err, HasSubstr("no transaction 4711"));
  EXPECT_EQ(none.exitCode, 2);
  EXPECT_THAT(none.err, HasSubstr("\"bill\""));
}

TEST_F(BooksOfMarch, AreReportedToWhoMayViewAllTypes) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  const Json error = ErrorOf({"balances", kFile, "--user", "Robin"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("what"), "read-balances");
  EXPECT_EQ(error.at("remedy"), "ask-for-the-right");
}

TEST_F(BooksOfMarch, AreNeverListedWiderThanTheTerminal) {
  if (IsWindowsProgram()) GTEST_SKIP() << "an emulated program has no console here";

  const std::vector<std::vector<std::string>> commands = {{"open-items", kFile},
                                                          {"balances", kFile},
                                                          {"register", kFile, "Utilities"},
                                                          {"accounts", kFile},
                                                          {"names", kFile},
                                                          {"users", "list", kFile},
                                                          {"transactions", kFile},
                                                          {"relation", "list", kFile},
                                                          {"open-items", kFile, "--from", "2024-03-16"}};

  for (const unsigned short cells : std::initializer_list<unsigned short>{40, 50, 60, 80}) {
    for (const std::vector<std::string>& command : commands) {
      std::istringstream lines(RunProgramAtATerminal(cells, In("."), command).out);
      for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        const auto isFirstByte = [](char byte) {
          return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
        };
        EXPECT_LE(std::ranges::count_if(line, isFirstByte), cells) << command.front() << ": " << line;
      }
    }
  }
}

TEST_F(BooksOfMarch, TellOfOpenItemsInALittleRoomWhatCannotBeToldFromTheRest) {
  if (IsWindowsProgram()) GTEST_SKIP() << "an emulated program has no console here";

  const std::string text = RunProgramAtATerminal(80, In("."), {"open-items", kFile, "--as-of", "2024-05-01"}).out;
  const std::string narrow = RunProgramAtATerminal(40, In("."), {"open-items", kFile, "--as-of", "2024-05-01"}).out;

  EXPECT_THAT(text, testing::ContainsRegex("Partner +Side +Date +Txn .*Open .*State +Standing"));
  EXPECT_THAT(narrow, testing::ContainsRegex("Partner +Side +Txn +Open"));
}
