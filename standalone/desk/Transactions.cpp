#include "standalone/desk/Transactions.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"

namespace desk {

namespace {

// The module looks for the transaction before it asks for the right to its type, and so would tell anybody which ones
// there are.
bool MayModifyAny(Work& work) {
  return work.HasOneOf(
      {{kFeatureBills, kActionModify}, {kFeatureChecks, kActionModify}, {kFeatureJournalEntries, kActionModify}});
}

// By its line, a transaction is moved with a right that depends on the state that it is in.
bool MayMoveAny(Work& work) {
  return MayModifyAny(work) || work.HasOneOf({{kFeatureBills, kActionCreate},
                                              {kFeatureChecks, kActionCreate},
                                              {kFeatureJournalEntries, kActionCreate},
                                              {kFeatureBills, kActionView},
                                              {kFeatureChecks, kActionView},
                                              {kFeatureJournalEntries, kActionView}});
}

template <typename Ask>
std::vector<IntercompanyLine> List(Company& company, Ask&& ask) {
  Work work(company.Opened(), UseCase::kListTransactions);
  std::vector<IntercompanyLine> lines;
  work.AskToRead([&] {
    std::vector<METxnInfo> listed;
    const MEStatusCode answer = ask(listed);
    if (answer == MEStatusSuccess) lines = LineReader(work).Read(listed);
    return answer;
  });
  return lines;
}

// `row` is blank when it is not there, of which the module tells.
template <typename Change>
MEStatusCode ChangeState(Work& work, const DBMultiEntityTransaction& row, standalone::TransactionState state,
                         Change&& change) {
  const IntercompanyLine before = LineReader(work).Read(row);
  return work.Recorded(change(), [&] { return DeedOfState(before, state); });
}

}  // namespace

Period::Period(DateType32 from, DateType32 to) : from_(from), to_(to) {
  if (from == NullDate() || to == NullDate() || from.Compare(to) <= 0) return;
  throw standalone::InvalidInput("the period from " + standalone::FormatIsoDate(from) + " to " +
                                 standalone::FormatIsoDate(to) + " ends before it begins; give the earlier date first");
}

std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, std::int32_t txnId) {
  return List(company, [txnId](std::vector<METxnInfo>& listed) {
    return MultiEntityDriver::GetListOfTxnTargetEntries(listed, txnId);
  });
}

std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, const Period& period) {
  return List(company, [&period](std::vector<METxnInfo>& listed) {
    return MultiEntityDriver::GetListOfTxnTargetEntries(listed, period.From(), period.To());
  });
}

std::vector<std::int16_t> TypesNotShown(Company& company) {
  Work work(company.Opened(), UseCase::kListTransactions);
  std::vector<std::int16_t> types;
  work.Read([&] {
    if (!work.HasRight({kFeatureBills, kActionView})) types.push_back(kTxnTypeBill);
    if (!work.HasRight({kFeatureChecks, kActionView})) types.push_back(kTxnTypeCheck);
    if (!work.HasRight({kFeatureJournalEntries, kActionView})) types.push_back(kTxnTypeJournalEntry);
  });
  return types;
}

void SetState(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request,
              standalone::TransactionState state) {
  Work work(company.Opened(), UseCase::kSetTransactionState);
  work.AskToWrite([&] {
    if (!MayModifyAny(work)) return MEStatusPermissionDenied;
    DBMultiEntityRelation relation{};
    DBMultiEntityTransaction row{};
    work.Host().Relations().Find(realm.Text(), relation);
    work.Host().Intercompany().FindRequest(relation.relationId, request.Text(), row);
    return ChangeState(work, row, state, [&] {
      return MultiEntityDriver::UpdateTransactionWithState(
          std::string_view(realm.Text()), std::string_view(request.Text()), static_cast<MEState>(state));
    });
  });
}

void SetState(Company& company, std::int32_t txnId, std::int32_t lineId, standalone::TransactionState state) {
  Work work(company.Opened(), UseCase::kSetTransactionState);
  work.AskToWrite([&] {
    if (!MayMoveAny(work)) return MEStatusPermissionDenied;
    DBMultiEntityTransaction row{};
    work.Host().Intercompany().Find(txnId, lineId, row);
    return ChangeState(work, row, state, [&] {
      return MultiEntityDriver::UpdateTransactionWithState(txnId, lineId, static_cast<MEState>(state));
    });
  });
}

void RequireKnownRequest(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request) {
  Work work(company.Opened(), UseCase::kFindRequest);
  work.AskToRead([&] {
    return MultiEntityDriver::DoesTransactionExist(std::string_view(realm.Text()), std::string_view(request.Text()));
  });
}

}  // namespace desk
