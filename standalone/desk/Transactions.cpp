#include "standalone/desk/Transactions.h"

#include <algorithm>
#include <span>
#include <string>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/AccountTypes.h"
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

ProgramFeature FeatureOf(std::int16_t txnType) noexcept {
  switch (txnType) {
    case kTxnTypeBill:
      return kFeatureBills;
    case kTxnTypeCheck:
      return kFeatureChecks;
    case kTxnTypeJournalEntry:
      return kFeatureJournalEntries;
    default:
      return kFeatureNone;
  }
}

// What the module asks of who moves a line by its own number.
MEPermissionType PermissionToLeave(std::int16_t state) noexcept {
  switch (standalone::TransactionState{state}) {
    case standalone::TransactionState::kEntered:
      return MEPermissionCreateTransactions;
    case standalone::TransactionState::kCameBack:
      return MEPermissionModifyTransactions;
    default:
      return MEPermissionViewTransactions;
  }
}

std::string NumberAndName(standalone::BookedState state) {
  return std::to_string(static_cast<std::int16_t>(state.number)) + " (" + standalone::StateName(state) + ")";
}

std::string MovesText(standalone::BookedState from) {
  const std::span<const standalone::TransactionState> moves = standalone::MovesFrom(from);
  if (moves.empty()) return "it stays there";
  std::string text = "from there it may move to ";
  for (std::size_t i = 0; i < moves.size(); ++i) {
    if (i != 0) text += i + 1 == moves.size() ? " or " : ", ";
    text += NumberAndName({moves[i], from.ofBefore});
  }
  return text;
}

[[noreturn]] void RefuseMove(const Work& work, const IntercompanyLine& line, standalone::BookedState to) {
  work.Refuse("Line " + std::to_string(line.lineId) + " of " + standalone::TransactionTypeName(line.type) + " " +
                  std::to_string(line.txnId) + (line.state.ofBefore ? ", booked with version 1.0," : "") +
                  " is in state " + NumberAndName(line.state) + " and cannot be moved to " + NumberAndName(to) + "; " +
                  MovesText(line.state) + ".",
              Remedy::kMoveAsTheStateAllows);
}

// The row that is to be moved, and the right that the module asks for to do it.
struct Move {
  DBMultiEntityTransaction row{};  // blank when it is not there, of which the module tells
  MEPermissionType permission = MEPermissionModifyTransactions;
  standalone::TransactionState to{};
};

bool MayMove(const Move& move) {
  const ProgramFeature feature = FeatureOf(move.row.txnType);
  return feature == kFeatureNone || MultiEntityDriver::HasMEPermission(move.permission, feature);
}

// The module moves from any state to any other.
template <typename Change>
MEStatusCode ChangeState(Work& work, const Move& move, standalone::BookedState& now, Change&& change) {
  const IntercompanyLine before = LineReader(work).Read(move.row);
  now = {move.to, before.state.ofBefore};
  if (move.row.txnId != 0 && std::ranges::count(standalone::MovesFrom(before.state), move.to) == 0) {
    if (!MayMove(move)) return MEStatusPermissionDenied;
    RefuseMove(work, before, now);
  }
  return work.Recorded(change(), [&] { return DeedOfState(before, now); });
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

standalone::BookedState SetState(Company& company, const standalone::RealmId& realm,
                                 const standalone::RequestId& request, standalone::TransactionState state) {
  Work work(company.Opened(), UseCase::kSetTransactionState);
  standalone::BookedState now;
  work.AskToWrite([&] {
    if (!MayModifyAny(work)) return MEStatusPermissionDenied;
    DBMultiEntityRelation relation{};
    Move move{.row = {}, .permission = MEPermissionModifyTransactions, .to = state};
    work.Host().Relations().Find(realm.Text(), relation);
    work.Host().Intercompany().FindRequest(relation.relationId, request.Text(), move.row);
    return ChangeState(work, move, now, [&] {
      return MultiEntityDriver::UpdateTransactionWithState(
          std::string_view(realm.Text()), std::string_view(request.Text()), static_cast<MEState>(state));
    });
  });
  return now;
}

standalone::BookedState SetState(Company& company, std::int32_t txnId, std::int32_t lineId,
                                 standalone::TransactionState state) {
  Work work(company.Opened(), UseCase::kSetTransactionState);
  standalone::BookedState now;
  work.AskToWrite([&] {
    if (!MayMoveAny(work)) return MEStatusPermissionDenied;
    Move move{.row = {}, .permission = {}, .to = state};
    work.Host().Intercompany().Find(txnId, lineId, move.row);
    move.permission = PermissionToLeave(move.row.state);
    return ChangeState(work, move, now, [&] {
      return MultiEntityDriver::UpdateTransactionWithState(txnId, lineId, static_cast<MEState>(state));
    });
  });
  return now;
}

void RequireKnownRequest(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request) {
  Work work(company.Opened(), UseCase::kFindRequest);
  work.AskToRead([&] {
    return MultiEntityDriver::DoesTransactionExist(std::string_view(realm.Text()), std::string_view(request.Text()));
  });
}

}  // namespace desk
