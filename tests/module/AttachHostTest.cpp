#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "module/Arrangements.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

bool GateIsOpen() {
  return MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal);
}

class AttachingAHost : public testing::Test {
 protected:
  void TearDown() override { DetachHost(); }

  ScriptedHost host;
};

TEST_F(AttachingAHost, LetsTheLibraryAskThatHost) {
  EXPECT_EQ(AttachHost(host.Services()), MEAttachDone);

  EXPECT_TRUE(GateIsOpen());

  EXPECT_THAT(host.CallsOf({"IsFeatureEnabled"}), SizeIs(3));
}

TEST_F(AttachingAHost, CopiesTheRecordOfServices) {
  auto services = std::make_unique<HostServices>(host.Services());
  AttachHost(*services);
  services.reset();

  EXPECT_TRUE(GateIsOpen());
}

TEST_F(AttachingAHost, IsRefusedForARecordOfAnotherSize) {
  HostServices services = host.Services();
  services.size = sizeof(HostServices) - sizeof(void*);
  EXPECT_EQ(AttachHost(services), MEAttachSizeUnknown);
  services.size = sizeof(HostServices) + sizeof(void*);
  EXPECT_EQ(AttachHost(services), MEAttachSizeUnknown);

  EXPECT_FALSE(GateIsOpen());
}

TEST_F(AttachingAHost, IsRefusedForAnotherVersion) {
  HostServices services = host.Services();
  services.version = kHostServicesVersion + 1;
  EXPECT_EQ(AttachHost(services), MEAttachVersionUnknown);
  services.version = 0;
  EXPECT_EQ(AttachHost(services), MEAttachVersionUnknown);

  EXPECT_FALSE(GateIsOpen());
}

TEST_F(AttachingAHost, IsRefusedForAnotherAbi) {
  HostServices services = host.Services();
  services.abiTag = kHostAbiTag ^ 1U;

  EXPECT_EQ(AttachHost(services), MEAttachAbiUnknown);

  EXPECT_FALSE(GateIsOpen());
}

TEST_F(AttachingAHost, AsksNothingOfAHostThatIsRefused) {
  HostServices services = host.Services();
  services.version = 99;

  AttachHost(services);
  GateIsOpen();

  EXPECT_THAT(host.Events(), IsEmpty());
}

TEST_F(AttachingAHost, IsRefusedWhileAnotherIsAttached) {
  ScriptedHost second;
  AttachHost(host.Services());

  EXPECT_EQ(AttachHost(second.Services()), MEAttachAlreadyAttached);
  EXPECT_EQ(AttachHost(host.Services()), MEAttachAlreadyAttached);

  EXPECT_TRUE(GateIsOpen());
  EXPECT_THAT(host.Lines(), InOrder(FeatureAsked()));
  EXPECT_THAT(second.Events(), IsEmpty());
}

TEST_F(AttachingAHost, IsPossibleAgainAfterTheFirstWasLetGo) {
  ScriptedHost second;
  AttachHost(host.Services());
  DetachHost();

  EXPECT_EQ(AttachHost(second.Services()), MEAttachDone);
  GateIsOpen();

  EXPECT_THAT(host.Lines(), IsEmpty());
  EXPECT_THAT(second.Lines(), InOrder(FeatureAsked()));
  DetachHost();
}

TEST_F(AttachingAHost, IsPossibleWithoutAPlatformOfItsOwn) {
  HostServices services = host.Services();
  services.platform = nullptr;
  host.permissions.administrator = true;

  EXPECT_EQ(AttachHost(services), MEAttachDone);

  // No bridge library lies beside the tests.
  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
  EXPECT_THAT(host.CallsOf({"CurrentUserIsAdminUser"}), InOrder("CurrentUserIsAdminUser()"));
  EXPECT_TRUE(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb().ValidDate());
}

TEST_F(AttachingAHost, MayBeUndoneAlthoughNoneIsAttached) {
  DetachHost();
  DetachHost();

  EXPECT_EQ(AttachHost(host.Services()), MEAttachDone);
}

TEST_F(AttachingAHost, ReadsTheSwitchesOfTheFirstHostOnlyAlthoughTheGateWasAskedBefore) {
  EXPECT_FALSE(GateIsOpen());
  host.switches.TurnOff(kFeatureSection, "ME_FOR_BILLS");
  AttachHost(host.Services());

  EXPECT_TRUE(GateIsOpen());
  EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchBills));

  EXPECT_THAT(host.CallsOf({"IsFeatureEnabled"}), SizeIs(3));
}

TEST_F(AttachingAHost, ClosesTheGateAgainWhenItIsUndone) {
  AttachHost(host.Services());
  EXPECT_TRUE(GateIsOpen());

  DetachHost();

  EXPECT_FALSE(GateIsOpen());
}

// A host that was attached and let go: whatever the library did with it afterwards would be in its record.
class WithoutAHost : public testing::Test {
 protected:
  WithoutAHost() {
    host.permissions.administrator = true;
    host.permissions.Grant(kFeatureJournalEntries, kActionCreate);
    AttachHost(host.Services());
    DetachHost();
    host.Forget();
  }
  void TearDown() override { EXPECT_THAT(host.Events(), IsEmpty()); }

  ScriptedHost host;
  DBMultiEntityRelation row = RelationRow({.dueFromAccountId = 1, .dueToAccountId = 2});
};

TEST_F(WithoutAHost, TheFeatureIsOff) {
  EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal));
  EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchChecks));
}

TEST_F(WithoutAHost, NoRightIsGrantedButThoseThatAlwaysAre) {
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionCreateTransactions, kFeatureJournalEntries));
  EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureNone));
  EXPECT_TRUE(MultiEntityDriver::HasMEPermission(MEPermissionViewRelations, kFeatureNone));
}

TEST_F(WithoutAHost, NoAccountTypeIsEnabled) {
  EXPECT_FALSE(MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::kBank));
}

TEST_F(WithoutAHost, RelationsAreNeitherChangedNorRead) {
  std::vector<DBMultiEntityRelation> rows;
  std::vector<std::string> realmIds;

  EXPECT_EQ(MultiEntityDriver::CreateRelation("9130", "North Ltd", {}, MEStatePending, {DueFrom(11), DueTo(12)}),
            MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::UpdateRelation({.realmId = "9130",
                                               .updateRealm = {},
                                               .state = MEStateKeepStored,
                                               .accounts = {},
                                               .skipPermissionCheck = true}),
            MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::DeleteRelation("9130", true), MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::GetRelation("9130", row), MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::GetRelationById(1, row), MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::GetRelationsList(rows), MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realmIds, false), MEStatusFeatureDisabled);
}

TEST_F(WithoutAHost, NoAccountIsFound) {
  std::unordered_map<long, std::pair<std::string, std::string>> accounts;
  std::vector<std::pair<std::string, long>> accountsOfType;

  EXPECT_EQ(MultiEntityDriver::PopulateCOAInRelation(row, {DueFrom(11)}), MEStatusAccountUnusable);
  EXPECT_EQ(MultiEntityDriver::GetAccountsList(accounts, MEAccountFilterUnused, "9130"), MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::GetAccountListByType(0, accountsOfType), MEStatusFeatureDisabled);
  EXPECT_FALSE(MultiEntityDriver::IsCOAValidForMultiEntity(nullptr));
}

TEST_F(WithoutAHost, NoJournalEntryIsRecordedOrRemoved) {
  std::uint32_t txnId = 4711;

  EXPECT_EQ(
      MultiEntityDriver::RecordGeneralJournalEntry("9130", DueFrom(21), 12, "1.00", "request", {"Landlord", 31}, txnId),
      MEStatusPermissionDenied);
  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusJournalEntryNotRemoved);
  EXPECT_EQ(txnId, 4711U);
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(WithoutAHost, NoTransactionIsListed) {
  std::vector<METxnInfo> list(2);

  EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(list, 10), MEStatusReadFailed);
  EXPECT_THAT(list, IsEmpty());
  EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(list, NullDate(), NullDate()), MEStatusSuccess);
  EXPECT_THAT(list, IsEmpty());
}

TEST_F(WithoutAHost, NoTransactionIsMovedToAState) {
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState("9130", "request-1", MEStateEstablished),
            MEStatusFeatureDisabled);
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateEstablished), MEStatusInvalidData);
  EXPECT_EQ(MultiEntityDriver::DoesTransactionExist("9130", "request-1"), MEStatusDeclined);
}

TEST_F(WithoutAHost, NoRejectedTransactionIsSavedListedOrDeleted) {
  std::vector<MERejectedTxnInfo> list(1);

  EXPECT_EQ(MultiEntityDriver::SaveRejectedTransaction("request-1", 9, "9130", "1.00", "partner-1"),
            MEStatusPermissionDenied);
  EXPECT_EQ(MultiEntityDriver::GetAllRejectedTransaction(list), MEStatusFeatureDisabled);
  EXPECT_THAT(list, SizeIs(1));
  EXPECT_EQ(MultiEntityDriver::DeleteRejectedTransaction("request-1"), MEStatusDeclined);
}

TEST_F(WithoutAHost, NoTransactionIsQueried) {
  std::vector<unsigned long> txns{5};

  EXPECT_FALSE(MultiEntityPrivateAccess::GetTxns(12, txns));
  EXPECT_FALSE(MultiEntityPrivateAccess::GetTxnsForPeriod(NullDate(), NullDate(), 12, 7, txns));

  EXPECT_THAT(txns, testing::ElementsAre(5));
}

TEST_F(WithoutAHost, NoRealmIsRemembered) {
  bool ok = false;
  std::string realmId = "9130";

  EXPECT_EQ(MultiEntityDriver::GetMECacheRealmId("9130", ok), nullptr);
  EXPECT_TRUE(ok);
  EXPECT_FALSE(MultiEntityDriver::SetMECacheRealmId(realmId.data()));
  EXPECT_FALSE(MultiEntityPrivateAccess::IsRealmReset("9130"));
}

TEST_F(WithoutAHost, OnlyAUserWithoutARealmIsStopped) {
  EXPECT_TRUE(MultiEntityDriver::BlockUserIfRealmReset(""));
  EXPECT_FALSE(MultiEntityDriver::BlockUserIfRealmReset("9130"));
  EXPECT_TRUE(MultiEntityDriver::CheckForPluginNavigation());
}

TEST_F(WithoutAHost, OnlyTheRolesThatNeedNoRightHaveAPersona) {
  EXPECT_EQ(MultiEntityDriver::SybaseRelationsUserPersonaForRole(0), SybaseRelationsPersonaManager);
  EXPECT_EQ(MultiEntityDriver::SybaseRelationsUserPersonaForRole(15), SybaseRelationsPersonaManager);
  EXPECT_EQ(MultiEntityDriver::SybaseRelationsUserPersonaForRole(1), SybaseRelationsPersonaNone);
  EXPECT_EQ(MultiEntityDriver::SybaseRelationsUserPersonaForRole(2), SybaseRelationsPersonaNone);
}

TEST_F(WithoutAHost, TheLaunchIsTimedByTheUsualValues) {
  EXPECT_EQ(MESchedulerUtil::GetDelayInSecondsFromDCE(), 900U);
  EXPECT_EQ(MESchedulerUtil::GetHoursToLaunchFromDCE(), 10U);
  EXPECT_EQ(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(), NullDate());
  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 36000U);
  EXPECT_TRUE(MultiEntityPrivateAccess::IsTimerLaunchDateToday());
}

TEST_F(WithoutAHost, DatesAreConvertedAsEver) {
  EXPECT_EQ(MESchedulerUtil::DateToString({2025, 3, 3}), "20250303");
  EXPECT_EQ(MESchedulerUtil::StringToDate("20250303"), DateType32(2025, 3, 3));
  EXPECT_EQ(MESchedulerUtil::SystemTimeToDate(host.platform.now), DateType32(2024, 3, 3));
}

TEST_F(WithoutAHost, NoTimerIsArmedAndNoReminderQueued) {
  EXPECT_FALSE(MESchedulerUtil::CanProcessSchedulerMsg());
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();
  MESchedulerUtil::StartScheduler();
  MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0);
  MESchedulerUtil::KillAnyExistingScheduler();

  EXPECT_THAT(host.platform.timers, IsEmpty());
  EXPECT_THAT(host.application.queue, IsEmpty());
}

TEST_F(WithoutAHost, AMessageStaysItsMakersAndDoesNothing) {
  const std::unique_ptr<MultiEntityScheduler> message(new MultiEntityScheduler);

  message->ProcessMsg();

  EXPECT_THAT(host.application.queue, IsEmpty());
}

TEST_F(AttachingAHost, HasItsOwnLeastDelayAlthoughTheTimerWasStartedBefore) {
  MESchedulerUtil::StartScheduler();
  host.values.values[{"MultiEntity", "InitialDelayInSeconds"}] = "7";
  AttachHost(host.Services());

  MESchedulerUtil::StartScheduler();

  EXPECT_THAT(host.CallsOf({"SetTimer"}), testing::ElementsAre("SetTimer(0, 7000)"));
}

TEST_F(AttachingAHost, HasItsOwnLaunchHourAlthoughItWasAskedForBefore) {
  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 36000U);
  EXPECT_TRUE(MultiEntityPrivateAccess::IsTimerLaunchDateToday());
  host.values.values[{"MultiEntity", "HoursToLaunchDay"}] = "13";
  AttachHost(host.Services());

  EXPECT_EQ(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(), 3600U);
  EXPECT_TRUE(MultiEntityPrivateAccess::IsTimerLaunchDateToday());
}

}  // namespace
