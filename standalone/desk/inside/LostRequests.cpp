#include "standalone/desk/inside/LostRequests.h"

#include <algorithm>
#include <set>
#include <utility>

#include "standalone/books/FactTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/OutboxTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/desk/inside/Awaiting.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/ReadRequests.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"
#include "standalone/values/Unicode.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::Quoted;

// A request that was sent, and whether these books have a line with it.
struct SentOnce {
  LostRequest request;
  bool isInTheBooks = false;
  bool hasComeToNothing = false;
};

std::optional<SentOnce> FindSent(Work& work, const Pairing& pairing, const std::string& request) {
  if (!work.Host().Outbox().Find(pairing.id, request)) return std::nullopt;
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kUs, request);
  const HeldProposal* proposal = held.Proposal();
  if (proposal == nullptr) return std::nullopt;
  const exchange::Answer* answer = held.Answer();
  DBMultiEntityTransaction row{};
  return SentOnce{.request = {.pairing = pairing, .proposal = proposal->says},
                  .isInTheBooks = work.Host().Intercompany().FindRequest(pairing.relationId.value_or(0), request, row),
                  .hasComeToNothing = answer != nullptr && answer->outcome != exchange::Outcome::kAccepted};
}

bool TakesBack(const exchange::Proposal& proposal) {
  return proposal.earlier && proposal.earlier->how == exchange::EarlierRequest::kReversed;
}

std::string NameOf(Work& work, std::int32_t nameId) {
  const std::optional<standalone::Name> name = work.Host().Names().Find(nameId);
  return name ? name->fullName : "";
}

void RequireAsSent(Work& work, const LostRequest& lost, const char* what, const std::string& sent,
                   const std::string& given) {
  if (sent == given) return;
  work.Refuse("the request " + Quoted(lost.proposal.request) + " was sent to " + lost.pairing.partnerName +
                  " with the " + what + " " + Quoted(sent) + ", not " + Quoted(given),
              Remedy::kEnterWhatWasSent);
}

// What the line replaces, as far as these books have it.
std::optional<standalone::EarlierRequest> CorrectedBy(Work& work, const LostRequest& lost) {
  DBMultiEntityTransaction earlier{};
  if (!lost.proposal.earlier ||
      !work.Host().Intercompany().FindRequest(lost.pairing.relationId.value_or(0), lost.proposal.earlier->request,
                                              earlier) ||
      !IsOwn(work, earlier.txnId)) {
    return std::nullopt;
  }
  return standalone::EarlierRequest{.kind = standalone::EarlierRequest::Kind::kCorrects, .targetId = earlier.targetId};
}

void TakeUpOne(Work& work, const LostRequest& lost, TransactionToPost& toPost, std::set<const LineToPost*>& taken) {
  const auto line = std::ranges::find_if(toPost.lines, [&](const LineToPost& candidate) {
    return candidate.request && candidate.request->relationId == lost.pairing.relationId.value_or(0) &&
           candidate.amount == lost.proposal.amount && !taken.contains(&candidate);
  });
  if (line == toPost.lines.end()) {
    work.Refuse("the request " + Quoted(lost.proposal.request) + " asks " + lost.pairing.partnerName + " for " +
                    standalone::FormatAmount(MoneyOf(work, lost.proposal.amount)) + ", and no line does",
                Remedy::kEnterWhatWasSent);
  }
  RequireAsSent(work, lost, "date", standalone::FormatIsoDate(lost.proposal.date),
                standalone::FormatIsoDate(toPost.date));
  RequireAsSent(work, lost, "document number", lost.proposal.document, toPost.documentNumber);
  RequireAsSent(work, lost, "name", lost.proposal.name, NameOf(work, toPost.nameId));
  RequireAsSent(work, lost, "memo", lost.proposal.memo, line->memo.empty() ? toPost.memo : line->memo);
  taken.insert(&*line);
  line->request->requestId = lost.proposal.request;
  line->request->earlier = CorrectedBy(work, lost);
}

bool Holds(const std::vector<LostRequest>& requests, std::int32_t relationId, const std::string& request) {
  return std::ranges::any_of(requests, [&](const LostRequest& one) {
    return one.pairing.relationId == relationId && one.proposal.request == request;
  });
}

// Of partners that are still paired; those that may be booked there, or are.
std::vector<LostRequest> LostAndAlive(Work& work) {
  std::vector<standalone::OutboxRow> rows;
  work.Host().Outbox().ForEachLost([&](const standalone::OutboxRow& row) { rows.push_back(row); });
  std::vector<LostRequest> lost;
  for (const standalone::OutboxRow& row : rows) {
    const std::optional<Pairing> pairing = work.Host().Pairings().Find(row.pairing);
    if (!pairing || !pairing->relationId || pairing->state == standalone::PairingState::kRemoved) continue;
    std::optional<SentOnce> sent = FindSent(work, *pairing, row.requestId);
    if (sent && !sent->isInTheBooks && !sent->hasComeToNothing) lost.push_back(std::move(sent->request));
  }
  return lost;
}

// What a line asks its partner for.
struct Asked {
  std::int16_t txnType = 0;
  std::int32_t relationId = 0;
  std::int64_t amount = 0;
  DateType32 date;
  std::string document;
};

bool HasDocumentOf(const LostRequest& lost, const Asked& asked) {
  return !asked.document.empty() &&
         standalone::FoldedForm(lost.proposal.document) == standalone::FoldedForm(asked.document);
}

// Rather the one of the same document than one of the same day; null without any.
const LostRequest* FindSame(const std::vector<LostRequest>& lost, const Asked& asked) {
  const LostRequest* ofTheDay = nullptr;
  for (const LostRequest& one : lost) {
    if (one.pairing.relationId != asked.relationId || one.proposal.amount != asked.amount) continue;
    if (HasDocumentOf(one, asked)) return &one;
    if (one.proposal.date.Compare(asked.date) == 0) ofTheDay = &one;
  }
  return ofTheDay;
}

void RefuseTheSame(Work& work, const std::vector<LostRequest>& lost, const Asked& asked, Remedy remedy) {
  const LostRequest* const same = FindSame(lost, asked);
  if (same == nullptr) return;
  work.Refuse(same->pairing.partnerName + " was sent the " + RequestText(work, same->proposal) +
                  ", which these books lost; this " + NounOf(EnteredType{asked.txnType}) + " asks for that amount " +
                  (HasDocumentOf(*same, asked) ? "under the same document number, " + Quoted(asked.document)
                                               : "on the same day"),
              remedy);
}

}  // namespace

LostRequest RequireLost(Work& work, EnteredType type, const standalone::RequestId& request) {
  RequireCompared(work);
  std::vector<SentOnce> sent;
  for (const Pairing& pairing : PairingsOf(work, std::nullopt)) {
    if (auto found = FindSent(work, pairing, request.Text())) sent.push_back(*std::move(found));
  }
  const std::string called = "the request " + Quoted(request.Text());
  if (sent.empty()) {
    work.Refuse(called + " was sent to no partner with whom this company is paired", Remedy::kSeeTheOutbox);
  }
  std::erase_if(sent, [](const SentOnce& one) { return one.isInTheBooks; });
  if (sent.empty()) work.Refuse(called + " is in these books, and was not lost", Remedy::kSeeTheOutbox);
  if (sent.size() > 1) {
    work.Refuse(called + " was sent to " + sent[0].request.pairing.partnerName + " and to " +
                    sent[1].request.pairing.partnerName + ", and cannot be told from the other one",
                Remedy::kSeeTheOutbox);
  }
  const exchange::Proposal& proposal = sent.front().request.proposal;
  if (TakesBack(proposal)) {
    work.Refuse(called + " takes back the request " + Quoted(proposal.earlier->request) +
                    "; reverse the transaction of that one, with the date " + standalone::FormatIsoDate(proposal.date),
                Remedy::kSeeTheOutbox);
  }
  if (TxnTypeOf(proposal.type) != static_cast<std::int16_t>(type)) {
    work.Refuse(called + " is one of a " + NounOf(EnteredType{TxnTypeOf(proposal.type)}) + ", not of a " + NounOf(type),
                Remedy::kSeeTheOutbox);
  }
  return std::move(sent.front().request);
}

std::optional<LostRequest> LostReversalOf(Work& work, const DBMultiEntityTransaction& row) {
  const std::optional<Pairing> pairing = work.Host().Pairings().FindLiveOf(row.relationId);
  if (!pairing) return std::nullopt;
  const std::string reversed(standalone::Field(row.requestId));
  std::set<std::string> naming;
  work.Host().Facts().ForEachNaming(pairing->id, reversed, [&](const standalone::StoredFact& fact) {
    if (fact.origin != standalone::FactOrigin::kPartners) naming.insert(fact.name);
  });
  for (const std::string& request : naming) {
    const std::optional<SentOnce> sent = FindSent(work, *pairing, request);
    if (!sent || sent->isInTheBooks || sent->hasComeToNothing) continue;
    if (TakesBack(sent->request.proposal) && sent->request.proposal.earlier->request == reversed) return sent->request;
  }
  return std::nullopt;
}

void TakeUp(Work& work, const std::vector<LostRequest>& lost, TransactionToPost& toPost) {
  std::set<const LineToPost*> taken;
  for (const LostRequest& one : lost) TakeUpOne(work, one, toPost, taken);
}

void RefuseToAskTwice(Work& work, const TransactionToPost& toPost, const std::vector<LostRequest>& takenUp) {
  if (std::ranges::none_of(toPost.lines, [](const LineToPost& line) { return line.request.has_value(); })) return;
  std::vector<LostRequest> lost = LostAndAlive(work);
  std::erase_if(lost, [&](const LostRequest& one) {
    return Holds(takenUp, one.pairing.relationId.value(), one.proposal.request);
  });
  for (const LineToPost& line : toPost.lines) {
    if (!line.request || Holds(takenUp, line.request->relationId, line.request->requestId)) continue;
    RefuseTheSame(work, lost,
                  {.txnType = toPost.type,
                   .relationId = line.request->relationId,
                   .amount = line.amount,
                   .date = toPost.date,
                   .document = toPost.documentNumber},
                  Remedy::kEnterUnderTheLostRequest);
  }
}

void RefuseToSendTwice(Work& work, const DBMultiEntityTransaction& row) {
  const std::vector<LostRequest> lost = LostAndAlive(work);
  if (lost.empty()) return;
  const std::optional<standalone::TransactionHeader> header = work.Host().Transactions().FindHeader(row.txnId);
  if (!header) return;
  RefuseTheSame(work, lost,
                {.txnType = row.txnType,
                 .relationId = row.relationId,
                 .amount = work.Host().Transactions().FindLineOf(row.txnId, row.targetId).amount,
                 .date = header->date,
                 .document = header->documentNumber},
                Remedy::kSendByNameOrTakeBack);
}

std::vector<standalone::AuditChange> FollowTakenUp(Work& work, const std::vector<LostRequest>& lost) {
  std::vector<standalone::AuditChange> changes;
  if (lost.empty()) return changes;
  const exchange::KeyPair keys = RequireKeys(work);
  for (const LostRequest& one : lost) {
    const DecidedRequest decided = DecideRequest(work, one.pairing, keys, RequestOf::kUs, one.proposal.request);
    if (!decided.outstanding.empty()) work.Refuse(decided.outstanding, Remedy::kSeeTheOutbox);
    changes.insert(changes.end(), decided.changes.begin(), decided.changes.end());
  }
  return changes;
}

}  // namespace desk
