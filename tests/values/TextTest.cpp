#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Characters.h"
#include "standalone/values/Currency.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Text.h"
#include "tests/support/Thrown.h"

namespace standalone {
namespace {

using testing::Eq;
using testing::HasSubstr;
using testing::Optional;

TEST(Amount, IsReadWithSignSeparatorsAndUpToItsDecimals) {
  EXPECT_THAT(ParseAmount("0", kTwoDecimals), Optional(0));
  EXPECT_THAT(ParseAmount("12", kTwoDecimals), Optional(1200));
  EXPECT_THAT(ParseAmount("12.5", kTwoDecimals), Optional(1250));
  EXPECT_THAT(ParseAmount("12.05", kTwoDecimals), Optional(1205));
  EXPECT_THAT(ParseAmount("+12.05", kTwoDecimals), Optional(1205));
  EXPECT_THAT(ParseAmount("-12.05", kTwoDecimals), Optional(-1205));
  EXPECT_THAT(ParseAmount("1,234", kTwoDecimals), Optional(123400));
  EXPECT_THAT(ParseAmount("12,345,678.90", kTwoDecimals), Optional(1234567890));
  EXPECT_THAT(ParseAmount("1234567.89", kTwoDecimals), Optional(123456789));
}

TEST(Amount, IsRefusedInEveryOtherForm) {
  EXPECT_THAT(ParseAmount("", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("-", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("--1", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("+-1", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount(" 1", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1 ", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1.", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount(".5", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1.234", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1.2.3", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1e5", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("0x10", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("$5", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("(5)", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount(std::string_view("5\0", 2), kTwoDecimals), Eq(std::nullopt));
}

TEST(Amount, IsRefusedWithSeparatorsInTheWrongPlaces) {
  EXPECT_THAT(ParseAmount(",123", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1,23", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1,2345", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1234,567", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1,234567", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1,,234", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1,234,", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1.23,4", kTwoDecimals), Eq(std::nullopt));
}

TEST(Amount, IsRefusedBeyondItsRange) {
  EXPECT_THAT(ParseAmount("99,999,999,999.99", kTwoDecimals), Optional(kLargestAmount));
  EXPECT_THAT(ParseAmount("-99,999,999,999.99", kTwoDecimals), Optional(-kLargestAmount));
  EXPECT_THAT(ParseAmount("100,000,000,000.00", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("99999999999999999999999999999999", kTwoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("00000000000000000000000000000001", kTwoDecimals), Optional(100));
}

TEST(Amount, IsAddedUpToWhatCanBeCounted) {
  EXPECT_THAT(AddAmounts(INT64_MAX - kLargestAmount, kLargestAmount), Optional(INT64_MAX));
  EXPECT_THAT(AddAmounts(INT64_MAX - kLargestAmount + 1, kLargestAmount), Eq(std::nullopt));
  EXPECT_THAT(AddAmounts(INT64_MAX, -kLargestAmount), Optional(INT64_MAX - kLargestAmount));
  EXPECT_THAT(AddAmounts(INT64_MIN + kLargestAmount, -kLargestAmount), Optional(INT64_MIN));
  EXPECT_THAT(AddAmounts(INT64_MIN + kLargestAmount - 1, -kLargestAmount), Eq(std::nullopt));
  EXPECT_THAT(AddAmounts(INT64_MIN, kLargestAmount), Optional(INT64_MIN + kLargestAmount));
  EXPECT_THAT(AddAmounts(-5, 3), Optional(-2));
}

TEST(Amount, IsShownForEveryNumber) {
  EXPECT_EQ(FormatAmount(0, kTwoDecimals), "0.00");
  EXPECT_EQ(FormatAmount(-1, kTwoDecimals), "-0.01");
  EXPECT_EQ(FormatAmount(99999, kTwoDecimals), "999.99");
  EXPECT_EQ(FormatAmount(100000, kTwoDecimals), "1,000.00");
  EXPECT_EQ(FormatAmount(INT64_MAX, kTwoDecimals), "92,233,720,368,547,758.07");
  EXPECT_EQ(FormatAmount(INT64_MIN, kTwoDecimals), "-92,233,720,368,547,758.08");
}

constexpr Decimals kNoDecimals{0};
constexpr Decimals kThreeDecimals{3};
constexpr Decimals kFourDecimals{4};

TEST(Amount, OfACurrencyWithoutDecimalsHasNoPoint) {
  EXPECT_THAT(ParseAmount("1234", kNoDecimals), Optional(1234));
  EXPECT_THAT(ParseAmount("-1,234", kNoDecimals), Optional(-1234));
  EXPECT_THAT(ParseAmount("1234.", kNoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("1234.0", kNoDecimals), Eq(std::nullopt));
  EXPECT_EQ(FormatAmount(0, kNoDecimals), "0");
  EXPECT_EQ(FormatAmount(-999, kNoDecimals), "-999");
  EXPECT_EQ(FormatAmount(1234567, kNoDecimals), "1,234,567");
}

TEST(Amount, OfACurrencyWithThreeDecimalsOrFourIsFilledUpToThese) {
  EXPECT_THAT(ParseAmount("12", kThreeDecimals), Optional(12000));
  EXPECT_THAT(ParseAmount("12.3", kThreeDecimals), Optional(12300));
  EXPECT_THAT(ParseAmount("12.345", kThreeDecimals), Optional(12345));
  EXPECT_THAT(ParseAmount("12.3456", kThreeDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("12.3456", kFourDecimals), Optional(123456));
  EXPECT_THAT(ParseAmount("12.34567", kFourDecimals), Eq(std::nullopt));
  EXPECT_EQ(FormatAmount(5, kThreeDecimals), "0.005");
  EXPECT_EQ(FormatAmount(-12345, kThreeDecimals), "-12.345");
  EXPECT_EQ(FormatAmount(12345678, kFourDecimals), "1,234.5678");
}

TEST(Amount, IsBoundInMinorUnitsWhateverItsDecimals) {
  EXPECT_THAT(ParseAmount("9,999,999,999,999", kNoDecimals), Optional(kLargestAmount));
  EXPECT_THAT(ParseAmount("10,000,000,000,000", kNoDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("-9,999,999,999.999", kThreeDecimals), Optional(-kLargestAmount));
  EXPECT_THAT(ParseAmount("10,000,000,000", kThreeDecimals), Eq(std::nullopt));
  EXPECT_THAT(ParseAmount("999,999,999.9999", kFourDecimals), Optional(kLargestAmount));
  EXPECT_THAT(ParseAmount("9999999999999", kFourDecimals), Eq(std::nullopt));
}

TEST(Amount, IsShownForEveryNumberWithAnyDecimalsAndReadBack) {
  for (std::int64_t count = 0; count <= Decimals::kMost; ++count) {
    const Decimals decimals(count);
    for (const std::int64_t number : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{10'000}, kLargestAmount}) {
      EXPECT_THAT(ParseAmount(FormatAmount(number, decimals), decimals), Optional(number)) << count;
    }
  }
  EXPECT_EQ(FormatAmount(INT64_MIN, kNoDecimals), "-9,223,372,036,854,775,808");
  EXPECT_EQ(FormatAmount(INT64_MAX, kFourDecimals), "922,337,203,685,477.5807");
}

TEST(Decimals, AreNoneToFour) {
  EXPECT_EQ(Decimals(0).Count(), 0U);
  EXPECT_EQ(Decimals(4).Count(), 4U);
  EXPECT_THROW(Decimals(-1), std::out_of_range);
  EXPECT_THROW(Decimals(5), std::out_of_range);
}

TEST(Decimals, AreThoseOfTheCurrency) {
  for (const char* const code : {"BIF", "CLP", "DJF", "GNF", "ISK", "JPY", "KMF", "KRW", "PYG", "RWF", "UGX", "UYI",
                                 "VND", "VUV", "XAF", "XOF", "XPF"}) {
    EXPECT_EQ(DecimalsOf(code), kNoDecimals) << code;
  }
  for (const char* const code : {"BHD", "IQD", "JOD", "KWD", "LYD", "OMR", "TND"}) {
    EXPECT_EQ(DecimalsOf(code), kThreeDecimals) << code;
  }
  for (const char* const code : {"CLF", "UYW"}) EXPECT_EQ(DecimalsOf(code), kFourDecimals) << code;
  for (const char* const code : {"USD", "EUR", "CAD"}) EXPECT_EQ(DecimalsOf(code), kTwoDecimals) << code;
}

TEST(Decimals, OfACodeThatNobodyKnowsAreTwo) {
  EXPECT_EQ(DecimalsOf("QQQ"), kTwoDecimals);
  EXPECT_EQ(DecimalsOf(""), kTwoDecimals);
}

TEST(Date, IsReadAndShownAsYearMonthDay) {
  EXPECT_EQ(ParseDate("The date", "2024-02-29"), DateType32(2024, 2, 29));
  EXPECT_EQ(FormatIsoDate(DateType32(2024, 2, 29)), "2024-02-29");
  EXPECT_EQ(FormatIsoDate(DateType32(5, 1, 2)), "0005-01-02");
  EXPECT_EQ(FormatIsoDate(NullDate()), "");
}

TEST(Date, IsRefusedWhenItIsNoDayOfTheCalendar) {
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseDate("The date", "2023-02-29"); }),
              AllOf(HasSubstr("\"2023-02-29\""), HasSubstr("YYYY-MM-DD")));
  EXPECT_THROW(ParseDate("The date", "2023-13-01"), InvalidInput);
  EXPECT_THROW(ParseDate("The date", "2023-00-01"), InvalidInput);
  EXPECT_THROW(ParseDate("The date", "23-01-01"), InvalidInput);
  EXPECT_THROW(ParseDate("The date", "2023/01/01"), InvalidInput);
  EXPECT_THROW(ParseDate("The date", "0000-01-01"), InvalidInput);
  EXPECT_THROW(ParseDate("The date", "2023-01-01 "), InvalidInput);
  EXPECT_THROW(ParseDate("The date", ""), InvalidInput);
}

TEST(DayAndTime, IsRead) {
  const DayAndTime read = ParseDayAndTime("The time", "2026-01-31T23:59:58");

  EXPECT_EQ(read.day, DateType32(2026, 1, 31));
  EXPECT_EQ(read.sinceMidnight, std::chrono::seconds(23 * 3600 + 59 * 60 + 58));
}

TEST(DayAndTime, IsRefusedWhenItIsNone) {
  for (const char* const text :
       {"", "2026-01-31", "2026-01-31 09:30:00", "2026-01-31T24:00:00", "2026-01-31T09:60:00", "2026-01-31T09:30:60",
        "2026-01-31T09:30:5x", "2026-02-30T09:30:00", "2026-01-31T09:30:00Z", "2026-01-31T-9:30:00"}) {
    EXPECT_THAT(MessageOf<InvalidInput>([&] { ParseDayAndTime("The time", text); }), HasSubstr("The time")) << text;
  }
}

TEST(InputText, IsUtf8) {
  EXPECT_TRUE(IsUtf8("plain"));
  EXPECT_TRUE(
      IsUtf8("B\xC3\xBC"
             "cher"));
  EXPECT_TRUE(IsUtf8("\xE2\x82\xAC"));
  EXPECT_TRUE(IsUtf8("\xF0\x9F\x98\x80"));
  EXPECT_FALSE(IsUtf8("\xFF"));
  EXPECT_FALSE(IsUtf8("\xC3"));
  EXPECT_FALSE(IsUtf8("\xC0\x80"));
  EXPECT_FALSE(IsUtf8("\xE0\x80\x80"));
  EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
  EXPECT_FALSE(IsUtf8("\xF4\x90\x80\x80"));
  EXPECT_FALSE(IsUtf8("\xE2\x82"));
}

TEST(InputText, OfALimitedFieldIsCountedInBytes) {
  EXPECT_EQ(RequireRealmId("1234567890123456789"), "1234567890123456789");
  EXPECT_THROW(RequireRealmId("12345678901234567890"), InvalidInput);
  EXPECT_THROW(RequireRealmId(""), InvalidInput);
  EXPECT_NO_THROW(RequirePartnerName(std::string(59, 'p')));
  EXPECT_THROW(RequirePartnerName(std::string(60, 'p')), InvalidInput);
  EXPECT_NO_THROW(RequireRequestId(std::string(36, 'q')));
  EXPECT_THROW(RequireRequestId(std::string(37, 'q')), InvalidInput);
  EXPECT_THROW(RequireRealmId("\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC"),
               InvalidInput);
}

TEST(AnAccountNumber, IsOneToTwentyDigitsWithSinglePointsAndDashesBetweenThem) {
  for (const char* const number : {"4", "4000", "4000.10-2", "12345678901234567890", "007"}) {
    EXPECT_TRUE(IsAccountNumber(number)) << number;
  }
  for (const char* const text : {"", ".1", "1.", "1..2", "1-", "A1", "1 2", "1:2", "#12", "123456789012345678901"}) {
    EXPECT_FALSE(IsAccountNumber(text)) << text;
  }
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireAccountNumber("40OO"); }),
              testing::AllOf(HasSubstr("\"40OO\""), HasSubstr("such as 4000")));
}

TEST(ARecordNumber, IsToldFromOtherNumbersByItsMark) {
  EXPECT_EQ(ParseMarkedRecordNumber("#12"), 12);
  for (const char* const text : {"12", "#", "##12", "# 12", "#0", "#2147483647"}) {
    EXPECT_EQ(ParseMarkedRecordNumber(text), std::nullopt) << text;
  }
}

TEST(InputText, IsRefusedWithTheValueAndWhatWouldBeRight) {
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequireRealmId("12345678901234567890"); }),
            "The realm id \"12345678901234567890\" is too long with 20 bytes; 19 bytes are the most.");
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequirePartnerName("\u00fc" + std::string(58, 'p')); }),
              HasSubstr("is too long with 60 bytes in 59 characters; 59 bytes are the most."));
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireText("The code", "ab", 3, 5); }),
              HasSubstr("is too short with 2 bytes; 3 bytes are the least."));
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireRealmId("a\tb"); }), HasSubstr("\"a\\x09b\""));
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireRealmId(std::string_view("a\0b", 3)); }),
              HasSubstr("control character"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireRealmId("a\xFF"); }), HasSubstr("\"a\\xFF\" is not UTF-8"));
}

// A CSI of the second control block, marks, embeddings, isolates, both separators, a delete.
std::vector<std::string> Steering() {
  return {"\u009b31m", "\u0080", "\u009f", "\u061c", "\u200e", "\u200f", "\u202a", "\u202e",
          "\u2066",    "\u2069", "\u2028", "\u2029", "\x7f",   "\x1b",   "\n"};
}

std::vector<std::string> NextToSteering() {
  return {"\u00a0", "\u061b", "\u061d", "\u200d", "\u2010",    "\u2027",
          "\u202f", "\u2065", "\u206a", "\u2603", "\U0001f600"};
}

TEST(InputText, IsRefusedWhereItWouldSteerAScreen) {
  for (const std::string& text : Steering()) {
    EXPECT_THROW(RequirePartnerName("North " + text), InvalidInput) << testing::PrintToString(text);
    EXPECT_THROW(NormalizedFullName("The name", "North:" + text + "East"), InvalidInput);
  }
  for (const std::string& text : NextToSteering()) EXPECT_EQ(RequirePartnerName(text), text);
}

TEST(InputText, IsRefusedWithTheCharacterThatWouldSteerAScreen) {
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequirePartnerName("a\u009b31m"); }),
            "The partner name \"a\\xC2\\x9B31m\" holds the control character U+009B; leave it out.");
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequirePartnerName("a\u202eb"); }),
            "The partner name \"a\\xE2\\x80\\xAEb\" holds the direction mark U+202E; leave it out.");
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequirePartnerName("a\u2029b"); }), HasSubstr("the line separator U+2029"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequirePartnerName("a\nb"); }), HasSubstr("the control character U+000A"));
}

TEST(AShownText, HasNothingThatSteersAScreen) {
  for (const std::string& text : Steering()) {
    EXPECT_TRUE(IsPrintableAscii(Shown("a" + text + "b"))) << testing::PrintToString(text);
    EXPECT_EQ(Quoted(text), '"' + Shown(text) + '"');
  }
  EXPECT_EQ(Shown("\u009b31m \u202e"), R"(\xC2\x9B31m \xE2\x80\xAE)");
}

TEST(AShownText, HasNoBytesThatAreNotUtf8) {
  EXPECT_EQ(Shown("Caf\xE9"), R"(Caf\xE9)");
  EXPECT_EQ(Shown("\xE2\x80"), R"(\xE2\x80)");
}

TEST(AShownText, KeepsEverythingElse) {
  EXPECT_EQ(Shown(R"(C:\books "North" B\x41)"), R"(C:\books "North" B\x41)");
  for (const std::string& text : NextToSteering()) EXPECT_EQ(Shown(text), text);
}

TEST(AShownText, OfSeveralLinesKeepsTheirEnds) {
  EXPECT_EQ(ShownLines("a\u2028\n\nb\r\n"), "a\\xE2\\x80\\xA8\n\nb\\x0D\n");
  EXPECT_EQ(ShownLines("a"), "a");
  EXPECT_EQ(ShownLines(""), "");
}

TEST(RecordNumber, IsATextOfDigitsInItsRange) {
  EXPECT_THAT(ParseRecordNumber("1"), Optional(1));
  EXPECT_THAT(ParseRecordNumber("2147483646"), Optional(2147483646));
  EXPECT_THAT(ParseRecordNumber("2147483647"), Eq(std::nullopt));
  EXPECT_THAT(ParseRecordNumber("0"), Eq(std::nullopt));
  EXPECT_THAT(ParseRecordNumber("-1"), Eq(std::nullopt));
  EXPECT_THAT(ParseRecordNumber("1a"), Eq(std::nullopt));
  EXPECT_THAT(ParseRecordNumber(""), Eq(std::nullopt));
}

TEST(FullName, LosesTheBlanksAroundItsParts) {
  EXPECT_EQ(NormalizedFullName("The name", " Utilities :  Water "), "Utilities:Water");
  EXPECT_EQ(LastPart("Utilities:Water:Well"), "Well");
  EXPECT_EQ(ParentPart("Utilities:Water:Well"), "Utilities:Water");
  EXPECT_EQ(ParentPart("Utilities"), "");
}

TEST(FullName, HasATextInEachOfItsParts) {
  EXPECT_THROW(NormalizedFullName("The name", "Utilities:"), InvalidInput);
  EXPECT_THROW(NormalizedFullName("The name", ":Water"), InvalidInput);
  EXPECT_THROW(NormalizedFullName("The name", "A: :B"), InvalidInput);
  EXPECT_THROW(NormalizedFullName("The name", std::string(kListNameLength + 1, 'n')), InvalidInput);
}

TEST(AccountType, IsAnAssetALiabilityOrNeither) {
  for (std::int16_t type = 0; type < 18; ++type) {
    EXPECT_EQ(IsAsset(type), type <= KrEnumerations::kOtherAsset) << type;
    EXPECT_EQ(IsLiability(type), type >= KrEnumerations::kAccountsPayable && type <= KrEnumerations::kLongTermLiability)
        << type;
  }
}

TEST(AccountType, HasANameThatIsReadBack) {
  EXPECT_EQ(AccountTypeName(0), "Bank");
  EXPECT_EQ(AccountTypeName(15), "Non-Posting");
  EXPECT_EQ(AccountTypeName(16), "Type 16");
  EXPECT_EQ(ParseAccountType("cost of goods sold"), KrEnumerations::kCostOfGoodsSold);
  EXPECT_EQ(ParseAccountType("17"), 17);
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseAccountType("Banque"); }),
              AllOf(HasSubstr("\"Banque\""), HasSubstr("Accounts Receivable")));
  EXPECT_THROW(ParseAccountType("-1"), InvalidInput);
  EXPECT_THROW(ParseAccountType("32768"), InvalidInput);
}

}  // namespace
}  // namespace standalone
