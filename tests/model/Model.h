#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/Records.h"
#include "model/World.h"

namespace model {

// What the module remembers from one operation to the next, for as long as the process lives.
struct ProcessMemory {
  std::optional<bool> switchTableReady;  // empty until the switches have been read
  std::map<std::int32_t, bool> switches;
  bool removalUnderWay = false;
  std::optional<std::uint32_t> hourForDelay;
  std::optional<std::uint32_t> hourForToday;
  std::optional<std::uint32_t> leastDelay;
  std::uint32_t timer = 0;
};

// A second telling of what the module does, kept apart from it: it shares no code with it, works on a world of its own
// and says everything as plainly as it can, however slowly. The operations bear the names of the exported ones.
class Model {
 public:
  Model(World& world, ProcessMemory& memory) : world_(world), memory_(memory) {}

  // Gates
  bool IsFeatureEnabled(MESupportCheckKey supportKey, MEKillSwitchKey killKey);
  bool HasMEPermission(MEPermissionType permission, ProgramFeature feature);
  bool IsAccountTypeEnabledForME(KrEnumerations::AccntTypeType type);

  // Relations
  MEStatusCode CreateRelation(Util::TString realmId, Util::TString partnerName, MERelationType relationType,
                              MEState state, std::vector<MEAccountInfo> accounts);
  MEStatusCode PopulateCOAInRelation(DBMultiEntityRelation& row, std::vector<MEAccountInfo> accounts);
  MEStatusCode UpdateRelation(MERelationInfo info);
  MEStatusCode DeleteRelation(Util::TString realmId, bool force);
  MEStatusCode GetRelation(Util::TString realmId, DBMultiEntityRelation& out);
  MEStatusCode GetRelationById(long relationId, DBMultiEntityRelation& out);
  MEStatusCode GetRelationsList(std::vector<DBMultiEntityRelation>& out);
  MEStatusCode GetRelationRealmIdList(std::vector<std::string>& out, bool skipWithoutAccounts);

  // Accounts. An account is named by its record number; none is a null account.
  bool IsCOAValidForMultiEntity(std::optional<long> recnum);
  MEStatusCode GetAccountsList(std::unordered_map<long, std::pair<std::string, std::string>>& accounts,
                               MEAccountFilter filter, std::string realmId);
  MEStatusCode GetAccountListByType(short type, std::vector<std::pair<std::string, long>>& accounts);

  // Journal entries and transactions
  MEStatusCode RecordGeneralJournalEntry(Util::TString partnerRealmId, MEAccountInfo expenseAccount,
                                         std::int32_t dueToAccountId, Util::TString amount, Util::TString requestId,
                                         MECNameInfo name, std::uint32_t& txnId);
  MEStatusCode RemoveGeneralJournalEntry(std::uint32_t txnId);
  void SetGJEDeletionDueToFDPFailure(bool deleting);
  bool GetGJEDeletionDueToFDPFailure();
  MEStatusCode UpdateTransactionWithState(Util::TString partnerRealmId, Util::TString requestId, MEState state);
  MEStatusCode UpdateTransactionWithState(std::int32_t txnId, std::int32_t targetId, MEState state);
  MEStatusCode DoesTransactionExist(Util::TString partnerRealmId, Util::TString requestId);
  MEStatusCode SaveRejectedTransaction(Util::TString requestId, std::int16_t txnType, Util::TString partnerRealmId,
                                       Util::TString amount, Util::TString partnerTxnId);
  MEStatusCode GetAllRejectedTransaction(std::vector<MERejectedTxnInfo>& list);
  MEStatusCode DeleteRejectedTransaction(Util::TString requestId);

  // Listings and queries
  MEStatusCode GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, long txnId);
  MEStatusCode GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, DateType32 from, DateType32 to);
  bool GetTxns(unsigned int selection, std::vector<unsigned long>& txns);
  bool GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection, unsigned int dateField,
                        std::vector<unsigned long>& txns);

  // Realm id and plug-in. A block that is handed out counts in the world and is given back by GiveBack().
  std::optional<std::string> GetMECacheRealmId(Util::TString realmId, bool& ok);
  void GiveBack(const std::optional<std::string>& block);
  bool SetMECacheRealmId(std::string realmId);
  bool IsRealmReset(Util::TString realmId);
  bool BlockUserIfRealmReset(Util::TString realmId);
  bool CheckForPluginNavigation();
  SybaseRelationsUserPersona SybaseRelationsUserPersonaForRole(int role);

  // Scheduler
  std::uint32_t GetDelayInSecondsFromDCE();
  std::uint32_t GetHoursToLaunchFromDCE();
  DateType32 GetNextSchedulerTimeFromPrefDb();
  void SetNextSchedulerTimeToPrefDb();
  std::uint32_t GetSchedulerLaunchDelayInSeconds();
  bool IsTimerLaunchDateToday();
  std::string DateToString(DateType32 date);
  DateType32 StringToDate(std::string text);
  DateType32 SystemTimeToDate(SYSTEMTIME time);
  bool CanProcessSchedulerMsg();
  void StartScheduler();
  void OnTimerElapsed();
  void KillAnyExistingScheduler();
  void MakeSchedulerMessage();
  void ProcessSchedulerMessage();
  void ProcessPrompt();

  // The host's own doings
  void Attach();
  void Detach();
  void NotifyClose();
  void FireTimer();
  void DeliverFirstMessage();

 private:
  // Log lines by kind and by the class that writes them.
  void Trace(std::string_view shortName, std::string_view message);
  void Gate(std::string_view shortName, std::string_view message);
  void Warning(std::string_view shortName, std::string_view message);
  void Error(std::string_view shortName, std::string_view message);
  void Line(std::int32_t level, std::int32_t eventType, std::string_view shortName, std::string_view message);

  bool SwitchedOn(std::int32_t key);
  bool ReadSwitches();
  bool Granted(std::int32_t permission, std::int32_t feature);
  bool IsAccountant();
  bool MayManageRelations();
  bool MayHandle(std::int32_t permission, std::int32_t txnType);
  std::optional<std::string_view> KindOf(std::int32_t txnType);

  bool AccountTypeSwitchedOn(KrEnumerations::AccntTypeType type);
  bool EligibleOnceRead(long recnum);
  bool BoundedCopy(char* field, std::size_t width, std::string_view text);
  MEStatusCode Book(std::string_view realm, MEAccountInfo& expense, std::int32_t dueTo, std::string_view amount,
                    std::string_view requestId, MECNameInfo& name, std::uint32_t& txnId);
  MEStatusCode ListTransaction(std::vector<METxnInfo>& list, long txnId);
  MEStatusCode ListPeriod(std::vector<METxnInfo>& list, DateType32 from, DateType32 to);
  bool RunQuery(Query& query, std::string_view shortName, std::vector<unsigned long>& txns);
  std::string DisplayAmount(std::int64_t minorUnits);
  std::string HomeCurrencyCode();
  std::string QualifiedName(std::int32_t targetId, std::int32_t txnType);
  bool DatabaseUsable();
  bool MustCheckRealm();
  std::uint32_t RemoteNumber(std::string_view shortName, const char* key, std::uint32_t usual,
                             const std::string& asking, const std::string& answered, const std::string& failed);
  void Arm();
  DateType32 Today();

  World& world_;
  ProcessMemory& memory_;
};

}  // namespace model
