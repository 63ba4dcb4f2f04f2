#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "standalone/import/Import.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

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

  ImportResult Accounts(std::string_view csv) { return ImportAccounts(host_, WriteCsv(csv)); }
  ImportResult Names(std::string_view csv) { return ImportNames(host_, WriteCsv(csv)); }
  ImportResult Transactions(std::string_view rows) {
    return ImportTransactions(host_, WriteCsv(kHeader + std::string(rows)));
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
              AllOf(HasSubstr("line 3: "), HasSubstr("already an account \"rent\"")));
}

TEST_F(AnImport, RefusesASubAccountBeforeItsParent) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts("name,type\nUtilities:Water,Expense\n"); }),
              AllOf(HasSubstr("line 2: "), HasSubstr("add that account first")));
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
  EXPECT_THAT(refusal("name,kind\nx\n"), HasSubstr("line 2: it has 1 fields, but the header has 2"));
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
              AllOf(HasSubstr("line 6: "), HasSubstr("put the rows of one transaction together")));
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

  ImportNames(host_, WriteCsv(csv), [&](std::uint64_t bytesRead, std::uint64_t bytesTotal) {
    EXPECT_EQ(bytesTotal, csv.size());
    reported.push_back(bytesRead);
  });

  EXPECT_GT(reported.size(), 2U);
  EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
  EXPECT_EQ(reported.back(), csv.size());
}

}  // namespace
}  // namespace standalone
