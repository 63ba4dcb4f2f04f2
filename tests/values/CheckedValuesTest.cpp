#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Columns.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Money.h"
#include "standalone/values/Rights.h"
#include "standalone/values/States.h"
#include "tests/support/Thrown.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;
using namespace std::chrono_literals;

template <typename Text>
void ExpectLengthsUpTo(std::size_t most) {
  EXPECT_THROW(Text(""), InvalidInput);
  EXPECT_EQ(Text("t").Text(), "t");
  EXPECT_EQ(Text(std::string(most, 't')).Text(), std::string(most, 't'));
  EXPECT_THROW(Text(std::string(most + 1, 't')), InvalidInput);
}

TEST(ACheckedText, HasAByteAndNoMoreThanItsFieldHolds) {
  ExpectLengthsUpTo<RealmId>(19);
  ExpectLengthsUpTo<RequestId>(36);
  ExpectLengthsUpTo<PartnerName>(59);
  ExpectLengthsUpTo<PartnerTxnId>(36);
  ExpectLengthsUpTo<NewAccountName>(500);
  ExpectLengthsUpTo<NewListName>(500);
}

TEST(ACheckedText, IsCountedInBytes) {
  const std::string ofTwoBytes = "\xC3\xBC";
  std::string nine;
  for (int count = 0; count < 9; ++count) nine += ofTwoBytes;

  EXPECT_EQ(RealmId(nine + "1").Text(), nine + "1");
  EXPECT_THROW(RealmId(nine + ofTwoBytes), InvalidInput);
}

TEST(ACheckedText, IsCleanUtf8) {
  EXPECT_THROW(RequestId("a\xFF"), InvalidInput);
  EXPECT_THROW(RequestId("a\tb"), InvalidInput);
  EXPECT_THROW(RequestId(std::string_view("a\0b", 3)), InvalidInput);
  EXPECT_THROW(RequestId("a\x7F"), InvalidInput);
}

TEST(ACheckedText, IsRefusedByItsOwnName) {
  EXPECT_THAT(MessageOf<InvalidInput>([] { RealmId(""); }), HasSubstr("realm id"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { PartnerTxnId(std::string(37, 't')); }),
              AllOf(HasSubstr("partner's transaction id"), HasSubstr("36")));
}

TEST(ALineAmount, IsAnAmountOfSomeCurrency) {
  for (const char* const text : {"0", "+1", "-1,234.5", "12.3456", "9,999,999,999,999", "-99,999,999,999.99"}) {
    EXPECT_EQ(LineAmount(text).Text(), text);
  }
  for (const char* const text : {"", "ten", "1.", "1.23456", "1,23", "10,000,000,000,000", "1 "}) {
    EXPECT_THROW(LineAmount{text}, InvalidInput) << text;
  }
}

TEST(ALineAmount, SaysWhatWouldBeRight) {
  EXPECT_THAT(MessageOf<InvalidInput>([] { LineAmount("12.34567"); }),
              AllOf(HasSubstr("\"12.34567\""), HasSubstr("1,234.50"), HasSubstr("the company's currency")));
}

TEST(AnAmountOfTheCompany, GoesUpToTheLargestEitherWay) {
  EXPECT_EQ(RequireAmount("99999999999.99", "EUR", kTwoDecimals), kLargestAmount);
  EXPECT_EQ(RequireAmount("-99,999,999,999.99", "EUR", kTwoDecimals), -kLargestAmount);
  EXPECT_EQ(RequireAmount("-9,999,999,999.999", "KWD", Decimals(3)), -kLargestAmount);
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireAmount("-100,000,000,000.00", "EUR", kTwoDecimals); }),
              HasSubstr("up to 99,999,999,999.99"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { RequireAmount("100,000,000,000", "KWD", Decimals(3)); }),
              HasSubstr("up to 9,999,999,999.999"));
}

TEST(AnAmountOfTheCompany, HasNoMoreDecimalsThanItsCurrency) {
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequireAmount("12.345", "EUR", kTwoDecimals); }),
            "amount \"12.345\" has more decimals than EUR, which has two");
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequireAmount("12.0", "JPY", Decimals(0)); }),
            "amount \"12.0\" has more decimals than JPY, which has none");
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequireAmount("12.3456", "KWD", Decimals(3)); }),
            "amount \"12.3456\" has more decimals than KWD, which has three");
}

TEST(AnAmountOfTheCompany, MayHaveOtherDecimalsThanItsCurrencyHasElsewhere) {
  EXPECT_EQ(RequireAmount("12.5", "JPY", kTwoDecimals), 1250);
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequireAmount("12.345", "JPY", kTwoDecimals); }),
            "amount \"12.345\" has more decimals than JPY, which in this company has two");
  EXPECT_EQ(MessageOf<InvalidInput>([] { RequireAmount("12.345", "", kTwoDecimals); }),
            "amount \"12.345\" has more decimals than the company's amounts, which have two");
}

TEST(AnAmountOfTheCompany, IsShownAsItWouldBeRight) {
  const auto message = [](const char* currency, std::int64_t decimals) {
    return MessageOf<InvalidInput>([&] { RequireAmount("ten", currency, Decimals(decimals)); });
  };
  EXPECT_EQ(message("JPY", 0),
            "amount \"ten\" is not acceptable; write it like 1234 or 1,234, without decimals, up to "
            "9,999,999,999,999");
  EXPECT_EQ(message("EUR", 2),
            "amount \"ten\" is not acceptable; write it like 1234.50 or 1,234.50, with at most two decimals, up to "
            "99,999,999,999.99");
  EXPECT_THAT(message("KWD", 3), AllOf(HasSubstr("1,234.500"), HasSubstr("at most three decimals")));
  EXPECT_THAT(message("CLF", 4), AllOf(HasSubstr("1,234.5000"), HasSubstr("at most four decimals")));
  EXPECT_THAT(message("", 1), AllOf(HasSubstr("1,234.5,"), HasSubstr("at most one decimal,")));
}

TEST(Money, IsTheSameWithTheSameDecimalsOnly) {
  EXPECT_EQ((Money{1234, "JPY", Decimals(0)}), (Money{1234, "JPY", Decimals(0)}));
  EXPECT_NE((Money{1234, "JPY", Decimals(0)}), (Money{1234, "JPY", kTwoDecimals}));
}

TEST(Money, IsWrittenWithItsDecimals) {
  EXPECT_EQ(FormatAmount(Money{-1234567, "JPY", Decimals(0)}), "-1,234,567");
  EXPECT_EQ(FormatAmount(Money{-1234567, "KWD", Decimals(3)}), "-1,234.567");
  EXPECT_EQ(FormatPlainAmount(Money{-1234567, "JPY", Decimals(0)}), "-1234567");
  EXPECT_EQ(FormatPlainAmount(Money{-1234567, "KWD", Decimals(3)}), "-1234.567");
}

TEST(ARejectedAmount, IsKeptAsItWasWritten) {
  EXPECT_EQ(RejectedAmount("+1,234.5").Text(), "+1,234.5");
}

TEST(ARejectedAmount, FillsItsFieldAndNoMore) {
  const std::string ofTwentyTwo = "0000000000000000012.50";
  ASSERT_THAT(ofTwentyTwo, SizeIs(22));

  EXPECT_EQ(RejectedAmount(ofTwentyTwo).Text(), ofTwentyTwo);
  EXPECT_THAT(MessageOf<InvalidInput>([&] { RejectedAmount("0" + ofTwentyTwo); }), HasSubstr("22"));
}

TEST(ARejectedAmount, IsAnAmountOfALine) {
  EXPECT_THROW(RejectedAmount(""), InvalidInput);
  EXPECT_THROW(RejectedAmount("much"), InvalidInput);
  EXPECT_THROW(RejectedAmount("10,000,000,000,000"), InvalidInput);
  EXPECT_EQ(RejectedAmount("-99999999999.99").Text(), "-99999999999.99");
}

TEST(APlainAmount, HasNoSeparators) {
  EXPECT_EQ(FormatPlainAmount(0, kTwoDecimals), "0.00");
  EXPECT_EQ(FormatPlainAmount(-1, kTwoDecimals), "-0.01");
  EXPECT_EQ(FormatPlainAmount(-123450, kTwoDecimals), "-1234.50");
  EXPECT_EQ(FormatPlainAmount(kLargestAmount, kTwoDecimals), "99999999999.99");
  EXPECT_EQ(FormatPlainAmount(INT64_MAX, kTwoDecimals), "92233720368547758.07");
  EXPECT_EQ(FormatPlainAmount(INT64_MIN, kTwoDecimals), "-92233720368547758.08");
}

TEST(AState, HasANameThatIsReadBack) {
  for (const RelationState state : {RelationState::kPending, RelationState::kEstablished,
                                    RelationState::kWithoutAccounts, RelationState::kDeactivated}) {
    EXPECT_EQ(ParseRelationState(StateName(state)), state);
  }
  for (const TransactionState state :
       {TransactionState::kEntered, TransactionState::kSent, TransactionState::kCameBack,
        TransactionState::kEstablished, TransactionState::kRejected, TransactionState::kClosed}) {
    EXPECT_EQ(ParseTransactionState(StateName(state)), state);
  }
  EXPECT_EQ(StateName(RelationState::kPending), "pending");
  EXPECT_EQ(StateName(RelationState::kEstablished), "established");
  EXPECT_EQ(StateName(RelationState::kDeactivated), "deactivated");
}

TEST(AState, OfATransactionThatThisCompanyEnteredTellsWhereItIs) {
  EXPECT_EQ(StateName(TransactionState{0}), "entered");
  EXPECT_EQ(StateName(TransactionState{1}), "sent");
  EXPECT_EQ(StateName(TransactionState{2}), "came-back");
  EXPECT_EQ(StateName(TransactionState{3}), "established");
  EXPECT_EQ(StateName(TransactionState{5}), "closed");
}

TEST(AState, OfATransactionIsUnderstoodAsVersion1CalledItsNumber) {
  EXPECT_EQ(ParseTransactionState("pending"), TransactionState::kSent);
  EXPECT_EQ(ParseTransactionState("deactivated"), TransactionState::kClosed);
}

TEST(AState, OfATransactionOfBeforeKeepsItsOldWordAndIsMarked) {
  const auto before = [](std::int16_t number) {
    return BookedState{TransactionState{number}, true};
  };
  EXPECT_EQ(StateName(before(0)), "sent by the partner");
  EXPECT_EQ(StateName(before(1)), "pending");
  EXPECT_EQ(StateName(before(2)), "came back");
  EXPECT_EQ(StateName(before(3)), "established");
  EXPECT_EQ(StateName(before(4)), "rejected");
  EXPECT_EQ(StateName(before(5)), "deactivated");
  EXPECT_EQ(StateName(before(77)), "state 77");
  EXPECT_EQ(MarkedStateName(before(1)), "pending (before)");
  EXPECT_EQ(MarkedStateName(TransactionState::kSent), "sent");
}

TEST(AState, OfATransactionThatThisCompanyEnteredIsNeverRejectedNorWithoutAName) {
  EXPECT_EQ(ParseOwnTransactionState("0"), TransactionState::kEntered);
  EXPECT_EQ(ParseOwnTransactionState("came-back"), TransactionState::kCameBack);
  EXPECT_EQ(ParseOwnTransactionState("5"), TransactionState::kClosed);
  for (const char* const text : {"rejected", "4", "6", "-1", "paid"}) {
    EXPECT_THAT(MessageOf<InvalidInput>([&] { ParseOwnTransactionState(text); }),
                AllOf(HasSubstr('"' + std::string(text) + '"'), HasSubstr("came-back (2)")));
  }
}

// Each state with those that it allows to be moved to by hand, of all numbers from -1 to 6.
std::map<int, std::vector<int>> MovesByHand(bool ofBefore) {
  std::map<int, std::vector<int>> moves;
  for (std::int16_t from = -1; from <= 6; ++from) {
    for (const TransactionState to : MovesFrom({TransactionState{from}, ofBefore})) {
      moves[from].push_back(static_cast<int>(to));
    }
  }
  return moves;
}

TEST(AState, AllowsTheMovesThatAnExchangeWithThePartnerHas) {
  EXPECT_EQ(MovesByHand(false), (std::map<int, std::vector<int>>{{0, {1, 3, 5}}, {1, {2, 3, 5}}, {2, {1, 5}}}));
}

TEST(AState, OfATransactionOfBeforeCanBeSettled) {
  EXPECT_EQ(MovesByHand(true),
            (std::map<int, std::vector<int>>{
                {-1, {3, 5}}, {0, {1, 3, 4, 5}}, {1, {2, 3, 4, 5}}, {2, {1, 3, 4, 5}}, {6, {3, 5}}}));
}

TEST(AState, OfTheNumberFourIsCalledByWhatHasIt) {
  EXPECT_EQ(StateName(RelationState{4}), "without-accounts");
  EXPECT_EQ(StateName(TransactionState{4}), "rejected");
  EXPECT_THROW(ParseRelationState("rejected"), InvalidInput);
  EXPECT_THROW(ParseTransactionState("without-accounts"), InvalidInput);
}

TEST(AState, WithoutANameIsShownByItsNumberAndNotReadBackFromThat) {
  EXPECT_EQ(StateName(RelationState{2}), "state 2");
  EXPECT_EQ(StateName(TransactionState{-32768}), "state -32768");
  EXPECT_THROW(ParseRelationState("state 2"), InvalidInput);
  EXPECT_THROW(ParseTransactionState("state 2"), InvalidInput);
}

TEST(AState, IsAnyNumberOfSixteenBits) {
  EXPECT_EQ(ParseRelationState("-32768"), RelationState{-32768});
  EXPECT_EQ(ParseRelationState("32767"), RelationState{32767});
  EXPECT_EQ(ParseTransactionState("-32768"), TransactionState{-32768});
  EXPECT_EQ(ParseTransactionState("32767"), TransactionState{32767});
  EXPECT_EQ(ParseTransactionState("0"), TransactionState{0});
  EXPECT_THROW(ParseRelationState("32768"), InvalidInput);
  EXPECT_THROW(ParseRelationState("-32769"), InvalidInput);
  EXPECT_THROW(ParseTransactionState("32768"), InvalidInput);
  EXPECT_THROW(ParseTransactionState("-32769"), InvalidInput);
}

TEST(AState, IsNotReadFromAnythingElse) {
  for (const char* const text : {"", " 3", "3 ", "+3", "3x", "Established", "0x3"}) {
    EXPECT_THROW(ParseRelationState(text), InvalidInput) << text;
    EXPECT_THROW(ParseTransactionState(text), InvalidInput) << text;
  }
}

TEST(AState, ThatIsMistypedHasAnotherSuggested) {
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseTransactionState("clsed"); }), HasSubstr("Did you mean \"closed\"?"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseOwnTransactionState("enterd"); }),
              HasSubstr("Did you mean \"entered\"?"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseRelationState("Established"); }),
              HasSubstr(". Did you mean \"established\"?"));
}

TEST(AType, ThatIsMistypedOrCalledOtherwiseHasAnotherSuggested) {
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseTransactionType("cheque"); }), HasSubstr("Did you mean \"check\"?"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseTransactionType("entry"); }), HasSubstr("Did you mean \"journal\"?"));
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseRejectableType("bil"); }), HasSubstr("Did you mean \"bill\"?"));
}

TEST(AState, OfARelationIsNeverTheOneThatAsksToKeepIt) {
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseRelationState("6"); }), AllOf(HasSubstr("\"6\""), HasSubstr("6")));
  EXPECT_THROW(RequireStored(RelationState{6}), InvalidInput);
  EXPECT_EQ(RequireStored(RelationState{5}), RelationState::kDeactivated);
  EXPECT_EQ(RequireStored(RelationState{7}), RelationState{7});
  EXPECT_EQ(ParseTransactionState("6"), TransactionState{6});
}

TEST(ARight, IsOneOfAll) {
  const std::vector<Right> rights = AllRights();

  EXPECT_THAT(rights, SizeIs(16));
  EXPECT_EQ(rights.front().Text(), "checks:create");
  EXPECT_EQ(rights.back().Text(), "accounts:modify");
}

TEST(ARight, IsReadAndWrittenBack) {
  for (const Right& right : AllRights()) {
    if (IsListRight(right.Text())) {
      EXPECT_EQ(ListRightText(ParseListRight(right.Text())), right.Text());
    } else {
      EXPECT_EQ(FeatureRightText(ParseFeatureRight(right.Text())), right.Text());
    }
  }
  EXPECT_EQ(FeatureRightText(ParseFeatureRight("Bills:CREATE")), "bills:create");
}

TEST(ARight, IsOfAListOrOfAFeature) {
  EXPECT_TRUE(IsListRight("accounts:view"));
  EXPECT_TRUE(IsListRight("Accounts"));
  EXPECT_FALSE(IsListRight("bills:view"));
  EXPECT_FALSE(IsListRight(""));
  EXPECT_THROW(ParseListRight("bills:view"), InvalidInput);
  EXPECT_THROW(ParseFeatureRight("accounts:view"), InvalidInput);
}

TEST(ARight, IsRefusedWithWhatWouldBeRight) {
  for (const char* const text : {"", ":", "bills", "bills:", ":view", "bills:fly", "invoices:view", "bills:view:all",
                                 "accounts", "accounts:fly", " bills:view"}) {
    EXPECT_THAT(MessageOf<InvalidInput>([&] { Right right(text); }), HasSubstr("create, view, delete, modify")) << text;
  }
}

TEST(AMomentInUtc, IsShownToTheSecond) {
  constexpr std::chrono::sys_days kDay = std::chrono::year(2026) / 1 / 31;

  EXPECT_EQ(FormatUtc(kDay + 0ms), "2026-01-31T00:00:00Z");
  EXPECT_EQ(FormatUtc(kDay + 9h + 30min + 5s + 999ms), "2026-01-31T09:30:05Z");
  EXPECT_EQ(FormatUtc(kDay + 24h - 1ms), "2026-01-31T23:59:59Z");
  EXPECT_EQ(FormatUtc(kDay + 24h), "2026-02-01T00:00:00Z");
}

TEST(AMomentInUtc, IsShownAlsoBeforeTheClocksBegan) {
  EXPECT_EQ(FormatUtc(std::chrono::sys_time<std::chrono::milliseconds>()), "1970-01-01T00:00:00Z");
  EXPECT_EQ(FormatUtc(std::chrono::sys_time<std::chrono::milliseconds>(-1ms)), "1969-12-31T23:59:59Z");
}

TEST(ADayAndTime, IsShownWithWhatStandsBetween) {
  const DayAndTime time{.day = {2026, 1, 31}, .sinceMidnight = 23h + 59min + 8s};

  EXPECT_EQ(FormatDayAndTime(time, ' '), "2026-01-31 23:59:08");
  EXPECT_EQ(FormatDayAndTime(time, 'T'), "2026-01-31T23:59:08");
  EXPECT_EQ(FormatDayAndTime(ParseDayAndTime("The time", "2026-01-31T00:00:00"), 'T'), "2026-01-31T00:00:00");
}

TEST(AColumn, HasNoTabsLineBreaksAndOtherControlCharacters) {
  EXPECT_EQ(EscapeColumn("plain text"), "plain text");
  EXPECT_EQ(EscapeColumn("a\tb\nc\rd\\e"), R"(a\tb\nc\rd\\e)");
  EXPECT_EQ(EscapeColumn(std::string_view("\0\x1F\x20\x7E\x7F", 5)), R"(\x00\x1F ~\x7F)");
  EXPECT_EQ(EscapeColumn("B\xC3\xBC"), "B\xC3\xBC");
  EXPECT_EQ(EscapeColumn(""), "");
}

TEST(AColumn, HasNothingThatSteersAScreen) {
  EXPECT_EQ(EscapeColumn("\u0085\u009b\u061c\u200e\u202e\u2066\u2028\u2029"),
            R"(\xC2\x85\xC2\x9B\xD8\x9C\xE2\x80\x8E\xE2\x80\xAE\xE2\x81\xA6\xE2\x80\xA8\xE2\x80\xA9)");
  EXPECT_EQ(EscapeColumn("Caf\xE9"), R"(Caf\xE9)");
  EXPECT_EQ(EscapeColumn("\u00a0\u202f\u2603 \\"), "\u00a0\u202f\u2603 \\\\");
}

TEST(AColumn, IsReadBackAsItWas) {
  std::string all = "\u009b\u202e\u2028\u2603";
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);

  EXPECT_EQ(UnescapeColumn(EscapeColumn(all)), all);
}

TEST(AColumn, ThatWasCutOffIsReadAsFarAsItGoes) {
  EXPECT_EQ(UnescapeColumn("a\\"), "a\\");
  EXPECT_EQ(UnescapeColumn("a\\x"), "ax");
  EXPECT_EQ(UnescapeColumn("a\\x4"), "ax4");
  EXPECT_EQ(UnescapeColumn(std::string_view("a\\x41").substr(0, 4)), "ax4");
  EXPECT_EQ(UnescapeColumn("a\\x41"), "aA");
  EXPECT_EQ(UnescapeColumn("a\\xG1"), "axG1");
  EXPECT_EQ(UnescapeColumn("a\\q"), "aq");
}

TEST(AColumn, IsAddedBehindWhatIsThere) {
  std::string line = "first\t";

  AppendEscaped(line, "a\tb");
  AppendEscaped(line, "c");

  EXPECT_EQ(line, "first\ta\\tbc");
}

TEST(ARejectableType, IsABillOrACheck) {
  EXPECT_EQ(ParseRejectableType("bill"), RejectableType::kBill);
  EXPECT_EQ(ParseRejectableType("9"), RejectableType::kBill);
  EXPECT_EQ(ParseRejectableType("check"), RejectableType::kCheck);
  EXPECT_EQ(ParseRejectableType("3"), RejectableType::kCheck);
  EXPECT_THROW(ParseRejectableType("journal"), InvalidInput);
  EXPECT_THROW(ParseRejectableType("8"), InvalidInput);
  EXPECT_THROW(ParseRejectableType(""), InvalidInput);
}

}  // namespace
}  // namespace standalone
