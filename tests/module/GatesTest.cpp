#include <stdexcept>
#include <string>

#include "module/Arrangements.h"

namespace {

using testing::IsEmpty;

class FeatureGate : public AttachedTest {};

TEST_F(FeatureGate, IsOpenWhileNothingIsSwitchedOffAndWritesNoExitLine) {
  EXPECT_TRUE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal));
  EXPECT_THAT(host.Lines(), InOrder(FeatureAsked()));
}

TEST_F(FeatureGate, SupportsEveryKeyThatItIsAskedFor) {
  EXPECT_TRUE(MultiEntityDriver::IsFeatureEnabled(static_cast<MESupportCheckKey>(0), MEKillSwitchGlobal));
  EXPECT_TRUE(MultiEntityDriver::IsFeatureEnabled(static_cast<MESupportCheckKey>(-7), MEKillSwitchGlobal));
  EXPECT_TRUE(MultiEntityDriver::IsFeatureEnabled(static_cast<MESupportCheckKey>(99), MEKillSwitchGlobal));
}

TEST_F(FeatureGate, IsClosedForBillsOnlyWhenBillsAreSwitchedOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_BILLS");

  EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchBills));
  EXPECT_TRUE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchChecks));

  EXPECT_THAT(host.Lines(),
              InOrder(FeatureAsked(), Gate("MULTIENTITY::Exiting MultiEntityDriver::IsFeatureEnabled, key 1, value 0 "),
                      FeatureAsked()));
}

TEST_F(FeatureGate, NamesTheKeyThatWasAskedForAlsoWhenTheGlobalSwitchClosesIt) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchChecks));

  EXPECT_THAT(host.Lines(), InOrder(FeatureAsked(), GlobalFeatureOff(),
                                    Gate("MULTIENTITY::Exiting MultiEntityDriver::IsFeatureEnabled, key 2, value 0 ")));
}

TEST_F(FeatureGate, WritesItsEntryLineBeforeTheSwitchesAreRead) {
  MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal);

  EXPECT_THAT(host.Events(), InOrder("MULTIENTITY::Entering MultiEntityDriver::IsFeatureEnabled",
                                     "IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
                                     "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
                                     "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)"));
}

int AnswersAccountant() {
  return 1;
}
int AnswersNoAccountant() {
  return 0;
}
int AnswersInTheHighBytesOnly() {
  return 0x7FFFFF00;
}
int AnswersInTheLowByteToo() {
  return 0x7FFFFF02;
}

class PermissionGate : public AttachedTest {
 protected:
  template <class Entry>
  void ProvideBridge(Entry* entry) {
    host.platform.Provide("AddinBridge.DLL", "IsSybaseAccountant", entry);
  }
};

TEST_F(PermissionGate, LetsAnAccountantUserManageRelationsWithoutAskingForTheAdministrator) {
  ProvideBridge(AnswersAccountant);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.Calls(),
              InOrder("LoadLibraryA(AddinBridge.DLL)", "GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)",
                      "FreeLibrary(AddinBridge.DLL)"));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, AsksForTheAdministratorOnceTheBridgeHasDenied) {
  ProvideBridge(AnswersNoAccountant);
  host.permissions.administrator = true;

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.Calls(),
              InOrder("LoadLibraryA(AddinBridge.DLL)", "GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)",
                      "FreeLibrary(AddinBridge.DLL)", "CurrentUserIsAdminUser()"));
}

TEST_F(PermissionGate, KeepsTheLowByteOfTheBridgesAnswerOnly) {
  ProvideBridge(AnswersInTheHighBytesOnly);

  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
}

TEST_F(PermissionGate, TakesAnyLowByteButZeroAsAnAccountantUser) {
  ProvideBridge(AnswersInTheLowByteToo);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
}

TEST_F(PermissionGate, RefusesRelationsToAUserWhoIsNeitherAccountantNorAdministrator) {
  ProvideBridge(AnswersNoAccountant);

  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, GrantsRelationsToTheAdministratorOnlyWhenTheBridgeCannotBeLoaded) {
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
  host.permissions.administrator = true;
  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.Calls(), InOrder("LoadLibraryA(AddinBridge.DLL)", "CurrentUserIsAdminUser()",
                                    "LoadLibraryA(AddinBridge.DLL)", "CurrentUserIsAdminUser()"));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, TakesABridgeWithoutTheEntryAsNoAccountantAndUnloadsIt) {
  host.platform.Provide("AddinBridge.DLL", "SomethingElse", AnswersAccountant);

  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.Calls(),
              InOrder("LoadLibraryA(AddinBridge.DLL)", "GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)",
                      "FreeLibrary(AddinBridge.DLL)", "CurrentUserIsAdminUser()"));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, AsksTheBridgeAfreshEachTime) {
  ProvideBridge(AnswersAccountant);
  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  ProvideBridge(AnswersNoAccountant);
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
}

TEST_F(PermissionGate, GrantsViewingOfRelationsAlwaysAndAsksNobody) {
  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionViewRelations, kFeatureNone));
  EXPECT_THAT(host.Calls(), IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, GrantsTheFifthKindAlwaysAndAsksNobody) {
  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionAlwaysGranted, kFeatureNone));
  EXPECT_THAT(host.Calls(), IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, GrantsCreationByTheRightToCreateInTheFeature) {
  host.permissions.Grant(kFeatureBills, kActionCreate);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionCreateTransactions, kFeatureBills));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionCreateTransactions, kFeatureChecks));

  EXPECT_THAT(host.Calls(), InOrder("FeaturePermissionAvailable(20, 1, 0)", "FeaturePermissionAvailable(16, 1, 0)"));
}

TEST_F(PermissionGate, GrantsModificationByTheRightToModifyInTheFeature) {
  host.permissions.Grant(kFeatureChecks, kActionModify);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionModifyTransactions, kFeatureChecks));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionModifyTransactions, kFeatureBills));

  EXPECT_THAT(host.Calls(), InOrder("FeaturePermissionAvailable(16, 5, 0)", "FeaturePermissionAvailable(20, 5, 0)"));
}

TEST_F(PermissionGate, GrantsViewingByTheRightToViewInTheFeature) {
  host.permissions.Grant(kFeatureJournalEntries, kActionView);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureJournalEntries));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureBills));

  EXPECT_THAT(host.Calls(), InOrder("FeaturePermissionAvailable(19, 2, 0)", "FeaturePermissionAvailable(20, 2, 0)"));
}

TEST_F(PermissionGate, RefusesTransactionRightsWithoutAFeatureAndAsksNobody) {
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionCreateTransactions, kFeatureNone));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionModifyTransactions, kFeatureNone));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureNone));

  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(PermissionGate, GrantsTheReminderToAnAccountantUser) {
  ProvideBridge(AnswersAccountant);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureBills));

  EXPECT_THAT(host.Calls(),
              InOrder("LoadLibraryA(AddinBridge.DLL)", "GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)",
                      "FreeLibrary(AddinBridge.DLL)"));
}

TEST_F(PermissionGate, GrantsTheReminderToTheAdministrator) {
  host.permissions.administrator = true;

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureBills));

  EXPECT_THAT(host.Calls(), InOrder("LoadLibraryA(AddinBridge.DLL)", "CurrentUserIsAdminUser()"));
}

TEST_F(PermissionGate, GrantsTheReminderByTheRightToCreateInTheFeature) {
  host.permissions.Grant(kFeatureBills, kActionCreate);

  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureBills));

  EXPECT_THAT(host.Calls(), InOrder("LoadLibraryA(AddinBridge.DLL)", "CurrentUserIsAdminUser()",
                                    "FeaturePermissionAvailable(20, 1, 0)"));
}

TEST_F(PermissionGate, AsksTheHostForTheReminderAlsoWithoutAFeature) {
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureNone));

  EXPECT_THAT(host.Calls(), InOrder("LoadLibraryA(AddinBridge.DLL)", "CurrentUserIsAdminUser()",
                                    "FeaturePermissionAvailable(0, 1, 0)"));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, RefusesAKindThatIsNoneAndSaysSoOncePerCall) {
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(static_cast<MEPermissionType>(7), kFeatureBills));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(static_cast<MEPermissionType>(-1), kFeatureBills));

  EXPECT_THAT(host.Calls(), IsEmpty());
  EXPECT_THAT(host.Lines(),
              InOrder(RightAsked(), Error("MULTIENTITY: Invalid option for permission"), RightAnswered(), RightAsked(),
                      Error("MULTIENTITY: Invalid option for permission"), RightAnswered()));
}

TEST_F(PermissionGate, UnloadsTheBridgeAndRefusesWhenTheLookUpOfItsEntryThrows) {
  ProvideBridge(AnswersAccountant);
  host.ThrowAt("GetProcAddress", std::runtime_error("the library is damaged"));

  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.CallsOf({"FreeLibrary"}), InOrder("FreeLibrary(AddinBridge.DLL)"));
  EXPECT_EQ(host.platform.LoadedLibraries(), 0U);
}

TEST_F(PermissionGate, RefusesWhenTheHostThrowsAndStillWritesItsExitLine) {
  host.ThrowAt("CurrentUserIsAdminUser", std::runtime_error("nobody is signed in"));

  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(PermissionGate, RefusesWhateverTheHostThrows) {
  host.ThrowAt("FeaturePermissionAvailable", 42);

  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureBills));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureNone));
}

struct AccountTypeFlag {
  std::int16_t type;
  const char* flag;
};

void PrintTo(const AccountTypeFlag& expected, std::ostream* out) {
  *out << expected.flag;
}

class AccountTypeSwitch : public AttachedTest, public testing::WithParamInterface<AccountTypeFlag> {
 protected:
  KrEnumerations::AccntTypeType Type() const { return static_cast<KrEnumerations::AccntTypeType>(GetParam().type); }
  std::string Question() const { return std::string("IsFeatureEnabled(MultiEntityAccounts, ") + GetParam().flag + ")"; }
};

TEST_P(AccountTypeSwitch, IsTheFlagOfTheTypeAskedAfreshEachTime) {
  EXPECT_TRUE(MultiEntityDriver::IsAccountTypeEnabledForME(Type()));
  host.switches.TurnOff(kAccountsSection, GetParam().flag);
  EXPECT_FALSE(MultiEntityDriver::IsAccountTypeEnabledForME(Type()));

  EXPECT_THAT(host.Calls(), InOrder(Question(), Question()));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, AccountTypeSwitch,
                         testing::Values(AccountTypeFlag{0, "Bank"}, AccountTypeFlag{1, "Accounts_Receivable"},
                                         AccountTypeFlag{2, "Other_Current_Asset"}, AccountTypeFlag{3, "Fixed_Asset"},
                                         AccountTypeFlag{4, "Other_Asset"}, AccountTypeFlag{5, "Accounts_Payable"},
                                         AccountTypeFlag{6, "Credit_Card"},
                                         AccountTypeFlag{7, "Other_Current_Liability"},
                                         AccountTypeFlag{8, "Long_Term_Liability"}, AccountTypeFlag{9, "Equity"},
                                         AccountTypeFlag{10, "Income"}, AccountTypeFlag{11, "Cost_of_Goods_Sold"},
                                         AccountTypeFlag{12, "Expense"}, AccountTypeFlag{13, "Other_Income"},
                                         AccountTypeFlag{14, "Other_Expense"}, AccountTypeFlag{15, "Non_Posting"}),
                         [](const testing::TestParamInfo<AccountTypeFlag>& tested) {
                           return std::string(tested.param.flag);
                         });

class AccountTypeSwitchThatCannotBeRead : public AttachedTest {};

TEST_F(AccountTypeSwitchThatCannotBeRead, IsTakenAsOff) {
  host.ThrowAt("IsFeatureEnabled", std::runtime_error("the switches cannot be reached"));

  EXPECT_FALSE(MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::kBank));

  EXPECT_THAT(host.Lines(), IsEmpty());
}

class AccountTypeWithoutSwitch : public AttachedTest, public testing::WithParamInterface<std::int16_t> {};

TEST_P(AccountTypeWithoutSwitch, IsNotEnabledAndTheHostIsNotAsked) {
  EXPECT_FALSE(MultiEntityDriver::IsAccountTypeEnabledForME(static_cast<KrEnumerations::AccntTypeType>(GetParam())));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Outside, AccountTypeWithoutSwitch,
                         testing::Values(std::int16_t{-1}, std::int16_t{16}, std::int16_t{32767},
                                         std::int16_t{-32768}));

}  // namespace
