#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::ThrowsMessage;
using testing::UnorderedElementsAre;

const std::string kList = "MultiEntityDriver::GetAccountsList";
const std::string kListByType = "MultiEntityDriver::GetAccountListByType";

class Account : public AttachedTest {
 protected:
  bool IsEligible() {
    CAccnt opened(host.chart, 11, kFeatureTypeStandard);
    host.Forget();
    return MultiEntityDriver::IsCOAValidForMultiEntity(&opened);
  }

  ScriptedAccount& account = host.chart.accounts[11];
};

TEST_F(Account, ThatIsNoneIsNotEligible) {
  EXPECT_FALSE(MultiEntityDriver::IsCOAValidForMultiEntity(nullptr));
  EXPECT_THAT(host.Calls(), IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(Account, IsTestedInThisOrderWithoutALine) {
  account.type = KrEnumerations::kBank;

  EXPECT_TRUE(IsEligible());

  EXPECT_THAT(host.Calls(), InOrder("GetType(11)", "GetIsSubAccnt(11)", "IsSpecial(11, 5)",
                                    "IsFeatureEnabled(MultiEntityAccounts, Bank)", "ReleaseAccount(11)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(Account, UnderAnotherIsNeverEligible) {
  account.isSubAccount = true;

  EXPECT_FALSE(IsEligible());

  EXPECT_THAT(host.Calls(), InOrder("GetType(11)", "GetIsSubAccnt(11)", "ReleaseAccount(11)"));
}

TEST_F(Account, OfReceivablesIsNeverEligible) {
  account.type = KrEnumerations::kAccountsReceivable;

  EXPECT_FALSE(IsEligible());

  EXPECT_THAT(host.Calls(), InOrder("GetType(11)", "GetIsSubAccnt(11)", "ReleaseAccount(11)"));
}

TEST_F(Account, OfPayablesIsNeverEligible) {
  account.type = KrEnumerations::kAccountsPayable;
  EXPECT_FALSE(IsEligible());
}

TEST_F(Account, WithoutPostingsIsNeverEligible) {
  account.type = KrEnumerations::kNonPosting;
  EXPECT_FALSE(IsEligible());
}

TEST_F(Account, OfTheSpecialKindFiveIsNotEligible) {
  account.specialKinds = {5};

  EXPECT_FALSE(IsEligible());

  EXPECT_THAT(host.Calls(), InOrder("GetType(11)", "GetIsSubAccnt(11)", "IsSpecial(11, 5)", "ReleaseAccount(11)"));
}

TEST_F(Account, OfAnotherSpecialKindIsEligible) {
  account.specialKinds = {1, 4, 6};
  EXPECT_TRUE(IsEligible());
}

TEST_F(Account, OfATypeThatIsSwitchedOffIsNotEligible) {
  account.type = KrEnumerations::kIncome;
  host.switches.TurnOff(kAccountsSection, "Income");
  EXPECT_FALSE(IsEligible());
}

TEST_F(Account, OfATypeAboveFifteenPassesTheTestOfTypesButHasNoSwitch) {
  account.type = 16;

  EXPECT_FALSE(IsEligible());

  EXPECT_THAT(host.Calls(), InOrder("GetType(11)", "GetIsSubAccnt(11)", "IsSpecial(11, 5)", "ReleaseAccount(11)"));
}

TEST_F(Account, WhoseSwitchCannotBeReadIsNotEligible) {
  account.type = KrEnumerations::kIncome;
  host.ThrowAtNth("IsFeatureEnabled", 1, std::runtime_error("the switches cannot be reached"));

  EXPECT_FALSE(IsEligible());

  EXPECT_THAT(host.Calls(), InOrder("GetType(11)", "GetIsSubAccnt(11)", "IsSpecial(11, 5)",
                                    "IsFeatureEnabled(MultiEntityAccounts, Income)", "ReleaseAccount(11)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(Account, ThatTheHostCannotReadIsNotEligible) {
  host.ThrowAtNth("GetType", 1, std::runtime_error("the list is gone"));
  EXPECT_FALSE(IsEligible());
}

class EligibleType : public Account, public testing::WithParamInterface<std::int16_t> {};

TEST_P(EligibleType, IsEligible) {
  account.type = GetParam();
  EXPECT_TRUE(IsEligible());
}

INSTANTIATE_TEST_SUITE_P(EveryOther, EligibleType,
                         testing::Values<std::int16_t>(0, 2, 3, 4, 6, 7, 8, 9, 10, 11, 12, 13, 14));

class AccountsList : public Company {
 protected:
  MEStatusCode List(int filter, std::string realmId = {}) {
    return MultiEntityDriver::GetAccountsList(accounts, static_cast<MEAccountFilter>(filter), realmId);
  }

  void KeepBothPartners() {
    host.store.relations = {
        RelationRow({.relationId = 1, .realmId = "north", .dueFromAccountId = 11, .dueToAccountId = 12}),
        RelationRow({.relationId = 2, .realmId = "south", .dueFromAccountId = 13, .dueToAccountId = 14})};
    host.chart.accounts[15] = {.name = "Checking", .type = KrEnumerations::kBank};
  }

  std::unordered_map<long, std::pair<std::string, std::string>> accounts{{77, {"the caller's own", "before the call"}}};
};

auto TheCallersOwn() {
  return UnorderedElementsAre(Pair(77, Pair("the caller's own", "before the call")));
}

TEST_F(AccountsList, IsRefusedWhileTheFeatureIsOffAndLeftAsItWas) {
  TurnTheFeatureOff();

  EXPECT_EQ(List(MEAccountFilterUnused), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kList, "MULTIENTITY: GetAllUnusedAccounts :Feature is disabled"));
  EXPECT_THAT(accounts, TheCallersOwn());
  EXPECT_THAT(host.CallsOf({"GetAllAccounts"}), IsEmpty());
}

TEST_F(AccountsList, IsReplacedByTheEligibleAccountsWithTheHostsTwoTexts) {
  EXPECT_EQ(List(0), MEStatusSuccess);

  EXPECT_THAT(accounts, UnorderedElementsAre(Pair(11, Pair("Due from North", "Other Current Asset")),
                                             Pair(12, Pair("Due to North", "Other Current Liability")),
                                             Pair(13, Pair("Due from South", "Other Current Asset")),
                                             Pair(14, Pair("Due to South", "Other Current Liability"))));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kList), FeatureAsked(), RightAsked(), RightAnswered(), Exiting(kList)));
}

TEST_F(AccountsList, LeavesTheRelationsUnreadWithoutAFilterSoThatABrokenTableDoesNotMatter) {
  KeepBothPartners();
  host.FailAt("GetAllRelations");

  EXPECT_EQ(List(0), MEStatusSuccess);
  EXPECT_EQ(List(3), MEStatusSuccess);

  EXPECT_EQ(accounts.size(), 5U);
  EXPECT_THAT(host.CallsOf({"GetAllRelations"}), IsEmpty());
}

TEST_F(AccountsList, LeavesOutTheAccountsOfEveryRelation) {
  KeepBothPartners();

  EXPECT_EQ(List(MEAccountFilterUnused, "north"), MEStatusSuccess);

  EXPECT_THAT(accounts, UnorderedElementsAre(Pair(15, Pair("Checking", "Bank"))));
}

TEST_F(AccountsList, KeepsTheAccountsOfTheRelationThatIsBeingEdited) {
  KeepBothPartners();

  EXPECT_EQ(List(MEAccountFilterUnusedOrOwn, "north"), MEStatusSuccess);

  EXPECT_THAT(accounts, UnorderedElementsAre(Pair(11, testing::_), Pair(12, testing::_), Pair(15, testing::_)));
}

TEST_F(AccountsList, ComparesTheRealmIdExactly) {
  KeepBothPartners();

  EXPECT_EQ(List(MEAccountFilterUnusedOrOwn, "North"), MEStatusSuccess);

  EXPECT_THAT(accounts, UnorderedElementsAre(Pair(15, testing::_)));
}

TEST_F(AccountsList, LosesNothingToARelationWithoutAccounts) {
  host.store.relations = {RelationRow({.realmId = "north", .state = 4})};

  EXPECT_EQ(List(MEAccountFilterUnused), MEStatusSuccess);

  EXPECT_EQ(accounts.size(), 4U);
}

TEST_F(AccountsList, NeverOffersPayables) {
  host.chart.accounts = {{15, {.name = "Cards", .type = KrEnumerations::kCreditCard}},
                         {16, {.name = "Payables", .type = KrEnumerations::kAccountsPayable}}};

  EXPECT_EQ(List(0), MEStatusSuccess);

  EXPECT_THAT(accounts, UnorderedElementsAre(Pair(15, Pair("Cards", "Credit Card"))));
  EXPECT_THAT(host.CallsOf({"GetType"}), UnorderedElementsAre("GetType(15)", "GetType(16)"));
}

TEST_F(AccountsList, OffersNoBankAccountWhileBankAccountsAreSwitchedOff) {
  host.chart.accounts[15] = {.name = "Checking", .type = KrEnumerations::kBank};
  host.switches.TurnOff(kAccountsSection, "Bank");

  List(0);

  EXPECT_EQ(accounts.size(), 4U);
  EXPECT_FALSE(accounts.contains(15));
}

TEST_F(AccountsList, LeavesOutSubAccountsAndSpecialAccountsOfTheFifthKind) {
  host.chart.accounts[11].isSubAccount = true;
  host.chart.accounts[12].specialKinds = {5};

  List(0);

  EXPECT_THAT(accounts, UnorderedElementsAre(Pair(13, testing::_), Pair(14, testing::_)));
}

TEST_F(AccountsList, DoesNotTestForDeletedAccounts) {
  host.chart.accounts[11].deleted = true;

  List(0);

  EXPECT_TRUE(accounts.contains(11));
  EXPECT_THAT(host.CallsOf({"GetDeleted"}), IsEmpty());
}

TEST_F(AccountsList, OpensEachAccountThatIsLeftOnce) {
  KeepBothPartners();

  List(MEAccountFilterUnused);

  EXPECT_THAT(host.CallsOf({"GetAllAccounts", "GetAllRelations", "OpenAccount", "ReleaseAccount"}),
              InOrder("GetAllAccounts()", "GetAllRelations()", "OpenAccount(15, 1)", "ReleaseAccount(15)"));
}

TEST_F(AccountsList, TakesTheLoadFactorOfTheHostsMap) {
  accounts.max_load_factor(9.0F);
  host.chart.accountMapLoadFactor = 2.5F;

  List(0);

  EXPECT_FLOAT_EQ(accounts.max_load_factor(), 2.5F);
}

TEST_F(AccountsList, ReportsAnUnreadableRelationTableAndIsLeftAsItWas) {
  host.FailAt("GetAllRelations");

  EXPECT_EQ(List(MEAccountFilterUnused), MEStatusReadFailed);

  EXPECT_THAT(accounts, TheCallersOwn());
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kList), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table")));
}

TEST_F(AccountsList, ReportsAnIndexOutOfRangeWithItsTextAndIsLeftAsItWas) {
  host.ThrowAt("GetAllAccounts", std::out_of_range("no such account"));

  EXPECT_EQ(List(0), MEStatusException);

  EXPECT_THAT(accounts, TheCallersOwn());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kList), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Exception as out of range "
                                          "no such account")));
}

TEST_F(AccountsList, ReportsAnotherExceptionAsUnknown) {
  host.ThrowAt("GetAllRelations", std::runtime_error("the file is locked"));

  EXPECT_EQ(List(MEAccountFilterUnusedOrOwn, "north"), MEStatusException);

  EXPECT_THAT(accounts, TheCallersOwn());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kList), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Unknown Exception ")));
}

TEST_F(AccountsList, ReportsAnythingThatIsThrownWhileAccountsAreTestedAndReleasesThem) {
  host.ThrowAtNth("IsSpecial", 3, 42);

  EXPECT_EQ(List(0), MEStatusException);

  EXPECT_THAT(accounts, TheCallersOwn());
  EXPECT_EQ(host.chart.open.Count(), 0U);
  EXPECT_THAT(host.LinesOf(kList),
              InOrder(Entering(kList), Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Unknown Exception ")));
}

TEST_F(AccountsList, ReportsAnAccountThatCannotBeOpened) {
  host.ThrowAtNth("OpenAccount", 2, std::out_of_range("record"));

  EXPECT_EQ(List(0), MEStatusException);

  EXPECT_THAT(
      host.LinesOf(kList),
      InOrder(Entering(kList), Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Exception as out of range record")));
}

TEST_F(AccountsList, ReportsAnAccountTypesSwitchThatCannotBeRead) {
  host.ThrowAtNth("IsFeatureEnabled", 4, std::runtime_error("the switches cannot be reached"));

  EXPECT_EQ(List(0), MEStatusException);

  EXPECT_THAT(accounts, TheCallersOwn());
  EXPECT_THAT(host.LinesOf(kList),
              InOrder(Entering(kList), Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Unknown Exception ")));
}

class AccountsOfAType : public Company {
 protected:
  MEStatusCode List(short type) { return MultiEntityDriver::GetAccountListByType(type, accounts); }

  std::vector<std::pair<std::string, long>> accounts{{"the caller's own", 77}};
};

TEST_F(AccountsOfAType, AreRefusedWhileTheFeatureIsOff) {
  TurnTheFeatureOff();

  EXPECT_EQ(List(7), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kListByType, "MULTIENTITY: GetAccountList :Feature is disabled"));
  EXPECT_THAT(accounts, ElementsAre(Pair("the caller's own", 77)));
}

TEST_F(AccountsOfAType, ReplaceTheCallersListInTheHostsOrderAndNeedNoRight) {
  host.permissions.administrator = false;

  EXPECT_EQ(List(7), MEStatusSuccess);

  EXPECT_THAT(accounts, ElementsAre(Pair("Due to North", 12), Pair("Due to South", 14)));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kListByType), FeatureAsked(), Exiting(kListByType)));
}

TEST_F(AccountsOfAType, AreNotTestedForEligibility) {
  host.chart.accounts[21] = {.name = "Payables", .type = KrEnumerations::kAccountsPayable};
  host.chart.accounts[20] = {.name = "Payables:Old", .type = KrEnumerations::kAccountsPayable, .isSubAccount = true};

  EXPECT_EQ(List(5), MEStatusSuccess);

  EXPECT_THAT(accounts, ElementsAre(Pair("Payables", 21), Pair("Payables:Old", 20)));
  EXPECT_THAT(host.CallsOf({"GetListOfAccounts", "OpenAccount"}), InOrder("GetListOfAccounts(5)"));
}

// The only call that can throw, because the gate keeps what the switches throw.
TEST_F(AccountsOfAType, LetTheHostsExceptionThroughWithoutAnExitLine) {
  host.ThrowAt("GetListOfAccounts", std::runtime_error("the list is locked"));

  EXPECT_THAT([this] { List(7); }, ThrowsMessage<std::runtime_error>("the list is locked"));

  EXPECT_THAT(accounts, ElementsAre(Pair("the caller's own", 77)));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kListByType), FeatureAsked()));
}

TEST_F(AccountsOfAType, AreNoneForATypeThatNoAccountHas) {
  EXPECT_EQ(List(300), MEStatusSuccess);

  EXPECT_THAT(accounts, IsEmpty());
}

}  // namespace
