#include "tests/desk/DeskFixture.h"

// Companies whose currency has no hundredths.

namespace desk {
namespace {

using standalone::Decimals;
using standalone::InvalidInput;
using standalone::LineAmount;
using standalone::Money;
using testing::ElementsAre;
using testing::HasSubstr;

class ACompanyThatCounts : public DeskFixture {
 protected:
  explicit ACompanyThatCounts(const std::string& currency) : DeskFixture(currency) { RelateBirch(); }

  std::int32_t Book(std::string_view amount) {
    EntryToRecord entry = Entry("request-1");
    entry.amount = LineAmount(amount);
    return RecordJournalEntry(*company_, entry);
  }

  static RejectionToSave Rejected(std::string_view request, std::string_view amount) {
    return {.partner = standalone::RealmId("1001"),
            .request = standalone::RequestId(request),
            .type = standalone::RejectableType::kBill,
            .amount = standalone::RejectedAmount(amount),
            .partnerTxnId = standalone::PartnerTxnId("B-77")};
  }

  // A bill of which the amount is Birch's.
  void ImportBill(const std::string& amount) {
    Import(*company_, Importable::kTransactions,
           Csv("transaction,type,date,name,memo,account,amount,partner_realm,request_id\n"
               "B1,bill,2024-03-01,Northern Power,,Due from Birch," +
               amount + ",1001,request-bill\nB1,,,,,Payables,-" + amount + ",,\n"));
  }

  Money AmountIn(std::int32_t txnId) { return ListIntercompanyLines(*company_, txnId).at(0).amount.value(); }

  // What a line of the audit trail says of a field, before and after.
  std::vector<std::optional<std::string>> Audited(std::string_view action, std::string_view field) {
    std::vector<std::optional<std::string>> values;
    const AuditQuery all{.user = {}, .action = std::string(action), .period = {NullDate(), NullDate()}, .txnId = {}};
    for (const AuditedDeed& deed : ListAudit(*company_, all)) {
      for (const AuditedChange& change : deed.changes) {
        if (change.field == field) values.insert(values.end(), {change.before, change.after});
      }
    }
    return values;
  }
};

class InYen : public ACompanyThatCounts {
 protected:
  InYen() : ACompanyThatCounts("JPY") {}
};

class InDinars : public ACompanyThatCounts {
 protected:
  InDinars() : ACompanyThatCounts("KWD") {}
};

TEST_F(InYen, ACompanyIsMadeAndSaysSo) {
  EXPECT_EQ(ReadSettings(*company_).decimals, Decimals(0));
  EXPECT_THAT(Audited("company.make", "decimals"), ElementsAre(std::nullopt, "0"));
}

TEST_F(InYen, ABookingIsOverWholeYen) {
  const std::int32_t txnId = Book("1,200");

  EXPECT_EQ(AmountIn(txnId), (Money{1200, "JPY", Decimals(0)}));
  EXPECT_EQ(JsonOf(ListIntercompanyLines(*company_, txnId)).at(0).at("amount"), "1200");
  EXPECT_THAT(Audited("journal.record", "amount"), ElementsAre(std::nullopt, "1200 JPY"));
}

TEST_F(InYen, ABookingWithAPointIsRefusedAndLeavesNothingBehind) {
  const std::string before = WholeFile();
  EntryToRecord entry = Entry("request-1");
  entry.amount = LineAmount("12.50");
  entry.expense = NewAccount{.name = standalone::NewAccountName("Insurance"), .type = 12};
  entry.name = NewVendor{standalone::NewListName("Stone Insurance")};

  EXPECT_EQ(MessageOf<InvalidInput>([&] { RecordJournalEntry(*company_, entry); }),
            "amount \"12.50\" has more decimals than JPY, which has none");

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(InYen, ABookingOverNothingIsShownWithoutDecimals) {
  EXPECT_THAT(RefusalOf([&] { Book("0"); }).why, HasSubstr("the amount is 0, "));
}

TEST_F(InYen, WhoMayNotBookIsToldThatAndNotWhatTheCompanyCountsIn) {
  OpenFor("Robin", {"journal:view"});

  EXPECT_EQ(RefusalOf([&] { Book("12.50"); }).remedy, Remedy::kAskForTheRight);
  EXPECT_EQ(RefusalOf([&] { SaveRejection(*company_, Rejected("request-2", "12.50")); }).remedy,
            Remedy::kAskForTheRight);
}

TEST_F(InYen, AnImportIsOfWholeYen) {
  ImportBill("1200");

  EXPECT_EQ(AmountIn(1), (Money{1200, "JPY", Decimals(0)}));
  EXPECT_EQ(SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"),
                     standalone::TransactionState::kSent)
                .state.number,
            standalone::TransactionState::kSent);
  const AuditQuery ofStates{.user = {}, .action = "transaction.state", .period = {NullDate(), NullDate()}, .txnId = {}};
  EXPECT_THAT(ListAudit(*company_, ofStates).at(0).subject, testing::EndsWith(", 1200 JPY"));
}

TEST_F(InYen, AnImportWithAPointIsRefusedAndLeavesNothingBehind) {
  const std::string before = WholeFile();

  EXPECT_THAT(MessageOf<InvalidInput>([&] { ImportBill("12.50"); }),
              HasSubstr("line 2: The amount \"12.50\" has more decimals than JPY, which has none."));

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(InYen, ARejectionIsOfWholeYen) {
  SaveRejection(*company_, Rejected("request-1", "1,200"));

  EXPECT_EQ(ListRejections(*company_).at(0).amount, (Money{1200, "JPY", Decimals(0)}));
}

TEST_F(InYen, ARejectionWithAPointIsRefusedAndLeavesNothingBehind) {
  const std::string before = WholeFile();

  EXPECT_EQ(MessageOf<InvalidInput>([&] { SaveRejection(*company_, Rejected("request-1", "12.50")); }),
            "amount \"12.50\" has more decimals than JPY, which has none");

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(InYen, ARejectionOfAnotherCurrencyIsShownAsItWasWritten) {
  ChangeSetting(*company_, "home-currency", "EUR");
  SaveRejection(*company_, Rejected("request-1", "12.50"));

  ChangeSetting(*company_, "home-currency", "JPY");

  const Rejection listed = ListRejections(*company_).at(0);
  EXPECT_EQ(listed.amount, std::nullopt);
  EXPECT_EQ(listed.writtenAmount, "12.50");
}

TEST_F(InDinars, ABookingIsFilledUpToThreeDecimals) {
  const std::int32_t txnId = Book("12.5");

  EXPECT_EQ(AmountIn(txnId), (Money{12500, "KWD", Decimals(3)}));
  EXPECT_EQ(JsonOf(ListIntercompanyLines(*company_, txnId)).at(0).at("amount"), "12.500");
  EXPECT_THAT(Audited("journal.record", "amount"), ElementsAre(std::nullopt, "12.500 KWD"));
}

TEST_F(InDinars, ABookingHasNoFourthDecimal) {
  EXPECT_EQ(MessageOf<InvalidInput>([&] { Book("12.3456"); }),
            "amount \"12.3456\" has more decimals than KWD, which has three");
}

TEST_F(InDinars, AnImportIsOfThousandths) {
  ImportBill("12.345");

  EXPECT_EQ(AmountIn(1), (Money{12345, "KWD", Decimals(3)}));
}

TEST_F(InDinars, TheSumOfATransactionIsToldInThousandths) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] {
                Import(*company_, Importable::kTransactions,
                       Csv("transaction,type,date,name,memo,account,amount\n"
                           "B1,bill,2024-03-01,Northern Power,,Utilities,1.5\nB1,,,,,Payables,-1\n"));
              }),
              HasSubstr("sum to 0.500;"));
}

TEST_F(InDinars, AnotherCurrencyBringsItsDecimals) {
  EXPECT_EQ(ChangeSetting(*company_, "home-currency", "JPY").decimals, Decimals(0));

  EXPECT_EQ(ReadSettings(*company_).decimals, Decimals(0));
  EXPECT_THAT(Audited("settings.change", "decimals"), ElementsAre("3", "0"));
  EXPECT_EQ(AmountIn(Book("1200")), (Money{1200, "JPY", Decimals(0)}));
}

TEST_F(InDinars, TheDecimalsStayOnceALineIsBooked) {
  ImportBill("12.345");
  const std::string before = WholeFile();

  EXPECT_EQ(RefusalOf([&] { ChangeSetting(*company_, "home-currency", "JPY"); }).remedy, Remedy::kMakeAnotherCompany);

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(InDinars, ABookingIsInTheDecimalsThatAnotherProgramHasSet) {
  Book("12.345");
  RemoveJournalEntry(*company_, 1);
  {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] { other.Settings().Set("home-currency", "JPY"); });
  }

  EXPECT_EQ(AmountIn(Book("1200")), (Money{1200, "JPY", Decimals(0)}));
}

}  // namespace
}  // namespace desk
