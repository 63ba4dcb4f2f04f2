#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "module/Arrangements.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::Field;
using testing::Gt;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kDriver = "Src/MultiEntityDriver";
constexpr const char* kScheduler = "Src/MultiEntityScheduler";
constexpr const char* kUtils = "Src/MultiEntityUtils";

// Every line of an operation says where it comes from in the same words, whatever the compiler.
class LinesOf : public Company {
 protected:
  void ExpectAllFrom(const char* sourceFile, const std::string& shortName, const std::string& signature) const {
    EXPECT_THAT(host.LinesOf(shortName), AllOf(Not(IsEmpty()), Each(ComesFrom(sourceFile, shortName, signature)),
                                               Each(Field("sourceLine", &LogLine::sourceLine, Gt(0)))));
  }

  DBMultiEntityRelation row{};
};

TEST_F(LinesOf, TheFeatureGate) {
  TurnTheFeatureOff();

  MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal);

  ExpectAllFrom(kDriver, "MultiEntityDriver::IsFeatureEnabled",
                "bool __cdecl MultiEntityDriver::IsFeatureEnabled(enum MESupportCheckKey,enum MEKillSwitchKey)");
}

TEST_F(LinesOf, ThePermissionGate) {
  MultiEntityDriver::HasMEPermission(static_cast<MEPermissionType>(7), kFeatureNone);

  ExpectAllFrom(kDriver, "MultiEntityDriver::HasMEPermission",
                "bool __cdecl MultiEntityDriver::HasMEPermission(enum MEPermissionType,enum ProgramFeature)");
}

TEST_F(LinesOf, TheSwitchTable) {
  TurnTheFeatureOff();

  MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal);

  ExpectAllFrom(kUtils, "MultiEntityUtils::IsFeatureEnabled",
                "bool __cdecl MultiEntityUtils::IsFeatureEnabled(enum MEKillSwitchKey)");
}

TEST_F(LinesOf, TheReadingOfTheSwitchTable) {
  host.ThrowAt("IsFeatureEnabled", 42);

  MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal);

  ExpectAllFrom(kUtils, "MultiEntityUtils::InitializeMEKillSwitchLookUpTable",
                "bool __cdecl MultiEntityUtils::InitializeMEKillSwitchLookUpTable(void)");
}

TEST_F(LinesOf, CreateRelation) {
  MultiEntityDriver::CreateRelation("", "", {}, MEStatePending, {});

  ExpectAllFrom(kDriver, "MultiEntityDriver::CreateRelation",
                "enum MEStatusCode __cdecl MultiEntityDriver::CreateRelation(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,class Util::TString<char,class Util::TStringAllocator<char> >,enum "
                "MERelationType,enum MEState,class std::vector<struct MEAccountInfo,class std::allocator<struct "
                "MEAccountInfo> >)");
}

TEST_F(LinesOf, PopulateCOAInRelation) {
  MultiEntityDriver::PopulateCOAInRelation(row, {DueFrom(99)});

  ExpectAllFrom(kDriver, "MultiEntityDriver::PopulateCOAInRelation",
                "enum MEStatusCode __cdecl MultiEntityDriver::PopulateCOAInRelation(struct "
                "DMMultiEntityRelation::DBMultiEntityRelation &,class std::vector<struct MEAccountInfo,class "
                "std::allocator<struct MEAccountInfo> >)");
}

TEST_F(LinesOf, UpdateRelation) {
  MultiEntityDriver::UpdateRelation({});

  ExpectAllFrom(kDriver, "MultiEntityDriver::UpdateRelation",
                "enum MEStatusCode __cdecl MultiEntityDriver::UpdateRelation(struct MERelationInfo)");
}

TEST_F(LinesOf, DeleteRelation) {
  MultiEntityDriver::DeleteRelation("", false);

  ExpectAllFrom(kDriver, "MultiEntityDriver::DeleteRelation",
                "enum MEStatusCode __cdecl MultiEntityDriver::DeleteRelation(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,bool)");
}

TEST_F(LinesOf, GetRelation) {
  MultiEntityDriver::GetRelation("", row);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetRelation",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetRelation(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,struct DMMultiEntityRelation::DBMultiEntityRelation &)");
}

TEST_F(LinesOf, GetRelationById) {
  MultiEntityDriver::GetRelationById(1, row);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetRelationById",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetRelationById(long,struct "
                "DMMultiEntityRelation::DBMultiEntityRelation &)");
}

TEST_F(LinesOf, GetRelationsList) {
  std::vector<DBMultiEntityRelation> rows;

  MultiEntityDriver::GetRelationsList(rows);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetRelationsList",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetRelationsList(class std::vector<struct "
                "DMMultiEntityRelation::DBMultiEntityRelation,class std::allocator<struct "
                "DMMultiEntityRelation::DBMultiEntityRelation> > &)");
}

TEST_F(LinesOf, GetRelationRealmIdList) {
  std::vector<std::string> realmIds;

  MultiEntityDriver::GetRelationRealmIdList(realmIds, false);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetRelationRealmIdList",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetRelationRealmIdList(class std::vector<class "
                "std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >,class "
                "std::allocator<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> "
                "> > > &,bool)");
}

TEST_F(LinesOf, GetAccountsList) {
  std::unordered_map<long, std::pair<std::string, std::string>> accounts;

  MultiEntityDriver::GetAccountsList(accounts, MEAccountFilterUnused, "");

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetAccountsList",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetAccountsList(class std::unordered_map<long,struct "
                "std::pair<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> "
                ">,class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> > >,struct "
                "std::hash<long>,struct std::equal_to<long>,class std::allocator<struct std::pair<long const ,struct "
                "std::pair<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> "
                ">,class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> > > > > > "
                "&,enum MEAccountFilter,class std::basic_string<char,struct std::char_traits<char>,class "
                "std::allocator<char> >)");
}

TEST_F(LinesOf, GetAccountListByType) {
  std::vector<std::pair<std::string, long>> accounts;

  MultiEntityDriver::GetAccountListByType(0, accounts);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetAccountListByType",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetAccountListByType(short,class std::vector<struct "
                "std::pair<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> "
                ">,long>,class std::allocator<struct std::pair<class std::basic_string<char,struct "
                "std::char_traits<char>,class std::allocator<char> >,long> > > &)");
}

TEST_F(LinesOf, RecordGeneralJournalEntry) {
  std::uint32_t txnId = 0;

  MultiEntityDriver::RecordGeneralJournalEntry("", {}, 12, "", "", {}, txnId);

  ExpectAllFrom(kDriver, "MultiEntityDriver::RecordGeneralJournalEntry",
                "enum MEStatusCode __cdecl MultiEntityDriver::RecordGeneralJournalEntry(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,struct MEAccountInfo,int,class Util::TString<char,class "
                "Util::TStringAllocator<char> >,class Util::TString<char,class Util::TStringAllocator<char> >,struct "
                "MECNameInfo,unsigned int &)");
}

TEST_F(LinesOf, RemoveGeneralJournalEntry) {
  MultiEntityDriver::RemoveGeneralJournalEntry(71);

  ExpectAllFrom(kDriver, "MultiEntityDriver::RemoveGeneralJournalEntry",
                "enum MEStatusCode __cdecl MultiEntityDriver::RemoveGeneralJournalEntry(unsigned int)");
}

TEST_F(LinesOf, TheListingOfATransaction) {
  std::vector<METxnInfo> list;
  host.FailAt("GetTransactionWithTargets");

  MultiEntityDriver::GetListOfTxnTargetEntries(list, 10);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetListOfTxnTargetEntries",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetListOfTxnTargetEntries(class std::vector<struct "
                "METxnInfo,class std::allocator<struct METxnInfo> > &,long)");
}

TEST_F(LinesOf, TheListingOfAPeriod) {
  std::vector<METxnInfo> list;
  host.ThrowAt("GetAllTransactionWithTargets", 42);

  MultiEntityDriver::GetListOfTxnTargetEntries(list, NullDate(), NullDate());

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetListOfTxnTargetEntries",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetListOfTxnTargetEntries(class std::vector<struct "
                "METxnInfo,class std::allocator<struct METxnInfo> > &,class DateType32,class DateType32)");
}

TEST_F(LinesOf, UpdateTransactionWithStateByRequest) {
  MultiEntityDriver::UpdateTransactionWithState("", "", MEStateEstablished);

  ExpectAllFrom(
      kDriver, "MultiEntityDriver::UpdateTransactionWithState",
      "enum MEStatusCode __cdecl MultiEntityDriver::UpdateTransactionWithState(class Util::TString<char,class "
      "Util::TStringAllocator<char> >,class Util::TString<char,class Util::TStringAllocator<char> >,enum MEState)");
}

TEST_F(LinesOf, UpdateTransactionWithStateByLine) {
  MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateEstablished);

  ExpectAllFrom(kDriver, "MultiEntityDriver::UpdateTransactionWithState",
                "enum MEStatusCode __cdecl MultiEntityDriver::UpdateTransactionWithState(int,int,enum MEState)");
}

TEST_F(LinesOf, DoesTransactionExist) {
  host.ThrowAt("GetRelation", 42);

  MultiEntityDriver::DoesTransactionExist("", "");

  ExpectAllFrom(kDriver, "MultiEntityDriver::DoesTransactionExist",
                "enum MEStatusCode __cdecl MultiEntityDriver::DoesTransactionExist(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,class Util::TString<char,class Util::TStringAllocator<char> >)");
}

TEST_F(LinesOf, SaveRejectedTransaction) {
  MultiEntityDriver::SaveRejectedTransaction("", 8, "", "", "");

  ExpectAllFrom(kDriver, "MultiEntityDriver::SaveRejectedTransaction",
                "enum MEStatusCode __cdecl MultiEntityDriver::SaveRejectedTransaction(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,short,class Util::TString<char,class Util::TStringAllocator<char> "
                ">,class Util::TString<char,class Util::TStringAllocator<char> >,class Util::TString<char,class "
                "Util::TStringAllocator<char> >)");
}

TEST_F(LinesOf, GetAllRejectedTransaction) {
  std::vector<MERejectedTxnInfo> list;

  MultiEntityDriver::GetAllRejectedTransaction(list);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetAllRejectedTransaction",
                "enum MEStatusCode __cdecl MultiEntityDriver::GetAllRejectedTransaction(class std::vector<struct "
                "MERejectedTxnInfo,class std::allocator<struct MERejectedTxnInfo> > &)");
}

TEST_F(LinesOf, DeleteRejectedTransaction) {
  MultiEntityDriver::DeleteRejectedTransaction("");

  ExpectAllFrom(kDriver, "MultiEntityDriver::DeleteRejectedTransaction",
                "enum MEStatusCode __cdecl MultiEntityDriver::DeleteRejectedTransaction(class Util::TString<char,class "
                "Util::TStringAllocator<char> >)");
}

TEST_F(LinesOf, GetTxns) {
  std::vector<unsigned long> txns;
  host.FailAt("DoQuery");

  MultiEntityPrivateAccess::GetTxns(12, txns);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetTxns",
                "bool __cdecl MultiEntityDriver::GetTxns(unsigned int,class std::vector<unsigned long,class "
                "std::allocator<unsigned long> > &)");
}

TEST_F(LinesOf, GetTxnsForPeriod) {
  std::vector<unsigned long> txns;
  host.FailAt("DoQuery");

  MultiEntityPrivateAccess::GetTxnsForPeriod(NullDate(), NullDate(), 12, 7, txns);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetTxnsForPeriod",
                "bool __cdecl MultiEntityDriver::GetTxnsForPeriod(class DateType32,class DateType32,unsigned "
                "int,unsigned int,class std::vector<unsigned long,class std::allocator<unsigned long> > &)");
}

TEST_F(LinesOf, GetMECacheRealmId) {
  bool ok = false;
  host.FailAt("GetCompanyDBPreference");

  MultiEntityDriver::GetMECacheRealmId("9130", ok);

  ExpectAllFrom(kDriver, "MultiEntityDriver::GetMECacheRealmId",
                "char * __cdecl MultiEntityDriver::GetMECacheRealmId(class Util::TString<char,class "
                "Util::TStringAllocator<char> >,bool &)");
}

TEST_F(LinesOf, SetMECacheRealmId) {
  std::string realmId = "9130";
  host.ThrowAt("SetCompanyDBPreference", 42);

  MultiEntityDriver::SetMECacheRealmId(realmId.data());

  ExpectAllFrom(kDriver, "MultiEntityDriver::SetMECacheRealmId",
                "bool __cdecl MultiEntityDriver::SetMECacheRealmId(char *)");
}

TEST_F(LinesOf, BlockUserIfRealmReset) {
  host.ThrowAt("KRMSG_MessageO", 42);

  MultiEntityDriver::BlockUserIfRealmReset("");

  ExpectAllFrom(kDriver, "MultiEntityDriver::BlockUserIfRealmReset",
                "bool __cdecl MultiEntityDriver::BlockUserIfRealmReset(class Util::TString<char,class "
                "Util::TStringAllocator<char> >)");
}

TEST_F(LinesOf, CheckForPluginNavigation) {
  host.FailAt("GetAllRelations");

  MultiEntityDriver::CheckForPluginNavigation();

  ExpectAllFrom(kDriver, "MultiEntityDriver::CheckForPluginNavigation",
                "bool __cdecl MultiEntityDriver::CheckForPluginNavigation(void)");
}

TEST_F(LinesOf, SybaseRelationsUserPersonaForRole) {
  host.ThrowAt("OpenAccount", 42);

  MultiEntityDriver::SybaseRelationsUserPersonaForRole(1);

  ExpectAllFrom(kDriver, "MultiEntityDriver::SybaseRelationsUserPersonaForRole",
                "enum SybaseRelationsUserPersona __cdecl MultiEntityDriver::SybaseRelationsUserPersonaForRole(int)");
}

TEST_F(LinesOf, TheRealmResetSetting) {
  host.ThrowAt("GetValue2", 42);

  MultiEntityDriver::BlockUserIfRealmReset("9130");

  ExpectAllFrom(kUtils, "MultiEntityUtils::NeedToCheckForMERealmReset",
                "bool __cdecl MultiEntityUtils::NeedToCheckForMERealmReset(void)");
}

TEST_F(LinesOf, GetDelayInSecondsFromDCE) {
  MESchedulerUtil::GetDelayInSecondsFromDCE();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::GetDelayInSecondsFromDCE",
                "unsigned int __cdecl MESchedulerUtil::GetDelayInSecondsFromDCE(void)");
}

TEST_F(LinesOf, GetHoursToLaunchFromDCE) {
  MESchedulerUtil::GetHoursToLaunchFromDCE();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::GetHoursToLaunchFromDCE",
                "unsigned int __cdecl MESchedulerUtil::GetHoursToLaunchFromDCE(void)");
}

TEST_F(LinesOf, GetNextSchedulerTimeFromPrefDb) {
  MESchedulerUtil::GetNextSchedulerTimeFromPrefDb();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::GetNextSchedulerTimeFromPrefDb",
                "class DateType32 __cdecl MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(void)");
}

TEST_F(LinesOf, SetNextSchedulerTimeToPrefDb) {
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::SetNextSchedulerTimeToPrefDb",
                "void __cdecl MESchedulerUtil::SetNextSchedulerTimeToPrefDb(void)");
}

TEST_F(LinesOf, GetSchedulerLaunchDelayInSeconds) {
  MESchedulerUtil::GetSchedulerLaunchDelayInSeconds();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds",
                "unsigned int __cdecl MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(void)");
}

TEST_F(LinesOf, CanProcessSchedulerMsg) {
  host.application.closing = true;

  MESchedulerUtil::CanProcessSchedulerMsg();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::CanProcessSchedulerMsg",
                "bool __cdecl MESchedulerUtil::CanProcessSchedulerMsg(void)");
}

TEST_F(LinesOf, StartScheduler) {
  MESchedulerUtil::StartScheduler();

  ExpectAllFrom(kScheduler, "MESchedulerUtil::StartScheduler", "void __cdecl MESchedulerUtil::StartScheduler(void)");
}

TEST_F(LinesOf, OnTimerElapsed) {
  MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0);

  ExpectAllFrom(
      kScheduler, "MESchedulerUtil::OnTimerElapsed",
      "void __cdecl MESchedulerUtil::OnTimerElapsed(struct HWND__ *,unsigned int,unsigned __int64,unsigned long)");
}

TEST_F(LinesOf, TheSchedulersMessage) {
  TurnTheFeatureOff();

  MultiEntityScheduler().ProcessMsg();

  ExpectAllFrom(kScheduler, "MultiEntityScheduler::ProcessMsg", "void __cdecl MultiEntityScheduler::ProcessMsg(void)");
}

TEST_F(LinesOf, TheReminder) {
  MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0);

  host.application.DeliverMessages();

  ExpectAllFrom(kScheduler, "MESchedulerUIPrompt::ProcessMsg", "void __cdecl MESchedulerUIPrompt::ProcessMsg(void)");
}

}  // namespace
