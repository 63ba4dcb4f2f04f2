#pragma once

#include <algorithm>
#include <map>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/Records.h"
#include "model/CallText.h"
#include "model/Pools.h"

// How one operation of a history is performed, once for whoever performs it: the module, the model, or the narrator
// that only says what would be done.
namespace model {

// What an operation came to: the answer in a word, for counting, and everything that it handed back, for comparing.
struct Outcome {
  std::string answer;
  std::string results;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

template <class... Results>
Outcome Answered(const auto& answer, const Results&... results) {
  std::string all;
  ((all += ' ' + text::Of(results)), ...);
  return {text::Of(answer), all};
}

// The outcome of the exception that is being caught.
inline Outcome Thrown() {
  try {
    throw;
  } catch (const std::out_of_range& exception) {
    return {"throws", std::string("std::out_of_range ") + exception.what()};
  } catch (const std::invalid_argument& exception) {
    return {"throws", std::string("std::invalid_argument ") + exception.what()};
  } catch (const std::bad_alloc&) {
    return {"throws", "std::bad_alloc"};
  } catch (const std::exception& exception) {
    return {"throws", std::string("std::exception ") + exception.what()};
  } catch (int number) {
    return {"throws", "the number " + std::to_string(number)};
  } catch (...) {
    return {"throws", "something else"};
  }
}

// The outcome of a call that fills `results`, with what it left in them also when it throws.
template <class... Results>
Outcome Handed(const auto& call, const Results&... results) {
  Outcome outcome;
  try {
    outcome.answer = text::Of(call());
  } catch (...) {
    outcome = Thrown();
  }
  ((outcome.results += ' ' + text::Of(results)), ...);
  return outcome;
}

// For what answers a value and no status.
Outcome Valued(const auto& value) {
  return {"a value", text::Of(value)};
}

template <class Performer>
Outcome PerformFileWork(Performer& performer, const Operation& operation) {
  const Arguments a(operation);
  DBMultiEntityRelation row{};
  row.dueFromAccountId = 70;
  row.dueToAccountId = 71;
  std::uint32_t txnId = 777;
  const auto readRow = [&](MEStatusCode status) {
    return status == MEStatusSuccess ? Answered(status, row) : Answered(status);
  };
  switch (operation.kind) {
    case Kind::kCreateRelation:
      return Answered(performer.CreateRelation(a.Realm(0), a.PartnerName(1), MERelationType(a.Below(2, 4)), a.State(3),
                                               a.Accounts(4)));
    case Kind::kPopulateCOAInRelation: {
      return Handed([&] { return performer.PopulateCOAInRelation(row, a.Accounts(0)); }, row);
    }
    case Kind::kUpdateRelation:
      return Answered(performer.UpdateRelation({.realmId = a.Realm(0),
                                                .updateRealm = Util::TString(a.Flag(1) ? "other realm" : ""),
                                                .state = a.State(2),
                                                .accounts = a.Accounts(3),
                                                .skipPermissionCheck = a.Flag(7)}));
    case Kind::kDeleteRelation:
      return Answered(performer.DeleteRelation(a.Realm(0), a.Flag(1)));
    case Kind::kGetRelation:
      return readRow(performer.GetRelation(a.Realm(0), row));
    case Kind::kGetRelationById:
      return readRow(performer.GetRelationById(a.RelationId(0), row));
    case Kind::kGetRelationsList: {
      std::vector<DBMultiEntityRelation> rows(1);
      const MEStatusCode status = performer.GetRelationsList(rows);
      return status == MEStatusSuccess ? Answered(status, rows) : Answered(status);
    }
    case Kind::kGetRelationRealmIdList: {
      std::vector<std::string> realms{"before"};
      return Handed([&] { return performer.GetRelationRealmIdList(realms, a.Flag(0)); }, realms);
    }
    case Kind::kRecordGeneralJournalEntry: {
      static constexpr std::array<std::int32_t, 8> kDueTo{8, 21, 8, 22, 8, 23, 99, 19};
      return Handed(
          [&] {
            return performer.RecordGeneralJournalEntry(a.Realm(0), a.ExpenseAccount(1), a.Of(4, kDueTo), a.Amount(5),
                                                       a.RequestId(6), a.NameInfo(7), txnId);
          },
          txnId);
    }
    case Kind::kRemoveGeneralJournalEntry:
      return Answered(
          performer.RemoveGeneralJournalEntry(a.Rarely(1) ? 4'000'000'000U : static_cast<std::uint32_t>(a.TxnId(0))));
    case Kind::kUpdateTransactionOfRequest:
      return Answered(performer.UpdateTransactionWithState(a.RealmOfLine(a.TargetId(3), 0),
                                                           a.RequestOfLine(a.TargetId(3), 1), a.State(2)));
    case Kind::kUpdateTransactionOfLine:
      return Answered(performer.UpdateTransactionWithState(a.TxnOf(a.TargetId(1), 0), a.TargetId(1), a.State(2)));
    case Kind::kDoesTransactionExist:
      return Answered(
          performer.DoesTransactionExist(a.RealmOfLine(a.TargetId(2), 0), a.RequestOfLine(a.TargetId(3), 1)));
    case Kind::kSaveRejectedTransaction:
      return Answered(performer.SaveRejectedTransaction(a.RequestId(0), a.RejectedType(1), a.Realm(2),
                                                        a.RejectedAmount(3), a.RequestId(4)));
    case Kind::kDeleteRejectedTransaction:
      return Answered(performer.DeleteRejectedTransaction(a.RequestId(0)));
    default:
      return {};
  }
}

template <class Performer>
Outcome PerformReading(Performer& performer, const Operation& operation) {
  const Arguments a(operation);
  std::vector<unsigned long> txns{7};
  switch (operation.kind) {
    case Kind::kIsFeatureEnabled:
      return Answered(performer.IsFeatureEnabled(MESupportCheckKey(a.Below(0, 3) + 1), MEKillSwitchKey(a.Below(1, 4))));
    case Kind::kHasMEPermission: {
      static constexpr std::array<std::int32_t, 5> kFeatures{19, 20, 16, 0, 7};
      return Answered(performer.HasMEPermission(MEPermissionType(a.Below(0, 9) - (a.Rarely(2) ? 1 : 0)),
                                                ProgramFeature(a.Of(1, kFeatures))));
    }
    case Kind::kIsAccountTypeEnabledForME:
      return Answered(performer.IsAccountTypeEnabledForME(
          static_cast<KrEnumerations::AccntTypeType>(a.Below(0, 20) - (a.Rarely(1) ? 3 : 0))));
    case Kind::kIsCOAValidForMultiEntity:
      return Answered(performer.IsCOAValidForMultiEntity(a.Rarely(0) ? std::optional<long>() : a.AccountId(1)));
    case Kind::kGetAccountsList: {
      std::unordered_map<long, std::pair<std::string, std::string>> accounts{{7, {"before", "before"}}};
      return Handed(
          [&] {
            return performer.GetAccountsList(accounts, MEAccountFilter(a.Below(0, 4)), std::string(a.Realm(1).view()));
          },
          accounts);
    }
    case Kind::kGetAccountListByType: {
      std::vector<std::pair<std::string, long>> accounts{{"before", 1}};
      return Handed([&] { return performer.GetAccountListByType(static_cast<short>(a.Below(0, 18)), accounts); },
                    accounts);
    }
    case Kind::kGetAllRejectedTransaction: {
      std::vector<MERejectedTxnInfo> list(1);
      return Handed([&] { return performer.GetAllRejectedTransaction(list); }, list);
    }
    case Kind::kListEntriesOfTransaction: {
      std::vector<METxnInfo> list(1);
      return Handed([&] { return performer.GetListOfTxnTargetEntries(list, static_cast<long>(a.TxnId(0))); }, list);
    }
    case Kind::kListEntriesOfPeriod: {
      std::vector<METxnInfo> list(1);
      return Handed([&] { return performer.GetListOfTxnTargetEntries(list, a.Date(0), a.Date(1)); }, list);
    }
    case Kind::kGetTxns: {
      return Handed([&] { return performer.GetTxns(static_cast<unsigned int>(a.Below(0, 4)), txns); }, txns);
    }
    case Kind::kGetTxnsForPeriod: {
      return Handed(
          [&] {
            return performer.GetTxnsForPeriod(a.Date(0), a.Date(1), static_cast<unsigned int>(a.Below(2, 4)),
                                              static_cast<unsigned int>(a.Below(3, 9)), txns);
          },
          txns);
    }
    case Kind::kSetGJEDeletionDueToFDPFailure:
      performer.SetGJEDeletionDueToFDPFailure(a.Flag(0));
      return {"done", {}};
    case Kind::kGetGJEDeletionDueToFDPFailure:
      return Answered(performer.GetGJEDeletionDueToFDPFailure());
    default:
      return {};
  }
}

template <class Performer>
Outcome PerformRealmWork(Performer& performer, const Operation& operation) {
  const Arguments a(operation);
  switch (operation.kind) {
    case Kind::kGetMECacheRealmId: {
      bool ok = false;
      const auto block = performer.GetMECacheRealmId(a.Realm(0), ok);
      performer.GiveBack(block);
      return Outcome{block.has_value() ? "a block" : "null", text::Of(ok) + " " + text::Of(block)};
    }
    case Kind::kSetMECacheRealmId:
      return Answered(performer.SetMECacheRealmId(std::string(a.Realm(0).view())));
    case Kind::kIsRealmReset:
      return Answered(performer.IsRealmReset(a.Realm(0)));
    case Kind::kBlockUserIfRealmReset:
      return Answered(performer.BlockUserIfRealmReset(a.Realm(0)));
    case Kind::kCheckForPluginNavigation:
      return Answered(performer.CheckForPluginNavigation());
    case Kind::kSybaseRelationsUserPersonaForRole: {
      static constexpr std::array<int, 6> kRoles{1, 2, 0, 15, 1, -1};
      return Answered(performer.SybaseRelationsUserPersonaForRole(a.Of(0, kRoles)));
    }
    default:
      return {};
  }
}

template <class Performer>
Outcome PerformScheduling(Performer& performer, const Operation& operation) {
  const Arguments a(operation);
  const auto done = [] {
    return Outcome{"done", {}};
  };
  switch (operation.kind) {
    case Kind::kGetDelayInSecondsFromDCE:
      return Valued(performer.GetDelayInSecondsFromDCE());
    case Kind::kGetHoursToLaunchFromDCE:
      return Valued(performer.GetHoursToLaunchFromDCE());
    case Kind::kGetNextSchedulerTimeFromPrefDb:
      return Valued(performer.GetNextSchedulerTimeFromPrefDb());
    case Kind::kSetNextSchedulerTimeToPrefDb:
      return performer.SetNextSchedulerTimeToPrefDb(), done();
    case Kind::kGetSchedulerLaunchDelayInSeconds:
      return Valued(performer.GetSchedulerLaunchDelayInSeconds());
    case Kind::kIsTimerLaunchDateToday:
      return Answered(performer.IsTimerLaunchDateToday());
    case Kind::kDateToString:
      return Valued(performer.DateToString(a.Date(0)));
    case Kind::kStringToDate:
      return Valued(performer.StringToDate(a.StoredDate(0)));
    case Kind::kSystemTimeToDate:
      return Valued(performer.SystemTimeToDate(a.Clock(0)));
    case Kind::kCanProcessSchedulerMsg:
      return Answered(performer.CanProcessSchedulerMsg());
    case Kind::kStartScheduler:
      return performer.StartScheduler(), done();
    case Kind::kOnTimerElapsed:
      return performer.OnTimerElapsed(), done();
    case Kind::kKillAnyExistingScheduler:
      return performer.KillAnyExistingScheduler(), done();
    case Kind::kMakeSchedulerMessage:
      return performer.MakeSchedulerMessage(), done();
    case Kind::kProcessSchedulerMessage:
      return performer.ProcessSchedulerMessage(), done();
    case Kind::kDeliverFirstMessage:
      return performer.DeliverFirstMessage(), done();
    case Kind::kFireTimer:
      return performer.FireTimer(), done();
    case Kind::kNotifyClose:
      return performer.NotifyClose(), done();
    default:
      return {};
  }
}

// Performs a step that is the module's. An exception of the host that the operation lets through is its outcome.
template <class Performer>
Outcome Perform(Performer& performer, const Operation& operation) {
  try {
    Outcome outcome = PerformFileWork(performer, operation);
    if (outcome.answer.empty()) outcome = PerformReading(performer, operation);
    if (outcome.answer.empty()) outcome = PerformRealmWork(performer, operation);
    if (outcome.answer.empty()) outcome = PerformScheduling(performer, operation);
    return outcome;
  } catch (...) {
    return Thrown();
  }
}

}  // namespace model
