#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/import/Import.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Sha256.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class AnImport : public CompanyFixture {
 protected:
  void Seed() {
    host_.Request(Access::kWrite, [&] {
      for (const char* name : {"Accounts Payable", "Rent", "Due to Alder", "Checking"}) {
        host_.Accounts().Create({name, KrEnumerations::kExpense, 0, false});
      }
      host_.Accounts().Create({"Estimates", KrEnumerations::kNonPosting, 0, false});
      host_.Names().Create("Northfield", NameKind::kVendor);
      DBMultiEntityRelation relation{};
      relation.realmId[0] = '9';
      EXPECT_TRUE(host_.Services().multiEntity.SaveRelation(relation).Succeeded());
    });
  }

  void CountIn(const char* currency) {
    host_.Request(Access::kWrite, [&] { host_.Settings().Set("home-currency", currency); });
  }

  ImportResult Accounts(std::string_view csv) { return ImportAccounts(host_, WriteCsv(csv)); }
  ImportResult Names(std::string_view csv) { return ImportNames(host_, WriteCsv(csv)); }
  ImportResult Transactions(std::string_view rows) {
    return ImportTransactions(host_, WriteCsv(kHeader + std::string(rows)));
  }

  // Passes over what is in the books.
  ImportResult NewOnes(std::string_view rows) {
    return ImportTransactions(host_, WriteCsv(kHeader + std::string(rows)),
                              {.skipKnown = true, .progress = {}, .onRead = {}});
  }

  std::vector<std::string> Faults(const std::function<void()>& import) {
    std::vector<std::string> texts;
    try {
      import();
    } catch (const BadRows& bad) {
      for (const BadRow& row : bad.First()) texts.push_back(std::to_string(row.line) + ": " + row.reason);
    }
    return texts;
  }
  std::vector<std::string> FaultsOf(std::string_view rows) {
    return Faults([&] { Transactions(rows); });
  }

  std::string Refusal(std::string_view rows) {
    return MessageOf<InvalidInput>([&] { Transactions(rows); });
  }

  std::int64_t Number(const char* sql) { return Count(host_, sql); }

  static std::string ThousandNames() {
    std::string csv = "name,kind\n";
    for (int number = 0; number < 1000; ++number) csv += "Vendor " + std::to_string(number) + ",vendor\n";
    return csv;
  }

  static constexpr const char* kTwoBills =
      "B1,bill,2024-01-31,Northfield,,Accounts Payable,-10,,,,\nB1,,,,,Rent,10,,9,request-1,\n"
      "B2,bill,2024-02-29,Northfield,,Accounts Payable,-20,,,,\nB2,,,,,Rent,20,,9,request-2,\n";
  static constexpr const char* kThirdBill =
      "B3,bill,2024-03-31,Northfield,,Accounts Payable,-30,,,,\nB3,,,,,Rent,30,,9,request-3,\n";

  static constexpr const char* kHeader =
      "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n";

  StandaloneHost host_{path_};
};

TEST_F(AnImport, AddsAccountsWithTheirParentsKindsAndMarks) {
  const ImportResult result = Accounts(
      "name,type,special,deleted\n"
      "Utilities,Expense,,\n"
      "Utilities:Water,expense,,no\n"
      "Opening Balance,9,5,\n"
      "Old Checking,Bank,,yes\n");

  EXPECT_EQ(result.accounts, 4);
  host_.Request(Access::kRead, [&] {
    EXPECT_NE(host_.Accounts().Require("Utilities:Water").parentId, 0);
    EXPECT_EQ(host_.Accounts().Require("Opening Balance").specialKind, 5);
    EXPECT_EQ(host_.Accounts().List(/*withDeleted=*/true).size(), 4U);
    EXPECT_EQ(host_.Accounts().List().size(), 3U);
  });
}

TEST_F(AnImport, TakesColumnsInAnyOrderAndLeavesOptionalOnesOut) {
  EXPECT_EQ(Accounts("type,name\nBank,Checking\n").accounts, 1);
}

TEST_F(AnImport, OfAFileWithABadRowChangesNothingAndNamesFileLineAndReason) {
  const std::string message = MessageOf<InvalidInput>([&] { Accounts("name,type\nRent,Expense\nWater,Wine\n"); });

  EXPECT_THAT(message, AllOf(HasSubstr("rows.csv, line 3: "), HasSubstr("\"Wine\"")));
  EXPECT_EQ(Number("SELECT count(*) FROM account"), 0);
}

TEST_F(AnImport, RefusesAnAccountThatIsThereAlready) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts("name,type\nRent,Expense\nrent,Expense\n"); }),
              AllOf(HasSubstr("line 3: "), HasSubstr("already an account \"Rent\"")));
}

TEST_F(AnImport, RefusesASubAccountBeforeItsParent) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts("name,type\nUtilities:Water,Expense\n"); }),
              AllOf(HasSubstr("line 2: "), HasSubstr("add that account first")));
}

TEST_F(AnImport, OfACompanyWithoutDecimalsIsOfWholeOnes) {
  Seed();
  CountIn("JPY");

  Transactions("B1,bill,2024-01-31,,,Accounts Payable,\"-1,200\",,,,\nB1,,,,,Rent,1200,,,,\n");

  EXPECT_EQ(Number("SELECT sum(amount) FROM txn_line WHERE amount > 0"), 1200);
}

TEST_F(AnImport, OfACompanyWithThreeDecimalsIsFilledUpToThese) {
  Seed();
  CountIn("KWD");

  Transactions("B1,bill,2024-01-31,,,Accounts Payable,-12.345,,,,\nB1,,,,,Rent,12.3,,,,\nB1,,,,,Rent,0.045,,,,\n");

  EXPECT_EQ(Number("SELECT sum(amount) FROM txn_line WHERE amount > 0"), 12345);
}

TEST_F(AnImport, TellsEveryRowWithMoreDecimalsThanTheCompanyHas) {
  Seed();
  CountIn("JPY");

  EXPECT_THAT(FaultsOf("B1,bill,2024-01-31,,,Accounts Payable,-12.50,,,,\nB1,,,,,Rent,12.5,,,,\n"),
              ElementsAre("2: The amount \"-12.50\" has more decimals than JPY, which has none.",
                          "3: The amount \"12.5\" has more decimals than JPY, which has none."));
  EXPECT_EQ(Number("SELECT count(*) FROM txn"), 0);
}

TEST_F(AnImport, AddsAccountsWithTheirNumbers) {
  Accounts("name,type,number\nRent,Expense,4000\nRent:Hall,Expense,4000.10\nWater,Expense,\n");

  host_.Request(Access::kRead, [&] {
    EXPECT_EQ(host_.Accounts().Require("4000.10").fullName, "Rent:Hall");
    EXPECT_EQ(host_.Accounts().Require("Water").number, "");
  });
}

TEST_F(AnImport, RefusesAnAccountNumberThatIsTakenOrNone) {
  EXPECT_THAT(
      Faults([&] {
        Accounts("name,type,number\nRent,Expense,4000\nWater,Expense,4000\nGas,Expense,4000-\nOil,Expense,A1\n");
      }),
      ElementsAre(HasSubstr("3: The account \"Rent\" has the number 4000 already"),
                  HasSubstr("4: The account number \"4000-\" is none"),
                  HasSubstr("5: The account number \"A1\" is none")));
}

TEST_F(AnImport, TakesAnAccountByItsNumberAndByItsMarkedRecordNumber) {
  Seed();
  std::int32_t checking = 0;
  host_.Request(Access::kWrite, [&] {
    checking = host_.Accounts().Require("Checking").id;
    host_.Accounts().SetNumber(host_.Accounts().Require("Rent").id, "6010");
  });

  Transactions("T1,check,2024-01-05,Northfield,Rent,#" + std::to_string(checking) +
               ",-10.00,,,,\nT1,,,,,6010,10.00,,,,\n");

  host_.Request(Access::kRead, [&] {
    const std::vector<PostedLine> lines = host_.Transactions().LinesOf(1);
    EXPECT_EQ(lines.at(0).accountId, checking);
    EXPECT_EQ(lines.at(1).accountId, host_.Accounts().Require("Rent").id);
  });
}

TEST_F(AnImport, NamesTheRowWhoseAccountMayBeEitherOfTwo) {
  Seed();
  host_.Request(Access::kWrite, [&] {
    const std::int32_t rent = host_.Accounts().Require("Rent").id;
    host_.Accounts().SetNumber(host_.Accounts().Require("Checking").id, std::to_string(rent));
  });

  EXPECT_THAT(FaultsOf("T1,check,2024-01-05,Northfield,Rent,2,-10.00,,,,\nT1,,,,,Due to Alder,10.00,,,,\n"),
              ElementsAre(AllOf(StartsWith("2: \"2\" is the number of the account \"Checking\""),
                                HasSubstr("record number of the account \"Rent\""))));
}

TEST_F(AnImport, CountsNamesThatAreCalledAsOthersAndTellsTheFirst) {
  Names("name,kind\nCaf\u00e9,vendor\nHollis,vendor\n");

  std::string rows = "name,kind\nCAF\u00c9,vendor\nHollins,vendor\n";
  for (int number = 0; number < 11; ++number) {
    rows += "\u00c4rzte " + std::to_string(number) + ",other\nA\u0308rzte " + std::to_string(number) + ",other\n";
  }
  const ImportResult result = Names(rows);

  EXPECT_EQ(result.names, 24);
  EXPECT_EQ(result.alikeCount, 12);
  ASSERT_EQ(result.alike.size(), 10U);
  EXPECT_EQ(result.alike[0].name, "CAF\u00c9");
  EXPECT_EQ(result.alike[0].other, "Caf\u00e9");
  EXPECT_EQ(result.alike[1].name, "A\u0308rzte 0");
  EXPECT_EQ(result.alike[1].other, "\u00c4rzte 0");
}

TEST_F(AnImport, TellsNoAccountThatIsCalledAsOneMarkedDeletedIs) {
  const ImportResult result = Accounts(
      "name,type,deleted\nCaf\u00e9,Expense,yes\nCAF\u00c9,Expense,\nStra\u00dfe,Expense,\nSTRASSE,Expense,\n");

  EXPECT_EQ(result.alikeCount, 1);
  EXPECT_EQ(result.alike.at(0).name, "STRASSE");
  EXPECT_EQ(result.alike.at(0).other, "Stra\u00dfe");
}

TEST_F(AnImport, AddsNamesWithTheirKinds) {
  EXPECT_EQ(Names("name,kind\n\"Hollis and Dean, CPAs\",vendor\nTri-County,customer\nTri-County:West,customer\n").names,
            3);

  host_.Request(Access::kRead,
                [&] { EXPECT_EQ(host_.Names().Require("Hollis and Dean, CPAs").kind, NameKind::kVendor); });
}

TEST_F(AnImport, ReadsQuotesLineBreaksAndAByteOrderMark) {
  Seed();

  const ImportResult result =
      ImportTransactions(host_, WriteCsv("\xEF\xBB\xBFtransaction,type,date,name,memo,account,amount\r\n"
                                         "1,bill,2024-01-01,Northfield,\"a \"\"quoted\"\" memo\",Rent,\"1,234.50\"\r\n"
                                         "\r\n"
                                         "1,,,,,Accounts Payable,-1234.5\r\n"));

  EXPECT_EQ(result.transactions, 1);
  EXPECT_EQ(Number("SELECT count(*) FROM txn WHERE memo = 'a \"quoted\" memo'"), 1);
}

TEST_F(AnImport, CountsLinesInTheFileForRowsAfterALineBreakInQuotes) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Names("name,kind\n\"two\nlines\",vendor\nx,friend\n"); }),
              HasSubstr("line 2: "));
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Names("name,kind\n\"x\",\"\nfriend\"\n"); }), HasSubstr("line 2: "));
}

TEST_F(AnImport, RefusesAFileThatIsNoCsvOfItsKind) {
  const auto refusal = [&](std::string_view csv) {
    return MessageOf<InvalidInput>([&] { Names(csv); });
  };

  EXPECT_THAT(refusal(""), HasSubstr("there is no header row"));
  EXPECT_THAT(refusal("name\nx\n"), HasSubstr("the column kind is missing"));
  EXPECT_THAT(refusal("name,kind,color\n"), HasSubstr("the column \"color\" is not known"));
  EXPECT_THAT(refusal("name,kind,name\n"), HasSubstr("comes twice"));
  EXPECT_THAT(refusal("name,kind\nx\n"), HasSubstr("line 2: it has 1 field, but the header has 2"));
  EXPECT_THAT(refusal("name,kind\nHollis, CPAs,vendor\n"), HasSubstr("it has 3 fields"));
  EXPECT_THAT(refusal("name,kind\n\"x,vendor\n"), HasSubstr("line 2: a field begins with a double quote"));
  EXPECT_THAT(refusal("name,kind\n\"x\"y,vendor\n"), HasSubstr("text follows the closing quote"));
  EXPECT_THAT(refusal("name,kind\nx\"y,vendor\n"), HasSubstr("a double quote stands inside"));
  EXPECT_THAT(refusal("name,kind\n\xFF,vendor\n"), HasSubstr("not UTF-8"));
  EXPECT_THAT(refusal("name,kind\nx\ty,vendor\n"), HasSubstr("control character"));
  EXPECT_THAT(MessageOf<InvalidInput>([&] { ImportNames(host_, folder_ / "missing.csv"); }),
              HasSubstr("There is no file"));
}

TEST_F(AnImport, OfAHeaderAloneAddsNothing) {
  EXPECT_EQ(Names("name,kind\n").rows, 0);
  EXPECT_EQ(Transactions("").rows, 0);
}

TEST_F(AnImport, PostsBillsChecksAndJournalEntries) {
  Seed();

  const ImportResult result = Transactions(
      "B1,bill,2024-01-31,Northfield,January,Accounts Payable,-6400.00,,,,\n"
      "B1,bill,2024-01-31,Northfield,January,Rent,6400.00,office,,,\n"
      "C1,check,2024-02-01,,,Checking,-10,,,,\n"
      "C1,,,,,Rent,10,,,,\n"
      "J1,journal,2024-02-02,,,Rent,5,,,,\n"
      "J1,,,,,Checking,-5,,,,\n");

  EXPECT_EQ(result.transactions, 3);
  EXPECT_EQ(result.lines, 6);
  EXPECT_EQ(Number("SELECT count(*) FROM txn WHERE posted = 1"), 3);
  EXPECT_EQ(Number("SELECT sum(amount) FROM txn_line WHERE amount > 0"), 641500);
  EXPECT_EQ(Number("SELECT date FROM txn WHERE type = 9"), 2024 * 65536 + 1 * 256 + 31);
}

TEST_F(AnImport, MakesIntercompanyRowsForTheLinesThatNameAPartner) {
  Seed();

  const ImportResult result = Transactions(
      "B1,bill,2024-01-31,Northfield,,Rent,10,,9,req-1,1\n"
      "B1,,,,,Accounts Payable,-10,,,,\n"
      "J1,journal,2024-02-02,,,Rent,5,,9,req-2,\n"
      "J1,,,,,Due to Alder,-5,,,,\n");

  EXPECT_EQ(result.intercompanyRows, 2);
  host_.Request(Access::kRead, [&] {
    DBMultiEntityTransaction row{};
    ASSERT_TRUE(host_.Services().multiEntity.GetTransactionWithRequestId(1, "req-1", row).Succeeded());
    EXPECT_EQ(row.state, 1);
    EXPECT_EQ(row.txnType, kTxnTypeBill);
    ASSERT_TRUE(host_.Services().multiEntity.GetTransactionWithRequestId(1, "req-2", row).Succeeded());
    EXPECT_EQ(row.state, 0);
    const TargType dueTo(host_.Services().lines, row.targetId + 1, kFeatureTypeStandard, kReadFailSafeDefault,
                         kTxnTypeJournalEntry);
    EXPECT_STREQ(dueTo.GetAccountName(0, 0), "Due to Alder");
  });
}

TEST_F(AnImport, TakesTheStateOfAnIntercompanyLineByNameOrNumber) {
  Seed();

  Transactions(
      "B1,bill,2024-01-31,,,Rent,10,,9,req-0,entered\n"
      "B1,,,,,Rent,10,,9,req-1,sent\n"
      "B1,,,,,Rent,10,,9,req-2,2\n"
      "B1,,,,,Rent,10,,9,req-3,established\n"
      "B1,,,,,Rent,10,,9,req-5,closed\n"
      "B1,,,,,Accounts Payable,-50,,,,\n");

  EXPECT_EQ(Number("SELECT sum(request_id = 'req-' || state) FROM me_transaction"), 5);
}

TEST_F(AnImport, RefusesTransactionsThatCannotBePosted) {
  Seed();

  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,10,,,,\nB1,,,,,Accounts Payable,-9.99,,,,\n"),
              AllOf(HasSubstr("line 2: "), HasSubstr("sum to 0.01")));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,0,,,,\n"), HasSubstr("has one row only"));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Estimates,0,,,,\n"), HasSubstr("non-posting"));
  EXPECT_EQ(Number("SELECT count(*) FROM txn"), 0);
}

TEST_F(AnImport, NamesTheFirstRowOfATransactionThatCannotBePosted) {
  Seed();

  const std::string message = Refusal(
      "A,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Accounts Payable,-2,,,,\n"
      "B,bill,2024-01-31,,,Rent,1,,,,\nB,,,,,Accounts Payable,-1,,,,\n");

  EXPECT_THAT(message,
              EndsWith("rows.csv, line 2: The amounts of the transaction \"A\" sum to -1.00; debits and credits "
                       "must sum to zero."));
  EXPECT_THAT(message, Not(HasSubstr("line 4")));
}

TEST_F(AnImport, RefusesRowsWithBadValues) {
  Seed();

  EXPECT_THAT(Refusal("B1,loan,2024-01-31,,,Rent,10,,,,\n"), HasSubstr("line 2: The transaction type \"loan\""));
  EXPECT_THAT(Refusal("B1,bill,31.1.2024,,,Rent,10,,,,\n"), HasSubstr("\"31.1.2024\""));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,Nobody,,Rent,10,,,,\n"), HasSubstr("There is no name \"Nobody\""));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Wine,10,,,,\n"), HasSubstr("There is no account \"Wine\""));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,ten,,,,\n"), HasSubstr("The amount \"ten\""));
  EXPECT_THAT(Refusal(",bill,2024-01-31,,,Rent,10,,,,\n"), HasSubstr("The key transaction is empty"));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,10,,8,req,\n"), HasSubstr("no relation with the partner \"8\""));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,10,,9,req,old\n"), HasSubstr("The state \"old\""));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,10,,9,req,4\n"),
              AllOf(HasSubstr("The state \"4\""), HasSubstr("came-back (2)")));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,10,,,req,\n"), HasSubstr("no partner_realm"));
  EXPECT_THAT(Refusal("B1,bill,2024-01-31,,,Rent,10,,9," + std::string(37, 'q') + ",\n"), HasSubstr("too long"));
}

TEST_F(AnImport, RefusesRowsOfOneTransactionThatStandApartOrDisagree) {
  Seed();

  EXPECT_THAT(Refusal("A,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Accounts Payable,-1,,,,\n"
                      "B,bill,2024-01-31,,,Rent,1,,,,\nB,,,,,Accounts Payable,-1,,,,\n"
                      "A,bill,2024-01-31,,,Rent,1,,,,\n"),
              HasSubstr("The rows of the transaction \"A\" stand apart: lines 2 and 6; put the rows of one"));
  EXPECT_THAT(Refusal("A,bill,2024-01-31,,,Rent,1,,,,\nA,,2024-02-01,,,Accounts Payable,-1,,,,\n"),
              AllOf(HasSubstr("line 3: "), HasSubstr("differs from \"2024-01-31\"")));
}

TEST_F(AnImport, RefusesAnIntercompanyLineOfAJournalEntryWithoutTheDueToLineAfterIt) {
  Seed();

  EXPECT_THAT(Refusal("J,journal,2024-01-31,,,Due to Alder,-1,,,,\nJ,,,,,Rent,1,,9,req,\n"),
              HasSubstr("the row of the due-to account must follow"));
}

TEST_F(AnImport, RefusesARequestIdThatAnotherJournalEntryWithThatPartnerHas) {
  Seed();

  EXPECT_THAT(Refusal("J,journal,2024-01-31,,,Rent,1,,9,req,\nJ,,,,,Checking,-1,,,,\n"
                      "K,journal,2024-01-31,,,Rent,1,,9,req,\nK,,,,,Checking,-1,,,,\n"),
              AllOf(HasSubstr("line 4: "), HasSubstr("\"req\"")));
}

TEST_F(AnImport, MayBeRepeatedAfterARefusal) {
  Seed();
  Refusal("A,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Accounts Payable,-2,,,,\n");

  EXPECT_EQ(Transactions("A,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Accounts Payable,-1,,,,\n").transactions, 1);
  EXPECT_EQ(Transactions("A,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Accounts Payable,-1,,,,\n").transactions, 1);
}

TEST_F(AnImport, ReportsItsProgressUpToTheEndOfTheFile) {
  const std::string csv = ThousandNames();
  std::vector<std::uint64_t> reported;

  const auto report = [&](std::uint64_t bytesRead, std::uint64_t bytesTotal) {
    EXPECT_EQ(bytesTotal, csv.size());
    reported.push_back(bytesRead);
  };
  ImportNames(host_, WriteCsv(csv), {.skipKnown = false, .progress = report, .onRead = {}});

  EXPECT_GT(reported.size(), 2U);
  EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
  EXPECT_EQ(reported.back(), csv.size());
}

TEST_F(AnImport, RefusesATransactionWhoseRequestIsInTheBooks) {
  Seed();
  Transactions(kTwoBills);

  EXPECT_THAT(FaultsOf(std::string(kTwoBills) + kThirdBill),
              ElementsAre(AllOf(StartsWith("3: "), HasSubstr("\"request-1\""), HasSubstr("in transaction 1;")),
                          AllOf(StartsWith("5: "), HasSubstr("\"request-2\""), HasSubstr("in transaction 2;"))));
  EXPECT_EQ(Number("SELECT count(*) FROM txn"), 2);
}

TEST_F(AnImport, OfAFileThatHasGrownPassesOverWhatIsInTheBooks) {
  Seed();
  Transactions(kTwoBills);

  const ImportResult result = NewOnes(std::string(kTwoBills) + kThirdBill);

  EXPECT_EQ(result.rows, 6);
  EXPECT_EQ(result.passedOver, 2);
  EXPECT_EQ(result.transactions, 1);
  EXPECT_EQ(result.lines, 2);
  EXPECT_EQ(result.intercompanyRows, 1);
  EXPECT_EQ(result.transactionIds.first, 3);
  EXPECT_EQ(result.transactionIds.last, 3);
  EXPECT_EQ(Number("SELECT sum(amount) FROM txn_line WHERE amount > 0"), 6000);
  EXPECT_EQ(Number("SELECT max(id) FROM txn_line"), 6);
}

TEST_F(AnImport, PassesOverATransactionInTheBooksWhateverElseItsRowsSay) {
  Seed();
  Transactions(kTwoBills);

  const ImportResult result = NewOnes(
      "B1,bill,2024-01-31,Nobody,,Closed Account,-10,,,,\nB1,,,,,Rent,ten,,9,request-1,\n"
      "B2,bill,2024-02-29,,,Rent,20,,9,request-2,\n");

  EXPECT_EQ(result.passedOver, 2);
  EXPECT_EQ(result.transactions, 0);
}

TEST_F(AnImport, DoesNotRecogniseATransactionWithoutARequest) {
  Seed();
  const char* const bill = "A,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Accounts Payable,-1,,,,\n";
  Transactions(bill);

  const ImportResult result = NewOnes(bill);

  EXPECT_EQ(result.passedOver, 0);
  EXPECT_EQ(result.transactions, 1);
}

TEST_F(AnImport, RefusesATransactionOfWhoseRequestsSomeAreInTheBooks) {
  Seed();
  Transactions(kTwoBills);

  EXPECT_THAT(Faults([&] {
                NewOnes(
                    "B1,bill,2024-01-31,,,Accounts Payable,-10,,,,\nB1,,,,,Rent,4,,9,request-1,\n"
                    "B1,,,,,Rent,6,,9,request-new,\n");
              }),
              ElementsAre(AllOf(StartsWith("3: "), HasSubstr("\"request-1\""), HasSubstr("other requests"))));
}

TEST_F(AnImport, RefusesTwoTransactionsOfAFileWithOneRequest) {
  Seed();

  EXPECT_THAT(FaultsOf(std::string(kThirdBill) +
                       "\nC1,check,2024-01-31,,,Checking,-10,,,,\n\nC1,,,,,Rent,10,,9,request-1,\n"
                       "B1,bill,2024-02-29,,,Rent,20,,9,request-1,\nB1,,,,,Accounts Payable,-20,,,,\n"),
              ElementsAre(AllOf(StartsWith("8: "), HasSubstr("\"request-1\""), HasSubstr("begins in line 5 "))));
}

TEST_F(AnImport, TakesABillWithTwoLinesOfOneRequest) {
  Seed();

  const ImportResult result = Transactions(
      "B1,bill,2024-01-31,,,Accounts Payable,-10,,,,\nB1,,,,,Rent,4,,9,request-1,\nB1,,,,,Rent,6,,9,request-1,\n");

  EXPECT_EQ(result.intercompanyRows, 2);
}

TEST_F(AnImport, RefusesAJournalEntryWithTwoLinesOfOneRequest) {
  Seed();

  EXPECT_THAT(FaultsOf("J,journal,2024-01-31,,,Rent,1,,9,req,\nJ,,,,,Due to Alder,-1,,,,\n"
                       "J,,,,,Rent,2,,9,req,\nJ,,,,,Due to Alder,-2,,,,\n"),
              ElementsAre(AllOf(StartsWith("4: "), HasSubstr("\"req\""))));
}

TEST_F(AnImport, NamesAllBadRowsOfAFile) {
  EXPECT_THAT(Faults([&] { Names("name,kind\nA,vendor\nB,friend\nC,vendor,\n\xFF,vendor\nD,vendor\nA,vendor\n"); }),
              ElementsAre(AllOf(StartsWith("3: "), HasSubstr("\"friend\"")), StartsWith("4: it has 3 fields"),
                          AllOf(StartsWith("5: "), HasSubstr("UTF-8")),
                          AllOf(StartsWith("7: "), HasSubstr("already a name \"A\""))));
  EXPECT_EQ(Number("SELECT count(*) FROM name"), 0);
}

TEST_F(AnImport, NamesTheFirstHundredBadRowsAndCountsTheOthers) {
  std::string csv = "name,kind\n";
  for (int number = 0; number < 130; ++number) csv += "Vendor " + std::to_string(number) + ",friend\n";

  std::uint64_t more = 0;
  std::uint64_t last = 0;
  std::string message;
  try {
    Names(csv);
  } catch (const BadRows& bad) {
    more = bad.More();
    last = bad.First().back().line;
    message = bad.what();
  }

  EXPECT_EQ(more, 30U);
  EXPECT_EQ(last, 101U);
  EXPECT_THAT(message, AllOf(HasSubstr("rows.csv has 130 faults:\n  line 2: "), EndsWith("and 30 more.")));
}

TEST_F(AnImport, DoesNotComplainAboutSubAccountsOfABadRow) {
  EXPECT_THAT(
      Faults([&] {
        Accounts(
            "name,type\nUtilities,Wine\nutilities:Water,Expense\nUtilities:Water:Hot,Expense\n"
            "Utilities:Power,Beer\nTravel:Air,Expense\n");
      }),
      ElementsAre(AllOf(StartsWith("2: "), HasSubstr("\"Wine\"")), AllOf(StartsWith("5: "), HasSubstr("\"Beer\"")),
                  AllOf(StartsWith("6: "), HasSubstr("add that account first"))));
}

TEST_F(AnImport, DoesNotComplainAboutSubNamesOfARowThatCannotBeTold) {
  EXPECT_THAT(Faults([&] { Names("name,kind\nHollis, CPAs,vendor\nHollis:West,vendor\n"); }),
              ElementsAre(StartsWith("2: it has 3 fields")));
}

TEST_F(AnImport, ComplainsAboutSubAccountsOfAnAccountThatIsThere) {
  Accounts("name,type\nUtilities,Expense\n");

  EXPECT_THAT(Faults([&] { Accounts("name,type\nUtilities,Expense\nUtilities:Water,Bank\n"); }),
              ElementsAre(HasSubstr("already an account"), HasSubstr("same type")));
}

TEST_F(AnImport, NamesEachBadRowOfATransactionAndNothingThatFollowsFromThem) {
  Seed();

  EXPECT_THAT(FaultsOf("B1,bill,31.1.2024,,,Rent,10,,,,\nB1,,,,,Wine,-4,,,,\nB1,,,,,Rent,five,,,,\n"
                       "C1,check,2024-01-31,,,Checking,-10,,,,\nC1,,,,,Rent,9,,,,\n"),
              ElementsAre(AllOf(StartsWith("2: "), HasSubstr("31.1.2024")), AllOf(StartsWith("3: "), HasSubstr("Wine")),
                          AllOf(StartsWith("4: "), HasSubstr("five")), AllOf(StartsWith("5: "), HasSubstr("-1.00"))));

  EXPECT_THAT(
      FaultsOf("J1,journal,2024-01-31,,,Rent,10,,no-such-partner,r-1,\nJ1,,,,,Checking,-10,,,,\n"
               "J2,journal,2024-01-31,,,Rent,10,,no-such-partner,r-2,\nJ2,,2024-02-01,,,Checking,-10,,,,\n"
               "J3,journal,31.1.2024,,,Rent,10,,no-such-partner,r-3,\nJ3,,2024-01-31,,,Checking,-10,,,,\n"),
      ElementsAre(AllOf(StartsWith("2: "), HasSubstr("partner")), AllOf(StartsWith("4: "), HasSubstr("partner")),
                  AllOf(StartsWith("5: "), HasSubstr("differs from \"2024-01-31\"")),
                  AllOf(StartsWith("6: "), HasSubstr("partner"))));
}

TEST_F(AnImport, DoesNotComplainAboutTransactionsAroundARowThatCannotBeTold) {
  Seed();

  EXPECT_THAT(FaultsOf("B1,bill,2024-01-31,,,Rent,10,,,,\n,,,,,Accounts Payable,-10,,,,\n"
                       "too,few\n"
                       "C1,,,,,Rent,10,,,,\n"
                       "D1,bill,2024-01-31,,,Rent,10,,,,\nD1,,,,,Accounts Payable,-9,,,,\n"),
              ElementsAre(HasSubstr("3: The key transaction is empty"), StartsWith("4: it has 2 fields"),
                          AllOf(StartsWith("6: "), HasSubstr("sum to 1.00"))));
}

TEST_F(AnImport, NamesBadRowsBeforeAQuoteThatIsNeverClosed) {
  Seed();

  EXPECT_THAT(
      FaultsOf("B1,bill,2024-01-31,,,Wine,10,,,,\nB1,,,,,Rent,-9,\"open,,,\n"),
      ElementsAre(AllOf(StartsWith("2: "), HasSubstr("Wine")), AllOf(StartsWith("3: "), HasSubstr("never closed"))));
}

TEST_F(AnImport, NamesRowsOfOneTransactionThatStandApartRatherThanTheirSums) {
  Seed();

  EXPECT_THAT(FaultsOf("A,bill,2024-01-31,,,Rent,1,,,,\n"
                       "B,bill,2024-01-31,,,Rent,1,,,,\n"
                       "A,,,,,Accounts Payable,-1,,,,\nB,,,,,Accounts Payable,-1,,,,\nA,,,,,Rent,0,,,,\n"),
              ElementsAre(AllOf(StartsWith("2: "), HasSubstr("\"A\" stand apart: lines 2 and 4;")),
                          AllOf(StartsWith("3: "), HasSubstr("\"B\" stand apart: lines 3 and 5;"))));
}

TEST_F(AnImport, CountsRowsThatStandApartOnceBeyondTheFirstHundredToo) {
  Seed();
  std::string rows;
  for (int number = 0; number < 100; ++number) rows += "T" + std::to_string(number) + ",loan,,,,Rent,1,,,,\n";
  rows += "A,bill,2024-01-31,,,Rent,1,,,,\nB,bill,2024-01-31,,,Rent,1,,,,\nA,,,,,Rent,-1,,,,\n";

  EXPECT_THAT(Refusal(rows), AllOf(HasSubstr(" has 102 faults:"), EndsWith("and 2 more.")));
}

TEST_F(AnImport, TellsTheFilesShaBeforeItsFaults) {
  std::string told;
  ImportOptions options;
  options.onRead = [&](const std::string& sha256) {
    told = sha256;
  };

  EXPECT_THROW(ImportNames(host_, WriteCsv("name,kind\nA,friend\n"), options), BadRows);

  EXPECT_EQ(told, Sha256Of("name,kind\nA,friend\n"));
}

TEST_F(AnImport, ReadsWhatAStreamHandsOutBitByBit) {
  const std::string csv = "name,kind\nA,vendor\n\"B, C\",customer\n";
  std::size_t at = 0;
  const auto read = [&](char* into, std::size_t) -> std::size_t {
    if (at == csv.size()) return 0;
    *into = csv[at++];
    return 1;
  };
  std::vector<std::uint64_t> totals;
  ImportOptions options;
  options.progress = [&](std::uint64_t, std::uint64_t total) {
    totals.push_back(total);
  };

  const ImportResult result = ImportNames(host_, CsvSource("standard input", read), options);

  EXPECT_EQ(result.names, 2);
  EXPECT_EQ(result.sha256, Sha256Of(csv));
  EXPECT_THAT(totals, testing::Each(0U));
}

TEST_F(AnImport, NamesTheStreamWithTheBadRow) {
  bool isRead = false;
  const auto read = [&](char* into, std::size_t) -> std::size_t {
    return std::exchange(isRead, true) ? 0 : std::string_view("name\n").copy(into, 5);
  };

  EXPECT_THAT(MessageOf<BadRows>([&] { ImportNames(host_, CsvSource("standard input", read)); }),
              StartsWith("standard input, line 1: "));
}

TEST_F(AnImport, SaysThatAFolderIsNone) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { ImportNames(host_, folder_ / "."); }), HasSubstr("is a folder"));
}

}  // namespace
}  // namespace standalone
