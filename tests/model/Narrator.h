#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntity/Records.h"
#include "model/Performance.h"

namespace model {

// Performs nothing: keeps how a call of the operation would read.
class Narrator {
 public:
  const std::string& Told() const noexcept { return told_; }

  bool IsFeatureEnabled(const auto&... a) { return Tell<bool>("IsFeatureEnabled", a...); }
  bool HasMEPermission(const auto&... a) { return Tell<bool>("HasMEPermission", a...); }
  bool IsAccountTypeEnabledForME(const auto&... a) { return Tell<bool>("IsAccountTypeEnabledForME", a...); }
  MEStatusCode CreateRelation(const auto&... a) { return Tell<MEStatusCode>("CreateRelation", a...); }
  MEStatusCode PopulateCOAInRelation(const auto& /*row*/, const auto&... a) {
    return Tell<MEStatusCode>("PopulateCOAInRelation", a...);
  }
  MEStatusCode UpdateRelation(const MERelationInfo& info) { return Tell<MEStatusCode>("UpdateRelation", info); }
  MEStatusCode DeleteRelation(const auto&... a) { return Tell<MEStatusCode>("DeleteRelation", a...); }
  MEStatusCode GetRelation(const auto& realm, const auto& /*row*/) { return Tell<MEStatusCode>("GetRelation", realm); }
  MEStatusCode GetRelationById(long id, const auto& /*row*/) { return Tell<MEStatusCode>("GetRelationById", id); }
  MEStatusCode GetRelationsList(const auto& /*rows*/) { return Tell<MEStatusCode>("GetRelationsList"); }
  MEStatusCode GetRelationRealmIdList(const auto& /*realms*/, bool skipWithoutAccounts) {
    return Tell<MEStatusCode>("GetRelationRealmIdList", skipWithoutAccounts);
  }
  bool IsCOAValidForMultiEntity(const std::optional<long>& recnum) {
    return Tell<bool>("IsCOAValidForMultiEntity", recnum);
  }
  MEStatusCode GetAccountsList(const auto& /*accounts*/, const auto&... a) {
    return Tell<MEStatusCode>("GetAccountsList", a...);
  }
  MEStatusCode GetAccountListByType(short type, const auto& /*accounts*/) {
    return Tell<MEStatusCode>("GetAccountListByType", type);
  }
  MEStatusCode RecordGeneralJournalEntry(const Util::TString& realm, const MEAccountInfo& expense, std::int32_t dueTo,
                                         const Util::TString& amount, const Util::TString& request,
                                         const MECNameInfo& name, std::uint32_t& /*txnId*/) {
    return Tell<MEStatusCode>("RecordGeneralJournalEntry", realm, expense, dueTo, amount, request, name);
  }
  MEStatusCode RemoveGeneralJournalEntry(std::uint32_t txnId) {
    return Tell<MEStatusCode>("RemoveGeneralJournalEntry", txnId);
  }
  void SetGJEDeletionDueToFDPFailure(bool flag) { Tell<bool>("SetGJEDeletionDueToFDPFailure", flag); }
  bool GetGJEDeletionDueToFDPFailure() { return Tell<bool>("GetGJEDeletionDueToFDPFailure"); }
  MEStatusCode UpdateTransactionWithState(const auto&... a) {
    return Tell<MEStatusCode>("UpdateTransactionWithState", a...);
  }
  MEStatusCode DoesTransactionExist(const auto&... a) { return Tell<MEStatusCode>("DoesTransactionExist", a...); }
  MEStatusCode SaveRejectedTransaction(const auto&... a) { return Tell<MEStatusCode>("SaveRejectedTransaction", a...); }
  MEStatusCode GetAllRejectedTransaction(const auto& /*list*/) {
    return Tell<MEStatusCode>("GetAllRejectedTransaction");
  }
  MEStatusCode DeleteRejectedTransaction(const auto&... a) {
    return Tell<MEStatusCode>("DeleteRejectedTransaction", a...);
  }
  MEStatusCode GetListOfTxnTargetEntries(const auto& /*list*/, const auto&... a) {
    return Tell<MEStatusCode>("GetListOfTxnTargetEntries", a...);
  }
  bool GetTxns(unsigned int selection, const auto& /*txns*/) { return Tell<bool>("GetTxns", selection); }
  bool GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection, unsigned int dateField,
                        const auto& /*txns*/) {
    return Tell<bool>("GetTxnsForPeriod", from, to, selection, dateField);
  }
  std::optional<std::string> GetMECacheRealmId(const Util::TString& realm, bool& /*ok*/) {
    return Tell<std::optional<std::string>>("GetMECacheRealmId", realm);
  }
  void GiveBack(const std::optional<std::string>& /*block*/) {}
  bool SetMECacheRealmId(const std::string& realm) { return Tell<bool>("SetMECacheRealmId", realm); }
  bool IsRealmReset(const Util::TString& realm) { return Tell<bool>("IsRealmReset", realm); }
  bool BlockUserIfRealmReset(const Util::TString& realm) { return Tell<bool>("BlockUserIfRealmReset", realm); }
  bool CheckForPluginNavigation() { return Tell<bool>("CheckForPluginNavigation"); }
  SybaseRelationsUserPersona SybaseRelationsUserPersonaForRole(int role) {
    return Tell<SybaseRelationsUserPersona>("SybaseRelationsUserPersonaForRole", role);
  }
  std::uint32_t GetDelayInSecondsFromDCE() { return Tell<std::uint32_t>("GetDelayInSecondsFromDCE"); }
  std::uint32_t GetHoursToLaunchFromDCE() { return Tell<std::uint32_t>("GetHoursToLaunchFromDCE"); }
  DateType32 GetNextSchedulerTimeFromPrefDb() { return Tell<DateType32>("GetNextSchedulerTimeFromPrefDb"); }
  void SetNextSchedulerTimeToPrefDb() { Tell<bool>("SetNextSchedulerTimeToPrefDb"); }
  std::uint32_t GetSchedulerLaunchDelayInSeconds() { return Tell<std::uint32_t>("GetSchedulerLaunchDelayInSeconds"); }
  bool IsTimerLaunchDateToday() { return Tell<bool>("IsTimerLaunchDateToday"); }
  std::string DateToString(DateType32 date) { return Tell<std::string>("DateToString", date); }
  DateType32 StringToDate(const std::string& text) { return Tell<DateType32>("StringToDate", text); }
  DateType32 SystemTimeToDate(SYSTEMTIME time) { return Tell<DateType32>("SystemTimeToDate", time); }
  bool CanProcessSchedulerMsg() { return Tell<bool>("CanProcessSchedulerMsg"); }
  void StartScheduler() { Tell<bool>("StartScheduler"); }
  void OnTimerElapsed() { Tell<bool>("OnTimerElapsed"); }
  void KillAnyExistingScheduler() { Tell<bool>("KillAnyExistingScheduler"); }
  void MakeSchedulerMessage() { Tell<bool>("new MultiEntityScheduler"); }
  void ProcessSchedulerMessage() { Tell<bool>("MultiEntityScheduler().ProcessMsg"); }
  void DeliverFirstMessage() { told_ = "the host delivers its first message"; }
  void FireTimer() { told_ = "the host fires its first timer"; }
  void NotifyClose() { told_ = "the host closes the company"; }

 private:
  template <class Answer, class... Values>
  Answer Tell(const char* name, const Values&... values) {
    told_ = text::OfCall(name, values...);
    return {};
  }

  std::string told_;
};

// How a step reads in a report, its fault included.
std::string Told(const Operation& operation);

}  // namespace model
