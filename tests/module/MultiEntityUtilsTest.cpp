#include <stdexcept>

#include "MultiEntityUtils/MultiEntityUtils.h"
#include "module/Arrangements.h"

namespace {

using testing::IsEmpty;

TEST(DateText, HasMonthAndDayInTwoDigits) {
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 3, 3}), "03/03/2024");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2023, 12, 25}), "12/25/2023");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 11, 7}), "11/07/2024");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 9, 10}), "09/10/2024");
}

TEST(DateText, HasTheYearAsItIs) {
  EXPECT_EQ(MultiEntityUtils::FormatDate({5, 1, 1}), "01/01/5");
  EXPECT_EQ(MultiEntityUtils::FormatDate({12024, 1, 1}), "01/01/12024");
}

TEST(DateText, IsEmptyForADateThatIsNone) {
  EXPECT_EQ(MultiEntityUtils::FormatDate(NullDate()), "");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 13, 1}), "");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 0, 1}), "");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2023, 2, 29}), "");
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 4, 31}), "");
}

TEST(DateText, KnowsTheLeapDay) {
  EXPECT_EQ(MultiEntityUtils::FormatDate({2024, 2, 29}), "02/29/2024");
}

class HomeCurrency : public AttachedTest {
 protected:
  HomeCurrency() {
    host.preferences.multiCurrency = true;
    host.preferences.homeCurrency = "EUR";
  }
};

TEST_F(HomeCurrency, IsTheCompanysWhenItUsesSeveral) {
  EXPECT_EQ(MultiEntityUtils::GetHomeCurrencyCode(), "EUR");

  EXPECT_THAT(host.Calls(),
              InOrder("PrefGetPrefHandle()", "GetUseMultiCurrency()", "OpenCurrency(1)", "GetHomeCurrency()",
                      "IsValidCurrency(EUR)", "GetCurrencyCode(EUR)", "ReleaseCurrency(EUR)"));
}

TEST_F(HomeCurrency, IsTheDollarWithoutPreferencesAndTheyAreNotAsked) {
  host.preferences.available = false;

  EXPECT_EQ(MultiEntityUtils::GetHomeCurrencyCode(), "USD");

  EXPECT_THAT(host.Calls(), InOrder("PrefGetPrefHandle()"));
}

TEST_F(HomeCurrency, IsTheDollarForACompanyWithOneCurrencyWhateverItIs) {
  host.preferences.multiCurrency = false;

  EXPECT_EQ(MultiEntityUtils::GetHomeCurrencyCode(), "USD");

  EXPECT_THAT(host.CallsOf({"OpenCurrency", "GetHomeCurrency"}), IsEmpty());
}

TEST_F(HomeCurrency, IsTheDollarWhenTheCompanyHasNoneThatIsValid) {
  host.preferences.homeCurrency = "";

  EXPECT_EQ(MultiEntityUtils::GetHomeCurrencyCode(), "USD");

  EXPECT_THAT(host.CallsOf({"GetCurrencyCode"}), IsEmpty());
}

TEST_F(HomeCurrency, IsReleasedWhenTheHostThrows) {
  host.ThrowAt("GetHomeCurrency", std::runtime_error("the preferences are locked"));

  EXPECT_THROW(MultiEntityUtils::GetHomeCurrencyCode(), std::runtime_error);

  EXPECT_EQ(host.preferences.currencies.Count(), 0U);
}

class TransactionName : public AttachedTest {
 protected:
  TransactionName() {
    host.names.names = {
        {31, {.text = "Top"}}, {32, {.text = "Mid", .parent = 31}}, {33, {.text = "Child", .parent = 32}}};
  }

  Util::TString NameOf(std::int16_t txnType, std::int32_t nameId, std::string memo = "memo") {
    host.lines.lines = {{101, {.txnType = txnType, .memo = memo, .nameId = nameId}}};
    const TargType line(host.lines, 101, kFeatureTypeStandard, kReadFailSafeDefault, txnType);
    host.Forget();
    return MultiEntityUtils::GetQualifiedTxnName(line, txnType);
  }
};

TEST_F(TransactionName, OfAJournalEntryIsItsMemoAndNothingElseIsAsked) {
  EXPECT_EQ(NameOf(8, 33, "Rent for March"), "Rent for March");

  EXPECT_THAT(host.Calls(), InOrder("GetStrMemo(101)", "ReleaseLine(101)"));
}

TEST_F(TransactionName, OfAJournalEntryWithoutMemoIsEmpty) {
  EXPECT_EQ(NameOf(8, 33, ""), "");
}

TEST_F(TransactionName, OfABillStandsAfterItsParents) {
  EXPECT_EQ(NameOf(9, 33), "Top:Mid:Child");
}

TEST_F(TransactionName, OfACheckWithOneParentHasOneColon) {
  EXPECT_EQ(NameOf(3, 32), "Top:Mid");
}

TEST_F(TransactionName, WithoutParentsIsTheNameItself) {
  EXPECT_EQ(NameOf(9, 31), "Top");
}

TEST_F(TransactionName, WithoutANameIsEmpty) {
  EXPECT_EQ(NameOf(9, 0), "");
}

TEST_F(TransactionName, OfAnyOtherTypeIsTheQualifiedName) {
  EXPECT_EQ(NameOf(5, 32), "Top:Mid");
}

TEST_F(TransactionName, AsksForPlainNamesAndReleasesThem) {
  NameOf(9, 32);

  EXPECT_THAT(host.CallsOf({"GetName"}), InOrder("GetName(32, null, 0)", "GetName(31, null, 0)"));
  EXPECT_EQ(host.names.open.Count(), 0U);
}

TEST_F(TransactionName, IsFormattedByTheHost) {
  NameOf(9, 32);

  EXPECT_THAT(host.CallsOf({"FormatStringV"}), InOrder("FormatStringV(%s%s%s)", "FormatStringV(%s%s)"));
}

TEST_F(TransactionName, IsEmptyWhenTheHostCannotFormatIt) {
  host.FailAt("FormatStringV");

  EXPECT_EQ(NameOf(9, 33), "");
}

TEST_F(TransactionName, LosesAParentThatTheHostCannotFormat) {
  host.FailAtNth("FormatStringV", 2);

  EXPECT_EQ(NameOf(9, 33), "Mid:Child");
}

TEST_F(TransactionName, WithPercentSignsStaysAsItIs) {
  host.names.names[31].text = "100%s";

  EXPECT_EQ(NameOf(9, 32), "100%s:Mid");
}

class FormattedText : public AttachedTest {
 protected:
  Util::TString target = "before";
};

TEST_F(FormattedText, ReplacesTheTargetAndGivesTheHostsBufferBack) {
  MultiEntityUtils::FormatString(target, "%s owes %d", "North", 42);

  EXPECT_EQ(target, "North owes 42");
  EXPECT_EQ(host.runtime.TextsOut(), 0U);
  EXPECT_THAT(host.Calls(), InOrder("FormatStringV(%s owes %d)", "GetMemoryManager()"));
}

TEST_F(FormattedText, LeavesTheTargetWhenTheHostMakesNone) {
  host.FailAt("FormatStringV");

  MultiEntityUtils::FormatString(target, "%s", "North");

  EXPECT_EQ(target, "before");
  EXPECT_THAT(host.Calls(), InOrder("FormatStringV(%s)"));
}

TEST_F(FormattedText, MayBeEmpty) {
  MultiEntityUtils::FormatString(target, "%s", "");

  EXPECT_EQ(target, "");
}

TEST_F(FormattedText, MayBeMadeOfTheTargetItself) {
  MultiEntityUtils::FormatString(target, "%s%s", "long ", target.c_str());

  EXPECT_EQ(target, "long before");
}

TEST_F(FormattedText, LetsTheHostsExceptionThrough) {
  host.ThrowAt("FormatStringV", 42);

  EXPECT_THROW(MultiEntityUtils::FormatString(target, "%s", "North"), int);
  EXPECT_EQ(target, "before");
}

class SwitchTable : public AttachedTest {};

TEST_F(SwitchTable, IsFilledWhenAllThreeSwitchesCouldBeRead) {
  EXPECT_TRUE(MultiEntityUtils::InitializeMEKillSwitchLookUpTable());
  EXPECT_THAT(host.Calls(), InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(SwitchTable, IsNotFilledWhenASwitchCouldNotBeRead) {
  host.ThrowAtNth("IsFeatureEnabled", 3, 42);

  EXPECT_FALSE(MultiEntityUtils::InitializeMEKillSwitchLookUpTable());
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")));
}

TEST_F(SwitchTable, TakesTheLaterAnswerWhenItIsFilledAgain) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_BILLS");
  EXPECT_FALSE(MultiEntityUtils::IsFeatureEnabled(MEKillSwitchBills));
  host.switches.off.clear();

  EXPECT_TRUE(MultiEntityUtils::InitializeMEKillSwitchLookUpTable());

  EXPECT_TRUE(MultiEntityUtils::IsFeatureEnabled(MEKillSwitchBills));
}

TEST_F(SwitchTable, HasNoRowForAnAccountTypeOutsideZeroToFifteen) {
  EXPECT_FALSE(MultiEntityUtils::IsAccountTypeEnabled(static_cast<KrEnumerations::AccntTypeType>(16)));
  EXPECT_FALSE(MultiEntityUtils::IsAccountTypeEnabled(static_cast<KrEnumerations::AccntTypeType>(-1)));
  EXPECT_TRUE(MultiEntityUtils::IsAccountTypeEnabled(KrEnumerations::kNonPosting));

  EXPECT_THAT(host.Calls(), InOrder("IsFeatureEnabled(MultiEntityAccounts, Non_Posting)"));
}

}  // namespace
