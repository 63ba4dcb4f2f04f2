#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "tests/host_contract/HostUnderTest.h"

namespace host_contract {

namespace {

constexpr JournalEntryIds kUntouched{77, 88};

// A company that can book: a due-to account, an expense account and a name.
class Booking {
 public:
  explicit Booking(HostUnderTest& host)
      : host_(host),
        dueTo_(host.SeedAccount("Due to Alder", KrEnumerations::kOtherCurrentLiability, 0, false)),
        expense_(host.SeedAccount("Freight", KrEnumerations::kExpense, 0, false)),
        nameId_(host.SeedName("Northfield Power")) {}

  EdListStatus Book(const char* amount) { return Book(dueTo_, expense_, amount); }

  EdListStatus Book(std::int32_t dueTo, std::int32_t expense, const char* amount) {
    return Book(dueTo, expense, amount, nameId_);
  }

  EdListStatus Book(std::int32_t dueTo, std::int32_t expense, const char* amount, std::int32_t nameId) {
    const HostServices& services = host_.Services();
    CAccnt credited(services.accounts, dueTo, kFeatureTypeStandard);
    CAccnt debited(services.accounts, expense, kFeatureTypeStandard);
    return services.journal.CreateGeneralJournalEntry(credited, debited, amount, ids, nameId, "Northfield Power");
  }

  TargType Line(std::int32_t offset) const {
    return {host_.Services().lines, static_cast<std::int32_t>(ids.second) + offset, kFeatureTypeStandard,
            kReadFailSafeDefault, kTxnTypeJournalEntry};
  }

  std::int32_t DueTo() const { return dueTo_; }
  std::int32_t Expense() const { return expense_; }

  JournalEntryIds ids = kUntouched;

 private:
  HostUnderTest& host_;
  std::int32_t dueTo_;
  std::int32_t expense_;
  std::int32_t nameId_;
};

std::string Text(Money& money, std::int64_t minorUnits) {
  std::array<char, 30> buffer{};
  money.Money2Str_s(buffer.data(), buffer.size(), {minorUnits}, kMoneyFormatDisplay);
  return buffer.data();
}

std::int64_t Read(Money& money, const char* text) {
  BalType amount{-1};
  money.String2Dollar(amount, text);
  return amount.minorUnits;
}

}  // namespace

TEST_P(GeneralJournal, ABookingDebitsTheExpenseLineAndCreditsTheDueToLineAfterIt) {
  Booking booking(*host_);

  ASSERT_EQ(booking.Book("1,234.50"), kEdListSuccess);

  EXPECT_GE(booking.ids.first, 1U);
  EXPECT_EQ(booking.Line(0).GetAmount().minorUnits, 123450);
  EXPECT_STREQ(booking.Line(0).GetAccountName(0, 0), "Freight");
  EXPECT_EQ(booking.Line(1).GetAmount().minorUnits, -123450);
  EXPECT_STREQ(booking.Line(1).GetAccountName(0, 0), "Due to Alder");
}

TEST_P(GeneralJournal, ABookingCarriesADateTheNameAndItsTextAsMemo) {
  Booking booking(*host_);

  ASSERT_EQ(booking.Book("10"), kEdListSuccess);

  EXPECT_TRUE(booking.Line(0).GetDate().ValidDate());
  EXPECT_EQ(booking.Line(0).GetDate(), booking.Line(1).GetDate());
  EXPECT_EQ(booking.Line(0).GetTransactionName().GetName(nullptr, 0).view(), "Northfield Power");
  EXPECT_EQ(booking.Line(0).GetStrMemo().view(), "Northfield Power");
}

TEST_P(GeneralJournal, EachBookingHasItsOwnTransactionAndLines) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);
  const JournalEntryIds first = booking.ids;

  ASSERT_EQ(booking.Book("20"), kEdListSuccess);

  EXPECT_NE(booking.ids.first, first.first);
  EXPECT_GT(booking.ids.second, first.second + 1);
}

TEST_P(GeneralJournal, ANegativeAmountBooksTheOtherWayRound) {
  Booking booking(*host_);

  ASSERT_EQ(booking.Book("-5.5"), kEdListSuccess);

  EXPECT_EQ(booking.Line(0).GetAmount().minorUnits, -550);
  EXPECT_EQ(booking.Line(1).GetAmount().minorUnits, 550);
}

TEST_P(GeneralJournal, ATextThatIsNoAmountBooksNothing) {
  Booking booking(*host_);

  EXPECT_NE(booking.Book(""), kEdListSuccess);
  EXPECT_NE(booking.Book("ten"), kEdListSuccess);
  EXPECT_NE(booking.Book("1.234"), kEdListSuccess);
  EXPECT_NE(booking.Book("12,34.00"), kEdListSuccess);
  EXPECT_NE(booking.Book("99999999999999999999"), kEdListSuccess);
  EXPECT_EQ(booking.ids, kUntouched);
}

TEST_P(GeneralJournal, ADeletedANonPostingOrAMissingAccountTakesNoBooking) {
  Booking booking(*host_);
  const std::int32_t deleted = host_->SeedAccount("Gone", KrEnumerations::kExpense, 0, true);
  const std::int32_t estimates = host_->SeedAccount("Estimates", KrEnumerations::kNonPosting, 0, false);

  EXPECT_NE(booking.Book(booking.DueTo(), deleted, "10"), kEdListSuccess);
  EXPECT_NE(booking.Book(deleted, booking.Expense(), "10"), kEdListSuccess);
  EXPECT_NE(booking.Book(booking.DueTo(), estimates, "10"), kEdListSuccess);
  EXPECT_NE(booking.Book(booking.DueTo(), 4711, "10"), kEdListSuccess);
  EXPECT_EQ(booking.ids, kUntouched);
}

TEST_P(GeneralJournal, ANameThatIsNotThereTakesNoBooking) {
  Booking booking(*host_);

  EXPECT_NE(booking.Book(booking.DueTo(), booking.Expense(), "10", 4711), kEdListSuccess);
  EXPECT_EQ(booking.ids, kUntouched);
}

TEST_P(GeneralJournal, ADeletedEntryTakesItsLinesWithIt) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);

  ASSERT_EQ(Services().journal.DeleteGeneralJournalEntry(booking.ids.first), kEdListSuccess);

  const auto line = static_cast<std::int32_t>(booking.ids.second);
  EXPECT_FALSE(Services().lines.TargExists(line, kViewAny));
  EXPECT_FALSE(Services().lines.TargExists(line + 1, kViewAny));
}

TEST_P(GeneralJournal, TheLinesOfADeletedEntryAreNeverNumberedAgain) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);
  const JournalEntryIds deleted = booking.ids;
  ASSERT_EQ(Services().journal.DeleteGeneralJournalEntry(deleted.first), kEdListSuccess);

  ASSERT_EQ(booking.Book("10"), kEdListSuccess);

  EXPECT_NE(booking.ids.first, deleted.first);
  EXPECT_GT(booking.ids.second, deleted.second + 1);
}

TEST_P(GeneralJournal, AnEntryThatIsNotThereIsNotDeleted) {
  EXPECT_NE(Services().journal.DeleteGeneralJournalEntry(4711), kEdListSuccess);
  EXPECT_NE(Services().journal.DeleteGeneralJournalEntry(0xFFFFFFFFU), kEdListSuccess);
}

TEST_P(GeneralJournal, AnEntryWithAnIntercompanyRowIsDeletedByTheModuleOnly) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);
  const Line line{static_cast<std::int32_t>(booking.ids.first), static_cast<std::int32_t>(booking.ids.second)};
  ASSERT_TRUE(Save(Row(SaveRelation("9130347"), line, "req", kTxnTypeJournalEntry)));

  EXPECT_NE(Services().journal.DeleteGeneralJournalEntry(booking.ids.first), kEdListSuccess);
  EXPECT_TRUE(Services().lines.TargExists(line.targetId, kTxnTypeJournalEntry));
  host_->SetRemovalUnderWay(true);
  EXPECT_EQ(Services().journal.DeleteGeneralJournalEntry(booking.ids.first), kEdListSuccess);
}

TEST_P(GeneralJournal, ThePartnersConfirmationReachesATransactionOfItsTypeOnly) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);
  const auto txnId = static_cast<std::int32_t>(booking.ids.first);

  EXPECT_EQ(Services().journal.UpdateMETransaction(txnId, kTxnTypeJournalEntry), kEdListSuccess);
  EXPECT_NE(Services().journal.UpdateMETransaction(txnId, kTxnTypeBill), kEdListSuccess);
  EXPECT_NE(Services().journal.UpdateMETransaction(4711, kTxnTypeJournalEntry), kEdListSuccess);
}

TEST_P(GeneralJournal, ABookingIsThereAfterTheCompanyIsOpenedAgain) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);

  host_->Reopen();

  EXPECT_EQ(booking.Line(0).GetAmount().minorUnits, 1000);
  EXPECT_EQ(booking.Line(1).GetAmount().minorUnits, -1000);
}

TEST_P(TransactionLine, ALineIsSeenUnderItsOwnTypeAndUnderAnyOnly) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);
  const auto line = static_cast<std::int32_t>(booking.ids.second);

  EXPECT_TRUE(Services().lines.TargExists(line, kViewAny));
  EXPECT_TRUE(Services().lines.TargExists(line, kTxnTypeJournalEntry));
  EXPECT_FALSE(Services().lines.TargExists(line, kTxnTypeBill));
}

TEST_P(TransactionLine, ALineThatIsNotThereAnswersNothing) {
  const TargType line(Services().lines, 4711, kFeatureTypeStandard, kReadFailSafeDefault, kViewAny);

  EXPECT_FALSE(Services().lines.TargExists(4711, kViewAny));
  EXPECT_EQ(line.GetDate(), NullDate());
  EXPECT_EQ(line.GetAmount().minorUnits, 0);
  EXPECT_STREQ(line.GetAccountName(0, 0), "");
  EXPECT_TRUE(line.GetStrMemo().empty());
  EXPECT_FALSE(line.GetTransactionName().IsValid());
}

TEST_P(TransactionLine, AnAccountNameStaysReadableWhileOtherLinesAreOpened) {
  Booking booking(*host_);
  ASSERT_EQ(booking.Book("10"), kEdListSuccess);
  const TargType expense = booking.Line(0);
  const char* const name = expense.GetAccountName(0, 0);

  const TargType dueTo = booking.Line(1);
  const TargType another = booking.Line(1);

  EXPECT_STREQ(name, "Freight");
  EXPECT_STREQ(dueTo.GetAccountName(0, 0), "Due to Alder");
  EXPECT_STREQ(another.GetAccountName(0, 0), "Due to Alder");
}

TEST_P(TransactionLine, ANameLeadsToTheNamesThatItStandsUnder) {
  host_->SeedName("Utilities");
  const std::int32_t child = host_->SeedName("Utilities:Northfield");
  Booking booking(*host_);
  ASSERT_EQ(booking.Book(booking.DueTo(), booking.Expense(), "10", child), kEdListSuccess);

  const CName name = booking.Line(0).GetTransactionName();

  EXPECT_TRUE(name.IsValid());
  EXPECT_EQ(name.GetName(nullptr, 0).view(), "Northfield");
  EXPECT_EQ(name.GetParent().GetName(nullptr, 0).view(), "Utilities");
  EXPECT_FALSE(name.GetParent().GetParent().IsValid());
}

TEST_P(MoneyText, AnAmountIsShownWithTwoDecimalsSeparatorsAndALeadingMinus) {
  Money& money = Services().money;

  EXPECT_EQ(Text(money, 0), "0.00");
  EXPECT_EQ(Text(money, 5), "0.05");
  EXPECT_EQ(Text(money, 123450), "1,234.50");
  EXPECT_EQ(Text(money, -100), "-1.00");
  EXPECT_EQ(Text(money, -123456789), "-1,234,567.89");
}

TEST_P(MoneyText, AnAmountThatIsShownIsReadBackAsItself) {
  Money& money = Services().money;

  EXPECT_EQ(Read(money, "1,234.50"), 123450);
  EXPECT_EQ(Read(money, "-1,234,567.89"), -123456789);
  EXPECT_EQ(Read(money, "0.05"), 5);
}

TEST_P(MoneyText, ATextThatIsNoAmountLeavesTheAmountAsItWas) {
  Money& money = Services().money;

  EXPECT_EQ(Read(money, "abc"), -1);
  EXPECT_EQ(Read(money, ""), -1);
}

TEST_P(Preference, AMissingPreferenceHasACodeOfItsOwn) {
  Util::TString value("as it was");

  const Util::Status status = Services().databasePreferences.GetCompanyDBPreference("MERealmId", value);

  EXPECT_EQ(status.GetStatusCode(), Util::Status::kPreferenceMissing);
  EXPECT_EQ(value.view(), "as it was");
}

TEST_P(Preference, AStoredPreferenceIsReadBackAndMayBeOverwritten) {
  ASSERT_TRUE(Services().databasePreferences.SetCompanyDBPreference("MERealmId", "9130").Succeeded());
  ASSERT_TRUE(Services().databasePreferences.SetCompanyDBPreference("MERealmId", "9131").Succeeded());

  Util::TString value;
  ASSERT_TRUE(Services().databasePreferences.GetCompanyDBPreference("MERealmId", value).Succeeded());

  EXPECT_EQ(value.view(), "9131");
}

TEST_P(Preference, AnEmptyPreferenceIsNotAMissingOne) {
  ASSERT_TRUE(Services().databasePreferences.SetCompanyDBPreference("MERealmId", "").Succeeded());

  Util::TString value("something");
  ASSERT_TRUE(Services().databasePreferences.GetCompanyDBPreference("MERealmId", value).Succeeded());

  EXPECT_TRUE(value.empty());
}

TEST_P(Preference, APreferenceIsThereAfterTheCompanyIsOpenedAgain) {
  ASSERT_TRUE(Services().databasePreferences.SetCompanyDBPreference("MERealmId", "9130").Succeeded());

  host_->Reopen();

  Util::TString value;
  EXPECT_TRUE(Services().databasePreferences.GetCompanyDBPreference("MERealmId", value).Succeeded());
  EXPECT_EQ(value.view(), "9130");
}

TEST_P(Preference, AnAdministratorHasEveryRight) {
  CAccnt account(Services().accounts, kFeatureTypeStandard);

  EXPECT_TRUE(Services().permissions.CurrentUserIsAdminUser());
  EXPECT_TRUE(Services().permissions.FeaturePermissionAvailable(kFeatureJournalEntries, kActionCreate, 0));
  EXPECT_TRUE(Services().permissions.ListPermissionAvailable(kListAccounts, 0, kActionDelete, account, 0, 0));
}

TEST_P(Preference, ACurrencyThatWasJustOpenedIsNotValid) {
  const CCurrency currency(Services().preferences, kFeatureTypeStandard);

  EXPECT_FALSE(currency.IsValid());
}

TEST_P(Preference, TheHomeCurrencyOfTheCompanyHasACode) {
  CCurrency currency(Services().preferences, kFeatureTypeStandard);

  Services().preferences.GetHomeCurrency(currency);

  EXPECT_TRUE(currency.IsValid());
  EXPECT_EQ(currency.GetCode().size(), 3U);
}

}  // namespace host_contract
