#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/books/LinkTable.h"
#include "standalone/export/Journal.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class TheJournalOfACompany : public CompanyFixture {
 protected:
  std::int32_t AddAccount(const std::string& name, std::int16_t type, bool deleted = false) {
    return host_.Request(Access::kWrite, [&] {
      return host_.Accounts().Create({.fullName = name, .type = type, .specialKind = 0, .deleted = deleted}).id;
    });
  }
  // Of one amount, from the second account to the first.
  std::int32_t Post(const NewTransaction& transaction, std::int64_t amount, std::int32_t debit, std::int32_t credit,
                    std::string_view memo = "") {
    return host_.Request(Access::kWrite, [&] {
      TransactionTable& transactions = host_.Transactions();
      const std::int32_t id = transactions.AddHeader(transaction);
      transactions.AddLine(id, {.accountId = debit, .amount = amount, .memo = memo});
      transactions.AddLine(id, {.accountId = credit, .amount = -amount, .memo = ""});
      transactions.Post(id);
      return id;
    });
  }
  static NewTransaction Entry(DateType32 date, std::string_view memo = "") {
    return {.type = kTxnTypeJournalEntry, .date = date, .nameId = 0, .memo = memo, .documentNumber = ""};
  }

  std::string Export(DateType32 from = NullDate(), DateType32 to = NullDate()) {
    return host_.Request(Access::kRead, [&] {
      std::string text;
      counts_ = WriteJournal(host_.Data(), from, to, [&](std::string_view piece) { text += piece; });
      return text;
    });
  }

  // The lines that begin so, without that.
  std::vector<std::string> LinesWith(std::string_view beginning) {
    const std::string journal = Export();
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < journal.size();) {
      const std::size_t end = journal.find('\n', begin);
      const std::string_view line = std::string_view(journal).substr(begin, end - begin);
      if (line.starts_with(beginning)) lines.emplace_back(line.substr(beginning.size()));
      begin = end + 1;
    }
    return lines;
  }

  StandaloneHost host_{path_};
  const std::int32_t bank_ = AddAccount("Checking", KrEnumerations::kBank);
  const std::int32_t power_ = AddAccount("Utilities", KrEnumerations::kExpense);
  JournalCounts counts_;
};

TEST_F(TheJournalOfACompany, HasTheTransactionsByDateAndThenAsTheyWereEntered) {
  Post(Entry(DateType32(2024, 3, 31), "late"), 100, power_, bank_);
  Post({.type = kTxnTypeBill, .date = DateType32(2024, 3, 1), .nameId = 0, .memo = "bill", .documentNumber = ""}, 100,
       power_, bank_);
  Post({.type = kTxnTypeCheck, .date = DateType32(2024, 3, 1), .nameId = 0, .memo = "check", .documentNumber = ""}, 100,
       power_, bank_);
  Post(Entry(DateType32(2023, 12, 31), "early"), 100, power_, bank_);
  Post({.type = kTxnTypeBill, .date = DateType32(2024, 3, 31), .nameId = 0, .memo = "last", .documentNumber = ""}, 100,
       power_, bank_);

  EXPECT_THAT(LinesWith("20"), ElementsAre("23-12-31 (4) | early", "24-03-01 (2) | bill", "24-03-01 (3) | check",
                                           "24-03-31 (1) | late", "24-03-31 (5) | last"));
}

TEST_F(TheJournalOfACompany, OfAPeriodHasItsFirstAndItsLastDay) {
  for (const int day : {1, 2, 3, 4}) Post(Entry(DateType32(2024, 3, day)), 100 * day, power_, bank_);

  const std::string journal = Export(DateType32(2024, 3, 2), DateType32(2024, 3, 3));

  EXPECT_THAT(journal,
              AllOf(HasSubstr("; from 2024-03-02\n; to 2024-03-03\n"), HasSubstr("\n2024-03-02 (2)\n"),
                    HasSubstr("\n2024-03-03 (3)\n"), Not(HasSubstr("2024-03-01")), Not(HasSubstr("2024-03-04"))));
  EXPECT_EQ(counts_.transactions, 2);
  EXPECT_EQ(counts_.lines, 4);
  EXPECT_EQ(counts_.accounts, 2);
}

TEST_F(TheJournalOfACompany, LeavesOutWhatWasNotPosted) {
  host_.Request(Access::kWrite, [&] {
    const std::int32_t id = host_.Transactions().AddHeader(Entry(DateType32(2024, 3, 1), "half-way"));
    host_.Transactions().AddLine(id, {.accountId = power_, .amount = 100, .memo = ""});
  });

  EXPECT_THAT(Export(), Not(HasSubstr("half-way")));
  EXPECT_EQ(counts_.lines, 0);
}

TEST_F(TheJournalOfACompany, CallsADocumentByItsNumber) {
  Post({.type = kTxnTypeBill, .date = DateType32(2024, 3, 1), .nameId = 0, .memo = "", .documentNumber = "INV (7)"},
       100, power_, bank_);

  EXPECT_THAT(LinesWith("2024"), ElementsAre("-03-01 (INV %287%29)"));
  EXPECT_THAT(LinesWith("    ; txn: "), ElementsAre("1"));
}

TEST_F(TheJournalOfACompany, SaysWhichTransactionsBelongTogether) {
  for (int count = 0; count < 3; ++count) Post(Entry(DateType32(2024, 3, 1)), 100, power_, bank_);
  host_.Request(Access::kWrite, [&] {
    host_.Links().Add({.txnId = 2, .kind = LinkKind::kReverses, .earlierTxnId = 1});
    host_.Links().Add({.txnId = 3, .kind = LinkKind::kCorrects, .earlierTxnId = 1});
    host_.Links().Add({.txnId = 3, .kind = LinkKind::kMoves, .earlierTxnId = 2});
  });

  EXPECT_THAT(Export(), AllOf(HasSubstr("    ; txn: 2\n    ; type: journal\n    ; reverses: 1\n    Utilities"),
                              HasSubstr("    ; txn: 3\n    ; type: journal\n    ; corrects: 1\n    ; moves: 2\n")));
}

TEST_F(TheJournalOfACompany, TellsTheNumbersOfAccounts) {
  host_.Request(Access::kWrite, [&] { host_.Accounts().SetNumber(power_, "6100.10"); });

  EXPECT_THAT(Export(), HasSubstr("account Utilities\n    ; type: X\n    ; number: 6100.10\n"));
  EXPECT_THAT(LinesWith("    ; number: "), ElementsAre("6100.10"));
}

TEST_F(TheJournalOfACompany, TellsWhereThePapersOfATransactionAre) {
  const std::int32_t bill = Post(Entry(DateType32(2024, 3, 1)), 100, power_, bank_);
  Post(Entry(DateType32(2024, 3, 2)), 100, power_, bank_);
  host_.Request(Access::kWrite, [&] {
    host_.Attachments().Add(bill, "scans/np 7,8.pdf");
    host_.Attachments().Add(bill, "https://example.org/[7]");
  });

  EXPECT_THAT(LinesWith("    ; attachment: "), ElementsAre("scans/np 7%2C8.pdf", "https://example.org/%5B7]"));
}

TEST_F(TheJournalOfACompany, TellsWhatKindEachAccountIsOf) {
  AddAccount("A payable", KrEnumerations::kAccountsPayable);
  AddAccount("B card", KrEnumerations::kCreditCard);
  AddAccount("C receivable", KrEnumerations::kAccountsReceivable);
  AddAccount("D capital", KrEnumerations::kEquity);
  AddAccount("E sales", KrEnumerations::kIncome);
  AddAccount("F interest", KrEnumerations::kOtherIncome);
  AddAccount("G goods", KrEnumerations::kCostOfGoodsSold);
  AddAccount("H loss", KrEnumerations::kOtherExpense);
  AddAccount("I orders", KrEnumerations::kNonPosting);

  EXPECT_THAT(LinesWith("    ; type: "), ElementsAre("L", "L", "A", "C", "E", "R", "R", "X", "X", "X"));
  EXPECT_THAT(LinesWith("account I"), ElementsAre(" orders"));
}

TEST_F(TheJournalOfACompany, KeepsAccountsOfOneNameApart) {
  const std::int32_t first = AddAccount("Rent", KrEnumerations::kExpense);
  Post(Entry(DateType32(2024, 3, 1)), 100, first, bank_);
  host_.Request(Access::kWrite, [&] { host_.Accounts().SetDeleted(first, true); });
  const std::int32_t second = AddAccount("Rent", KrEnumerations::kExpense);
  Post(Entry(DateType32(2024, 3, 2)), 300, second, bank_);
  AddAccount("Old Rent", KrEnumerations::kExpense, /*deleted=*/true);

  EXPECT_THAT(LinesWith("account "), ElementsAre("Checking", "Old Rent", "Rent (deleted #3)", "Rent", "Utilities"));
  EXPECT_THAT(LinesWith("    Rent"), ElementsAre(" (deleted #3)  1.00 USD", "  3.00 USD"));
}

TEST_F(TheJournalOfACompany, ComesInPiecesWhateverItsLength) {
  const std::string memo(4000, 'm');
  for (int count = 0; count < 100; ++count) Post(Entry(DateType32(2024, 3, 1), memo), 100, power_, bank_, memo);
  std::size_t longest = 0;
  std::size_t all = 0;

  host_.Request(Access::kRead, [&] {
    WriteJournal(host_.Data(), NullDate(), NullDate(), [&](std::string_view piece) {
      longest = std::max(longest, piece.size());
      all += piece.size();
    });
  });

  EXPECT_GT(all, 800'000U);
  EXPECT_LT(longest, 100'000U);
}

class TheCurrencyOfAJournal : public testing::Test {
 protected:
  // With 12345 minor units.
  std::string JournalIn(const std::string& currency) {
    const std::filesystem::path path = folder_ / (currency + ".company");
    NewCompany company;
    company.name = "Birch Services";
    if (!currency.empty()) company.homeCurrency = currency;
    CompanyFile::Create(path, company);
    if (currency.empty()) {
      SqliteDatabase(path, std::chrono::seconds(5)).Execute("UPDATE company SET home_currency = ''");
    }
    StandaloneHost host(path);
    return host.Request(Access::kWrite, [&] {
      const std::int32_t bank =
          host.Accounts()
              .Create({.fullName = "Bank", .type = KrEnumerations::kBank, .specialKind = 0, .deleted = false})
              .id;
      TransactionTable& transactions = host.Transactions();
      const std::int32_t id = transactions.AddHeader(
          {.type = kTxnTypeBill, .date = DateType32(2024, 3, 1), .nameId = 0, .memo = "", .documentNumber = ""});
      transactions.AddLine(id, {.accountId = bank, .amount = 12345, .memo = ""});
      transactions.AddLine(id, {.accountId = bank, .amount = -12345, .memo = ""});
      transactions.Post(id);
      std::string text;
      WriteJournal(host.Data(), NullDate(), NullDate(), [&](std::string_view piece) { text += piece; });
      return text;
    });
  }

  TemporaryFolder folder_;
};

TEST_F(TheCurrencyOfAJournal, DecidesHowManyDecimalsAmountsHave) {
  EXPECT_THAT(JournalIn("JPY"),
              AllOf(HasSubstr("\ncommodity JPY\n"), HasSubstr("  12345 JPY\n"), HasSubstr("  -12345 JPY\n")));
  EXPECT_THAT(JournalIn("KWD"), AllOf(HasSubstr("\ncommodity KWD\n"), HasSubstr("  12.345 KWD\n")));
  EXPECT_THAT(JournalIn("USD"), HasSubstr("  123.45 USD\n"));
}

TEST_F(TheCurrencyOfAJournal, MayBeMissing) {
  EXPECT_THAT(JournalIn(""), AllOf(HasSubstr("  123.45\n"), HasSubstr("  -123.45\n"), Not(HasSubstr("\ncommodity"))));
}

}  // namespace
}  // namespace standalone
