#include "standalone/desk/inside/Reversing.h"

#include <algorithm>
#include <optional>

#include "standalone/books/FactTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/LinkTable.h"
#include "standalone/books/OwnRequestTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/desk/inside/Awaiting.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/LostRequests.h"
#include "standalone/desk/inside/Overtaken.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/Posting.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/values/Dates.h"

namespace desk {

namespace {

using standalone::LinkKind;
using standalone::TransactionHeader;
using standalone::TransactionState;

// What becomes of a partner's request when its line is reversed.
struct AfterReversal {
  TransactionState original{};
  TransactionState reversal{};
  bool isToBeTold = false;  // the partner has it in its books and cannot be sent anything
};

std::vector<DBMultiEntityTransaction> RowsOf(Work& work, std::int32_t txnId) {
  std::vector<DBMultiEntityTransaction> rows;
  work.Host().Intercompany().ListOf(txnId, rows);
  return rows;
}

DBMultiEntityRelation PartnerOf(Work& work, const DBMultiEntityTransaction& row) {
  DBMultiEntityRelation relation{};
  work.Host().Relations().FindById(row.relationId, relation);
  return relation;
}

std::string LineOf(Work& work, const DBMultiEntityTransaction& row) {
  return "line " + std::to_string(row.targetId) + " of " + TransactionText(EnteredType{row.txnType}, row.txnId) +
         " for " + PartnerText(PartnerOf(work, row));
}

// Those that are linked so to this one, which may be reversed.
std::vector<std::int32_t> LaterOf(Work& work, std::int32_t txnId, LinkKind kind) {
  std::vector<std::int32_t> later;
  for (const standalone::TransactionLink& link : work.Host().Links().Of(txnId)) {
    if (link.earlierTxnId == txnId && link.kind == kind) later.push_back(link.txnId);
  }
  return later;
}

std::vector<std::int32_t> LiveOf(Work& work, std::vector<std::int32_t> txnIds) {
  std::erase_if(txnIds, [&](std::int32_t txnId) { return work.Host().Links().ReversalOf(txnId).has_value(); });
  return txnIds;
}

std::string TextById(Work& work, std::int32_t txnId) {
  return TextOf(work.Host().Transactions().FindHeader(txnId).value());
}

// Of several moves, the expense stands where the last one put it; what takes back the entry was booked there.
void RequireLastMove(Work& work, std::int32_t moveId) {
  const std::optional<std::int32_t> entry = EarlierOf(work, moveId, LinkKind::kMoves);
  if (!entry) return;
  if (const std::optional<std::int32_t> back = TakenBackBy(work, *entry)) {
    work.Refuse("the partner has taken back " + TextById(work, *entry) + ", and " + TextById(work, *back) +
                    " was booked where " + TextById(work, moveId) + " had moved its expense",
                Remedy::kEnterAnEntry);
  }
  const std::vector<std::int32_t> moves = LiveMovesOf(work, *entry);
  if (moves.empty() || moves.back() <= moveId) return;
  work.Refuse(TextById(work, moves.back()) + " has moved the same expense since " + TextById(work, moveId),
              Remedy::kTakeBackTheLaterFirst);
}

void RefuseWhatWaits(Work& work, const DBMultiEntityTransaction& row) {
  const standalone::BookedState state = StateOf(work, row);
  if (state.ofBefore && (state.number == TransactionState::kEntered || state.number == TransactionState::kSent)) {
    work.Refuse(LineOf(work, row) + " was booked with version 1.0 and is not settled", Remedy::kSettleFirst);
  }
  if (state.number == TransactionState::kSent) {
    work.Refuse(LineOf(work, row) + " was sent and waits for the partner's answer", Remedy::kWaitForThePartner);
  }
}

// Whoever takes back a reversal has the original in the books again, and nothing in its place.
void RequireNoCorrection(Work& work, std::int32_t originalId, const std::vector<std::int32_t>& corrections) {
  if (corrections.empty()) return;
  work.Refuse(TextById(work, corrections.back()) + " stands in the place of " + TextById(work, originalId),
              Remedy::kTakeBackTheLaterFirst);
}

// Whether the partner has the original in its books and the reversal not, because it was sent back or withdrawn.
bool HasComeToNothing(Work& work, const DBMultiEntityTransaction& row, std::int32_t originalId) {
  const auto state = TransactionState{row.state};
  if (state == TransactionState::kCameBack) return true;
  const std::optional<standalone::EarlierRequest> earlier = work.Host().OwnRequests().EarlierOf(row.targetId);
  DBMultiEntityTransaction original{};
  return state == TransactionState::kClosed && earlier &&
         work.Host().Intercompany().Find(originalId, earlier->targetId, original) &&
         TransactionState{original.state} == TransactionState::kEstablished;
}

// A reversal that every partner has taken, or may still take, is as good as any other transaction.
void RequireComeToNothing(Work& work, const TransactionHeader& reversal, std::int32_t originalId) {
  if (EarlierOf(work, originalId, LinkKind::kReverses)) {
    work.Refuse(TextOf(reversal) + " reverses " + TextById(work, originalId) + ", a reversal itself",
                Remedy::kRemoveTheReversal);
  }
  const std::vector<DBMultiEntityTransaction> rows = RowsOf(work, reversal.id);
  const bool hasAny =
      std::ranges::any_of(rows, [&](const auto& row) { return HasComeToNothing(work, row, originalId); });
  if (!hasAny) {
    work.Refuse(TextOf(reversal) + " reverses " + TextById(work, originalId) + ", and no partner has sent it back",
                Remedy::kRemoveTheReversal);
  }
  for (const DBMultiEntityTransaction& row : rows) {
    if (TransactionState{row.state} != TransactionState::kEntered) continue;
    work.Refuse(LineOf(work, row) + " is still to be sent", Remedy::kWaitForThePartner);
  }
}

// The last one is the one that can go first.
void RequireNothingLater(Work& work, const TransactionHeader& header) {
  std::optional<std::int32_t> last;
  for (const standalone::TransactionLink& link : work.Host().Links().Of(header.id)) {
    if (link.earlierTxnId == header.id) last = link.txnId;
  }
  if (!last) return;
  work.Refuse(TextOf(header) + " stays as long as " + TextById(work, *last) + ", which belongs to it",
              Remedy::kTakeBackTheLaterFirst);
}

// It is not known any more what the original's request was before its reversal closed it.
void RefuseWhatClosedTheOriginal(Work& work, const TransactionHeader& header, const DBMultiEntityTransaction& row) {
  const std::optional<std::int32_t> original = EarlierOf(work, header.id, LinkKind::kReverses);
  if (!original || TransactionState{row.state} != TransactionState::kClosed) return;
  work.Refuse(TextOf(header) + " has closed the request of " + TextById(work, *original) + " to " +
                  PartnerText(PartnerOf(work, row)) + ", and both stay",
              Remedy::kCopyTheOriginal);
}

AfterReversal AfterReversalOf(Work& work, const DBMultiEntityTransaction& row) {
  const standalone::BookedState state = StateOf(work, row);
  const bool isSent = !state.ofBefore && !standalone::Field(row.requestId).empty();
  switch (state.number) {
    case TransactionState::kEstablished:
      if (!isSent) return {.original = state.number, .reversal = TransactionState::kClosed, .isToBeTold = true};
      return {.original = state.number, .reversal = TransactionState::kEntered};
    case TransactionState::kEntered:
    case TransactionState::kCameBack:
      return {.original = TransactionState::kClosed, .reversal = TransactionState::kClosed};
    default:
      return {.original = state.number, .reversal = TransactionState::kClosed};
  }
}

// The partner was asked to take it back on that day, or takes it back twice.
void RequireDayOf(Work& work, const LostRequest& lost, DateType32 date) {
  if (lost.proposal.date.Compare(date) == 0) return;
  work.Refuse(lost.pairing.partnerName + " was asked to take it back as of " +
                  standalone::FormatIsoDate(lost.proposal.date) + ", by the request " +
                  standalone::Quoted(lost.proposal.request) + ", which these books lost; not as of " +
                  standalone::FormatIsoDate(date),
              Remedy::kEnterWhatWasSent);
}

// What the partner was asked by is the line's memo where none is given, and another one is not.
void AskAsSent(Work& work, const LostRequest& lost, bool isMemoGiven, TransactionToPost& toPost) {
  const auto line = std::ranges::find_if(toPost.lines, [&](const LineToPost& candidate) {
    return candidate.request && candidate.request->relationId == lost.pairing.relationId.value_or(0) &&
           candidate.request->requestId == lost.proposal.request;
  });
  const std::string& memo = line->memo.empty() ? toPost.memo : line->memo;
  if (memo == lost.proposal.memo) return;
  if (isMemoGiven) {
    work.Refuse(lost.pairing.partnerName + " was asked to take it back with the memo " +
                    standalone::Quoted(lost.proposal.memo) + ", by the request " +
                    standalone::Quoted(lost.proposal.request) + ", which these books lost; not with " +
                    standalone::Quoted(memo),
                Remedy::kEnterWhatWasSent);
  }
  line->memo = lost.proposal.memo;
}

// Closes the request of the original if it has come to nothing, and answers with that of the reversal.
RequestToPost Answer(Work& work, DBMultiEntityTransaction row, DateType32 date, PostedReversal& reversal) {
  const standalone::BookedState before = StateOf(work, row);
  const AfterReversal after = AfterReversalOf(work, row);
  const DBMultiEntityRelation partner = PartnerOf(work, row);
  std::string request = NewRequestId(work);
  if (after.reversal == TransactionState::kEntered) {
    RequireEstablished(work, partner);
    if (auto lost = LostReversalOf(work, row)) {
      RequireDayOf(work, *lost, date);
      request = lost->proposal.request;
      reversal.takenUp.push_back(*std::move(lost));
    }
  }
  if (after.isToBeTold) {
    reversal.toTell.push_back({.realm = std::string(standalone::Field(partner.realmId)),
                               .partner = std::string(standalone::Field(partner.partnerName)),
                               .requestId = std::string(standalone::Field(row.requestId)),
                               .state = before});
  }
  if (after.original != before.number) {
    reversal.closed.push_back({.field = "state of " + LineOf(work, row),
                               .before = standalone::MarkedStateName(before),
                               .after = standalone::MarkedStateName({after.original, before.ofBefore})});
    row.state = static_cast<std::int16_t>(after.original);
    work.Host().Intercompany().Change(row);
  }
  using Kind = standalone::EarlierRequest::Kind;
  return {.relationId = row.relationId,
          .requestId = std::move(request),
          .state = after.reversal,
          .earlier = standalone::EarlierRequest{.kind = Kind::kReverses, .targetId = row.targetId}};
}

}  // namespace

std::string TextOf(const TransactionHeader& header) {
  return TransactionText(EnteredType{header.type}, header.id);
}

TransactionHeader RequirePosted(Work& work, std::int32_t txnId) {
  const std::optional<TransactionHeader> header = work.Host().Transactions().FindHeader(txnId);
  if (header && header->posted) return *header;
  work.Refuse("there is no transaction " + std::to_string(txnId), Remedy::kSeeTransactions);
}

void RequireOwn(Work& work, const TransactionHeader& header) {
  if (IsOwn(work, header.id)) return;
  work.Refuse(TextOf(header) + " was booked from a partner's request", Remedy::kTakeBackTheEntry);
}

void RequireNotBefore(Work& work, const TransactionHeader& earlier, DateType32 date) {
  if (date.Compare(earlier.date) >= 0) return;
  work.Refuse("the date " + standalone::FormatIsoDate(date) + " is before that of " + TextOf(earlier) + ", " +
                  standalone::FormatIsoDate(earlier.date),
              Remedy::kGiveALaterDate);
}

std::vector<std::int32_t> LiveMovesOf(Work& work, std::int32_t entryId) {
  return LiveOf(work, LaterOf(work, entryId, LinkKind::kMoves));
}

std::optional<std::int32_t> TakenBackBy(Work& work, std::int32_t entryId) {
  std::vector<exchange::Proposal> naming;
  std::optional<std::int32_t> back;
  for (const DBMultiEntityTransaction& row : RowsOf(work, entryId)) {
    const std::optional<standalone::Pairing> pairing = work.Host().Pairings().FindLiveOf(row.relationId);
    if (!pairing) continue;
    work.Host().Facts().ForEachNaming(
        pairing->id, standalone::Field(row.requestId), [&](const standalone::StoredFact& fact) {
          if (fact.origin != standalone::FactOrigin::kPartners) return;
          naming.push_back(exchange::ProposalOf(exchange::Fact(fact.body, fact.signature)));
        });
    for (const exchange::Proposal& later : naming) {
      if (later.earlier->how != exchange::EarlierRequest::kReversed) continue;
      const std::optional<standalone::InboxRow> booked = work.Host().Inbox().Find(pairing->id, later.request);
      if (booked && booked->txnId) back = booked->txnId;
    }
    naming.clear();
  }
  return back;
}

std::optional<std::int32_t> LastAboutExpenseOf(Work& work, std::int32_t entryId) {
  std::optional<std::int32_t> last;
  for (const std::int32_t move : LaterOf(work, entryId, LinkKind::kMoves)) {
    last = std::max(last, std::optional(move));
    for (const std::int32_t reversal : LaterOf(work, move, LinkKind::kReverses)) last = std::max(last, {reversal});
  }
  return last;
}

void RequireReversible(Work& work, const TransactionHeader& original) {
  RequireOwn(work, original);
  if (const auto reversal = work.Host().Links().ReversalOf(original.id)) {
    work.Refuse(
        TextOf(original) + " is reversed already, by " + TextById(work, *reversal),
        EarlierOf(work, original.id, LinkKind::kMoves) ? Remedy::kMoveTheExpenseAgain : Remedy::kSeeTheReversal);
  }
  const std::vector<DBMultiEntityTransaction> rows = RowsOf(work, original.id);
  RequireComparedWith(work, rows);
  for (const DBMultiEntityTransaction& row : rows) RefuseWhatWaits(work, row);
  if (const auto first = EarlierOf(work, original.id, LinkKind::kReverses)) {
    RequireComeToNothing(work, original, *first);
    RequireNoCorrection(work, *first, LiveOf(work, LaterOf(work, *first, LinkKind::kCorrects)));
  }
  RequireLastMove(work, original.id);
}

void RequireRemovable(Work& work, const TransactionHeader& header) {
  RequireOwn(work, header);
  RequireLastMove(work, header.id);
  RequireNothingLater(work, header);
  const std::vector<DBMultiEntityTransaction> rows = RowsOf(work, header.id);
  RequireComparedWith(work, rows);
  for (const DBMultiEntityTransaction& row : rows) {
    const standalone::BookedState state = StateOf(work, row);
    if (state == TransactionState::kEntered) continue;
    RefuseWhatClosedTheOriginal(work, header, row);
    work.Refuse(LineOf(work, row) + " is " + standalone::MarkedStateName(state) +
                    ", and only what was sent to nobody is removed",
                Remedy::kReverseInstead);
  }
  if (const auto original = EarlierOf(work, header.id, LinkKind::kReverses)) {
    RequireNoCorrection(work, *original, LaterOf(work, *original, LinkKind::kCorrects));
    RequireLastMove(work, *original);
  }
}

PostedReversal PostReversal(Work& work, const TransactionHeader& original, DateType32 date,
                            const std::optional<std::string>& memo) {
  PostedReversal reversal;
  TransactionToPost toPost{.type = original.type,
                           .date = date,
                           .nameId = original.nameId,
                           .memo = memo.value_or(original.memo),
                           .documentNumber = original.documentNumber,
                           .lines = {},
                           .links = {{.kind = LinkKind::kReverses, .earlierTxnId = original.id}}};
  for (const standalone::PostedLine& line : work.Host().Transactions().LinesOf(original.id)) {
    LineToPost mirrored{.accountId = line.accountId,
                        .amount = -line.amount,
                        .memo = MemoOfRepeated(line.memo, original.memo, toPost.memo)};
    DBMultiEntityTransaction row{};
    if (work.Host().Intercompany().Find(original.id, line.id, row)) {
      mirrored.request = Answer(work, row, date, reversal);
    }
    toPost.lines.push_back(std::move(mirrored));
  }
  for (const LostRequest& lost : reversal.takenUp) AskAsSent(work, lost, memo.has_value(), toPost);
  reversal.txnId = Post(work, toPost).txnId;
  LookAgainAtOvertaken(work, original.id);
  return reversal;
}

}  // namespace desk
