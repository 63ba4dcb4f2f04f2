#include "standalone/desk/Transactions.h"

#include <algorithm>
#include <span>
#include <string>
#include <tuple>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

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

// By date; those of one day as they were entered.
bool IsEarlier(const IntercompanyLine& left, const IntercompanyLine& right) {
  const std::int32_t order = left.date.value_or(NullDate()).Compare(right.date.value_or(NullDate()));
  if (order != 0) return order < 0;
  return std::tie(left.txnId, left.lineId) < std::tie(right.txnId, right.lineId);
}

// What a filter names, as the books have it.
struct Named {
  std::optional<std::string> realm;
  std::optional<std::int32_t> account;
};

Named NamedBy(Company& company, const LineFilter& filter) {
  Work work(company.Opened(), UseCase::kListTransactions);
  Named named;
  work.Read([&] {
    // Who may see none is told that, and nothing else.
    if (!work.HasOneOf(
            {{kFeatureBills, kActionView}, {kFeatureChecks, kActionView}, {kFeatureJournalEntries, kActionView}})) {
      return;
    }
    if (filter.partner) named.realm = standalone::Field(RequirePartner(work, filter.partner->Text()).realmId);
    if (filter.account) named.account = work.Host().Accounts().Require(*filter.account).id;
  });
  return named;
}

bool IsWanted(const IntercompanyLine& line, const LineFilter& filter, const Named& named) {
  const auto isAccount = [&named](const std::optional<ListItem>& item) {
    return item && item->id == *named.account;
  };
  return (!named.realm || line.realm == *named.realm) && (!filter.type || line.type == *filter.type) &&
         (!filter.state || filter.state->Is(line.state)) &&
         (!filter.request || line.requestId == filter.request->Text()) &&
         (!named.account || isAccount(line.account) || isAccount(line.otherAccount));
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

// A transaction that several partners share is confirmed by the last of them.
void ConfirmIfEstablished(Work& work, const DBMultiEntityTransaction& row) {
  if (work.Host().Intercompany().CountOpenOf(row.txnId) != 0) return;
  work.Host().Transactions().ConfirmByPartner(row.txnId, row.txnType);
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
  const IntercompanyLine before = LineReader(work).ReadRequest(move.row);
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

WantedState::WantedState(std::string_view text) : text_(text), number_(standalone::ParseTransactionState(text)) {}

bool WantedState::Is(standalone::BookedState state) const {
  if (state.number != number_) return false;
  return text_ == std::to_string(static_cast<std::int16_t>(number_)) ||
         standalone::EqualIgnoringCase(text_, standalone::StateName(state));
}

std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, const Period& period, const LineFilter& filter) {
  const Named named = NamedBy(company, filter);
  std::vector<IntercompanyLine> lines = List(company, [&period](std::vector<METxnInfo>& listed) {
    return MultiEntityDriver::GetListOfTxnTargetEntries(listed, period.From(), period.To());
  });
  std::erase_if(lines, [&](const IntercompanyLine& line) { return !IsWanted(line, filter, named); });
  std::ranges::stable_sort(lines, IsEarlier);
  return lines;
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

MovedRequest SetState(Company& company, const Partner& partner, const standalone::RequestId& request,
                      standalone::TransactionState state) {
  Work work(company.Opened(), UseCase::kSetTransactionState);
  MovedRequest moved;
  work.AskToWrite([&] {
    if (!MayModifyAny(work)) return MEStatusPermissionDenied;
    moved.realm = RealmOf(work, partner).Text();
    DBMultiEntityRelation relation{};
    Move move{.row = {}, .permission = MEPermissionModifyTransactions, .to = state};
    work.Host().Relations().Find(moved.realm, relation);
    work.Host().Intercompany().FindRequest(relation.relationId, request.Text(), move.row);
    RefuseStateByHand(work, relation.relationId);
    return ChangeState(work, move, moved.state, [&] {
      return MultiEntityDriver::UpdateTransactionWithState(
          std::string_view(moved.realm), std::string_view(request.Text()), static_cast<MEState>(state));
    });
  });
  return moved;
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
    // The module tells of each right that it is asked for.
    if (IsAnsweredByTheExchange(work, move.row.relationId) && MayMove(move)) {
      RefuseStateByHand(work, move.row.relationId);
    }
    return ChangeState(work, move, now, [&] {
      const MEStatusCode answer =
          MultiEntityDriver::UpdateTransactionWithState(txnId, lineId, static_cast<MEState>(state));
      if (answer == MEStatusSuccess) ConfirmIfEstablished(work, move.row);
      return answer;
    });
  });
  return now;
}

std::string RequireKnownRequest(Company& company, const Partner& partner, const standalone::RequestId& request) {
  Work work(company.Opened(), UseCase::kFindRequest);
  std::string realm;
  work.AskToRead([&] {
    realm = RealmOf(work, partner).Text();
    return MultiEntityDriver::DoesTransactionExist(std::string_view(realm), std::string_view(request.Text()));
  });
  return realm;
}

}  // namespace desk
