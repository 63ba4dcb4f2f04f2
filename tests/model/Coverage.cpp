#include "model/Coverage.h"

#include <charconv>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace model {

namespace {

// Status codes are their own index; the other answers follow.
constexpr std::size_t kWords = 32;
constexpr std::array<std::string_view, 8> kWordAnswers{"true",   "false", "done",    "a value",
                                                       "throws", "null",  "a block", "?"};

std::size_t IndexOf(std::string_view answer) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
  if (error == std::errc{} && end == answer.data() + answer.size() && number < kWords) return number;
  for (std::size_t i = 0; i < kWordAnswers.size(); ++i) {
    if (kWordAnswers.at(i) == answer) return kWords + i;
  }
  return kWords + kWordAnswers.size() - 1;
}

std::string AnswerOf(std::size_t index) {
  return index < kWords ? std::to_string(index) : std::string(kWordAnswers.at(index - kWords));
}

struct Expectation {
  Kind kind;
  const char* name;
  const char* answers;  // separated by commas
};

// Every operation with every answer that it can give.
constexpr std::array<Expectation, kOperationKinds> kExpectations{{
    {Kind::kIsFeatureEnabled, "IsFeatureEnabled", "true,false"},
    {Kind::kHasMEPermission, "HasMEPermission", "true,false"},
    {Kind::kIsAccountTypeEnabledForME, "IsAccountTypeEnabledForME", "true,false"},
    {Kind::kCreateRelation, "CreateRelation", "1,2,3,10,12,13,28,throws"},
    {Kind::kPopulateCOAInRelation, "PopulateCOAInRelation", "1,28,throws"},
    {Kind::kUpdateRelation, "UpdateRelation", "1,2,3,10,12,13,28,throws"},
    {Kind::kDeleteRelation, "DeleteRelation", "1,2,3,9,10,11,12,throws"},
    {Kind::kGetRelation, "GetRelation", "1,2,12,throws"},
    {Kind::kGetRelationById, "GetRelationById", "1,2,8,throws"},
    {Kind::kGetRelationsList, "GetRelationsList", "1,2,8,throws"},
    {Kind::kGetRelationRealmIdList, "GetRelationRealmIdList", "1,2,8,throws"},
    {Kind::kIsCOAValidForMultiEntity, "IsCOAValidForMultiEntity", "true,false"},
    {Kind::kGetAccountsList, "GetAccountsList", "1,2,8,14"},
    {Kind::kGetAccountListByType, "GetAccountListByType", "1,2,throws"},
    {Kind::kRecordGeneralJournalEntry, "RecordGeneralJournalEntry", "0,1,3,5,6,12,14,16,17,18"},
    {Kind::kRemoveGeneralJournalEntry, "RemoveGeneralJournalEntry", "1,18,19"},
    {Kind::kSetGJEDeletionDueToFDPFailure, "SetGJEDeletionDueToFDPFailure", "done"},
    {Kind::kGetGJEDeletionDueToFDPFailure, "GetGJEDeletionDueToFDPFailure", "true,false"},
    {Kind::kUpdateTransactionOfRequest, "UpdateTransactionWithState (request)", "1,2,3,8,12,19,throws"},
    {Kind::kUpdateTransactionOfLine, "UpdateTransactionWithState (line)", "1,3,10,12,throws"},
    {Kind::kDoesTransactionExist, "DoesTransactionExist", "0,1,14"},
    {Kind::kSaveRejectedTransaction, "SaveRejectedTransaction", "0,1,3,12,14"},
    {Kind::kGetAllRejectedTransaction, "GetAllRejectedTransaction", "1,2,8,throws"},
    {Kind::kDeleteRejectedTransaction, "DeleteRejectedTransaction", "0,1,throws"},
    {Kind::kListEntriesOfTransaction, "GetListOfTxnTargetEntries (transaction)", "1,3,8,12,14"},
    {Kind::kListEntriesOfPeriod, "GetListOfTxnTargetEntries (period)", "1,8,14"},
    {Kind::kGetTxns, "GetTxns", "true,false,throws"},
    {Kind::kGetTxnsForPeriod, "GetTxnsForPeriod", "true,false,throws"},
    {Kind::kGetMECacheRealmId, "GetMECacheRealmId", "a block,null"},
    {Kind::kSetMECacheRealmId, "SetMECacheRealmId", "true,false"},
    {Kind::kIsRealmReset, "IsRealmReset", "true,false"},
    {Kind::kBlockUserIfRealmReset, "BlockUserIfRealmReset", "true,false"},
    {Kind::kCheckForPluginNavigation, "CheckForPluginNavigation", "true,false"},
    {Kind::kSybaseRelationsUserPersonaForRole, "SybaseRelationsUserPersonaForRole", "0,1,2,3"},
    {Kind::kGetDelayInSecondsFromDCE, "GetDelayInSecondsFromDCE", "a value"},
    {Kind::kGetHoursToLaunchFromDCE, "GetHoursToLaunchFromDCE", "a value"},
    {Kind::kGetNextSchedulerTimeFromPrefDb, "GetNextSchedulerTimeFromPrefDb", "a value,throws"},
    {Kind::kSetNextSchedulerTimeToPrefDb, "SetNextSchedulerTimeToPrefDb", "done"},
    {Kind::kGetSchedulerLaunchDelayInSeconds, "GetSchedulerLaunchDelayInSeconds", "a value,throws"},
    {Kind::kIsTimerLaunchDateToday, "IsTimerLaunchDateToday", "true,false,throws"},
    {Kind::kDateToString, "DateToString", "a value"},
    {Kind::kStringToDate, "StringToDate", "a value,throws"},
    {Kind::kSystemTimeToDate, "SystemTimeToDate", "a value"},
    {Kind::kCanProcessSchedulerMsg, "CanProcessSchedulerMsg", "true,false,throws"},
    {Kind::kStartScheduler, "StartScheduler", "done"},
    {Kind::kOnTimerElapsed, "OnTimerElapsed", "done"},
    {Kind::kKillAnyExistingScheduler, "KillAnyExistingScheduler", "done"},
    {Kind::kMakeSchedulerMessage, "new MultiEntityScheduler", "done"},
    {Kind::kProcessSchedulerMessage, "MultiEntityScheduler::ProcessMsg", "done,throws"},
    {Kind::kDeliverFirstMessage, "message delivered by the host", "done,throws"},
    {Kind::kFireTimer, "timer fired by the host", "done"},
    {Kind::kNotifyClose, "company closed by the host", "done"},
}};

}  // namespace

void Coverage::Count(Kind kind, std::string_view answer, bool faultPlayed) {
  ++counts.at(static_cast<std::size_t>(kind)).at(IndexOf(answer));
  ++operations;
  if (faultPlayed) ++faults;
}

void Coverage::Add(const Coverage& other) {
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    for (std::size_t i = 0; i < kAnswers; ++i) counts.at(kind).at(i) += other.counts.at(kind).at(i);
  }
  operations += other.operations;
  faults += other.faults;
  histories += other.histories;
}

std::string Table(const Coverage& coverage) {
  std::ostringstream table;
  for (const Expectation& expectation : kExpectations) {
    char name[48];
    std::snprintf(name, sizeof name, "%-40s", expectation.name);
    table << name;
    const auto& counts = coverage.counts.at(static_cast<std::size_t>(expectation.kind));
    for (std::size_t i = 0; i < kWords + kWordAnswers.size(); ++i) {
      if (counts.at(i) != 0) table << "  " << AnswerOf(i) << ": " << counts.at(i);
    }
    table << '\n';
  }
  return table.str();
}

std::vector<std::string> Missing(const Coverage& coverage) {
  std::vector<std::string> missing;
  for (const Expectation& expectation : kExpectations) {
    std::istringstream answers(expectation.answers);
    for (std::string answer; std::getline(answers, answer, ',');) {
      if (coverage.counts.at(static_cast<std::size_t>(expectation.kind)).at(IndexOf(answer)) == 0) {
        missing.push_back(std::string(expectation.name) + " never answered " + answer);
      }
    }
  }
  return missing;
}

}  // namespace model
