#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/company/CompanyFixture.h"

// What the module is told of amounts, and what it says of them, in the company's decimals.

namespace standalone {
namespace {

class TheAmounts : public CompanyFixture {
 protected:
  void CountIn(const char* currency) {
    host_.Request(Access::kWrite, [&] { host_.Settings().Set("home-currency", currency); });
  }

  std::int64_t Read(const char* text) {
    BalType amount{kBefore};
    host_.Request(Access::kRead, [&] { host_.Services().money.String2Dollar(amount, text); });
    return amount.minorUnits;
  }

  std::string Shown(std::int64_t minorUnits) {
    std::array<char, 30> buffer{};
    host_.Request(Access::kRead, [&] {
      host_.Services().money.Money2Str_s(buffer.data(), buffer.size(), BalType{minorUnits}, kMoneyFormatDisplay);
    });
    return buffer.data();
  }

  EdListStatus Booked(const char* amount) {
    return host_.Request(Access::kWrite, [&] {
      const std::int32_t rent = host_.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false}).id;
      const std::int32_t due = host_.Accounts().Create({"Due", KrEnumerations::kOtherCurrentLiability, 0, false}).id;
      const std::int32_t name = host_.Names().Create("Northfield", NameKind::kVendor).id;
      CAccnt credited(host_.Services().accounts, due, kFeatureTypeStandard);
      CAccnt debited(host_.Services().accounts, rent, kFeatureTypeStandard);
      JournalEntryIds ids;
      return host_.Services().journal.CreateGeneralJournalEntry(credited, debited, amount, ids, name, "Rent");
    });
  }
  std::int64_t Debits() { return Count(host_, "SELECT sum(amount) FROM txn_line WHERE amount > 0"); }

  static constexpr std::int64_t kBefore = 4711;

  StandaloneHost host_{path_};
};

TEST_F(TheAmounts, OfDollarsHaveTwoDecimals) {
  EXPECT_EQ(Read("1,234.5"), 123450);
  EXPECT_EQ(Shown(-123450), "-1,234.50");
}

TEST_F(TheAmounts, OfYenHaveNone) {
  CountIn("JPY");

  EXPECT_EQ(Read("1,234"), 1234);
  EXPECT_EQ(Read("1,234.5"), kBefore);
  EXPECT_EQ(Shown(-123450), "-123,450");
}

TEST_F(TheAmounts, OfDinarsHaveThree) {
  CountIn("KWD");

  EXPECT_EQ(Read("1,234.5"), 1234500);
  EXPECT_EQ(Read("1,234.5678"), kBefore);
  EXPECT_EQ(Shown(-123450), "-123.450");
}

TEST_F(TheAmounts, AreThoseOfTheCurrencyThatAnotherProgramHasSet) {
  ASSERT_EQ(Shown(1234), "12.34");
  {
    StandaloneHost other(path_);
    other.Request(Access::kWrite, [&] { other.Settings().Set("home-currency", "JPY"); });
  }

  EXPECT_EQ(Shown(1234), "1,234");
}

TEST_F(TheAmounts, OfABookingAreReadInTheCompanysDecimals) {
  CountIn("KWD");

  EXPECT_EQ(Booked("12.345"), kEdListSuccess);
  EXPECT_EQ(Debits(), 12345);
}

TEST_F(TheAmounts, OfABookingHaveNoMoreDecimalsThanTheCompany) {
  CountIn("JPY");

  EXPECT_EQ(Booked("12.5"), kEdListFailure);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM txn"), 0);
}

}  // namespace
}  // namespace standalone
