#include "standalone/desk/inside/Overtaken.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "standalone/books/FactTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/LinkTable.h"
#include "standalone/desk/inside/Closing.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::LinkKind;
using standalone::OutboxRow;
using standalone::Pairing;
using standalone::TransactionHeader;
using standalone::TransactionState;

constexpr std::string_view kBookedAfterAll = "the partner has booked it, although ";

TransactionHeader HeaderOf(Work& work, std::int32_t txnId) {
  return work.Host().Transactions().FindHeader(txnId).value();
}

// The last of those that stand in its place and are not reversed.
std::optional<std::int32_t> CorrectionOf(Work& work, std::int32_t txnId) {
  std::optional<std::int32_t> last;
  for (const standalone::TransactionLink& link : work.Host().Links().Of(txnId)) {
    const bool corrects = link.earlierTxnId == txnId && link.kind == LinkKind::kCorrects;
    if (corrects && !work.Host().Links().ReversalOf(link.txnId)) last = link.txnId;
  }
  return last;
}

bool AreAll(TransactionState state, Work& work, std::int32_t txnId) {
  std::vector<DBMultiEntityTransaction> rows;
  work.Host().Intercompany().ListOf(txnId, rows);
  return std::ranges::all_of(
      rows, [state](const DBMultiEntityTransaction& row) { return TransactionState{row.state} == state; });
}

// Its request was sent, these books have no transaction for it, and the partner may book it, too.
std::optional<std::string> LostCorrectionOf(Work& work, const Pairing& pairing, std::string_view request) {
  std::set<std::string> naming;
  work.Host().Facts().ForEachNaming(pairing.id, request, [&](const standalone::StoredFact& fact) {
    if (fact.origin != standalone::FactOrigin::kPartners) naming.insert(fact.name);
  });
  for (const std::string& later : naming) {
    const std::optional<OutboxRow> row = work.Host().Outbox().Find(pairing.id, later);
    if (!row || row->targetId) continue;
    const HeldRequest held = HeldAbout(work, pairing, RequestOf::kUs, later);
    const HeldProposal* proposal = held.Proposal();
    const bool corrects = proposal != nullptr && proposal->says.earlier->how == exchange::EarlierRequest::kCorrected;
    const exchange::Answer* answer = held.Answer();
    if (corrects && (answer == nullptr || answer->outcome == exchange::Outcome::kAccepted)) return later;
  }
  return std::nullopt;
}

void LookAgainAt(Work& work, OutboxRow row) {
  DBMultiEntityTransaction line{};
  if (!row.targetId || !IsLeftToDo(row.mark) || !work.Host().Intercompany().FindLine(*row.targetId, line)) return;
  const Pairing pairing = work.Host().Pairings().Find(row.pairing).value();
  std::string mark = WhatIsLeftToDo(work, pairing, row.requestId, line.txnId);
  if (mark == row.mark) return;
  row.mark = std::move(mark);
  work.Host().Outbox().Set(row);
}

}  // namespace

std::optional<std::int32_t> PutBackReversed(Work& work, std::int32_t txnId) {
  const std::optional<std::int32_t> reversal = work.Host().Links().ReversalOf(txnId);
  if (!reversal || CorrectionOf(work, txnId)) return std::nullopt;
  // With another partner it stands otherwise: it was told of the reversal, or has not booked the transaction.
  if (!AreAll(TransactionState::kClosed, work, *reversal) || !AreAll(TransactionState::kEstablished, work, txnId)) {
    return std::nullopt;
  }
  const TransactionHeader header = HeaderOf(work, *reversal);
  return PostReversal(work, header, OpenDay(work, header.date)).txnId;
}

std::string WhatIsLeftToDo(Work& work, const Pairing& pairing, std::string_view request, std::int32_t txnId) {
  const std::string begin(kBookedAfterAll);
  if (const std::optional<std::int32_t> reversal = work.Host().Links().ReversalOf(txnId)) {
    const std::string reverse = TextOf(HeaderOf(work, *reversal));
    const std::optional<std::int32_t> correction = CorrectionOf(work, txnId);
    if (!correction) return begin + reverse + " took it back here: reverse " + reverse;
    const std::string instead = TextOf(HeaderOf(work, *correction));
    return begin + instead + " stands in its place here: withdraw what of " + instead +
           " is sent and not answered, reverse " + instead + ", and then " + reverse + ", which took it back";
  }
  if (const std::optional<std::string> lost = LostCorrectionOf(work, pairing, request)) {
    return begin + "the request " + standalone::Quoted(*lost) +
           ", which these books lost, was to stand in its place: ask the partner to reject that one, or enter it "
           "with " +
           "--lost and reverse it";
  }
  return {};
}

bool IsLeftToDo(std::string_view mark) noexcept {
  return mark.starts_with(kBookedAfterAll);
}

void LookAgainAtOvertaken(Work& work, std::int32_t reversedId) {
  for (const standalone::TransactionLink& link : work.Host().Links().Of(reversedId)) {
    if (link.txnId != reversedId) continue;
    std::vector<DBMultiEntityTransaction> rows;
    work.Host().Intercompany().ListOf(link.earlierTxnId, rows);
    for (const DBMultiEntityTransaction& row : rows) {
      if (auto sent = work.Host().Outbox().FindByLine(row.targetId)) LookAgainAt(work, *std::move(sent));
    }
  }
}

void LookAgainAtRequest(Work& work, const Pairing& pairing, std::string_view request) {
  if (auto sent = work.Host().Outbox().Find(pairing.id, request)) LookAgainAt(work, *std::move(sent));
}

}  // namespace desk
