#include "standalone/desk/inside/Requests.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/OutboxTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Overtaken.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Standing.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using exchange::Fact;
using exchange::Outcome;
using standalone::InboxRow;
using standalone::InboxState;
using standalone::OutboxRow;
using standalone::Pairing;
using standalone::TransactionState;

// What these books have of a partner's request.
struct BooksOfReceiver {
  exchange::ReceiversBooks has;
  std::optional<std::int32_t> txnId;  // of the entry that was booked for it
};

// The entry that was booked from the partner's request, or a line of this company's own with that request id.
struct KnownLine {
  DBMultiEntityTransaction row{};
  bool isOwn = false;
};

std::optional<KnownLine> FindLine(Work& work, const Pairing& pairing, const std::string& request) {
  KnownLine known;
  if (!work.Host().Intercompany().FindRequest(pairing.relationId.value_or(0), request, known.row)) return std::nullopt;
  known.isOwn = IsOwn(work, known.row.txnId);
  return known;
}

bool IsBookedHere(Work& work, const Pairing& pairing, const std::string& request) {
  const std::optional<KnownLine> known = FindLine(work, pairing, request);
  return known && !known->isOwn;
}

// Whether another request that takes the same one back is booked or waits.
bool IsReversedByAnother(Work& work, const Pairing& pairing, const std::string& reversed, const std::string& request) {
  bool isReversed = false;
  work.Host().Facts().ForEachNaming(pairing.id, reversed, [&](const standalone::StoredFact& fact) {
    if (fact.origin != standalone::FactOrigin::kPartners || fact.name == request) return;
    const std::optional<InboxRow> other = work.Host().Inbox().Find(pairing.id, fact.name);
    isReversed = isReversed || (other && (other->state == InboxState::kNew || other->state == InboxState::kAccepted ||
                                          other->state == InboxState::kToBookAgain));
  });
  return isReversed;
}

exchange::Reversed WhatItReverses(Work& work, const Pairing& pairing, const exchange::Proposal& proposal) {
  if (!proposal.earlier || proposal.earlier->how != exchange::EarlierRequest::kReversed) {
    return exchange::Reversed::kNothing;
  }
  if (!IsBookedHere(work, pairing, proposal.earlier->request)) return exchange::Reversed::kNotBooked;
  return IsReversedByAnother(work, pairing, proposal.earlier->request, proposal.request)
             ? exchange::Reversed::kBookedAndReversed
             : exchange::Reversed::kBooked;
}

// By the module, or by an earlier pairing with the same partner.
bool IsRejectionKept(Work& work, const Pairing& pairing, const std::string& request) {
  const std::int32_t relation = pairing.relationId.value_or(0);
  if (work.Host().Rejected().Find(relation, request).relationId != 0) return true;
  const std::optional<InboxRow> known = work.Host().Inbox().FindOfRelation(relation, request);
  return known && known->pairing != pairing.id &&
         (known->state == InboxState::kRejected || known->state == InboxState::kRefused ||
          known->state == InboxState::kWithdrawn);
}

BooksOfReceiver BooksAbout(Work& work, const Pairing& pairing, const exchange::Proposal& proposal,
                           const std::optional<InboxRow>& inbox) {
  BooksOfReceiver books;
  if (inbox) books.has.inbox = inbox->state;
  const std::optional<KnownLine> known = FindLine(work, pairing, proposal.request);
  if (known && !known->isOwn) {
    books.txnId = known->row.txnId;
    books.has.bookedAmount = work.Host().Transactions().FindLineOf(known->row.txnId, known->row.targetId).amount;
  }
  books.has.rejectionIsKept = IsRejectionKept(work, pairing, proposal.request);
  books.has.isInUse =
      (known && known->isOwn) || (!books.has.rejectionIsKept && work.Host().Rejected().Has(proposal.request));
  books.has.reversed = WhatItReverses(work, pairing, proposal);
  return books;
}

// As sentences for a person.
std::string MarkText(Work& work, exchange::Mark mark, const BooksOfReceiver& books, const HeldRequest& held) {
  switch (mark) {
    case exchange::Mark::kKnownWithAnotherAmount:
      return "journal entry " + std::to_string(books.txnId.value_or(0)) + " has this request already, over " +
             standalone::FormatAmount(MoneyOf(work, books.has.bookedAmount.value_or(0)));
    case exchange::Mark::kReversedAlready:
      return "another request takes back the same earlier one";
    case exchange::Mark::kNone:
      break;
  }
  return held.proposals.size() > 1 ? "the partner has proposed it with several contents" : "";
}

exchange::Answer AnswerFromBooks(Work& work, const HeldProposal& proposal, Outcome outcome,
                                 const BooksOfReceiver& books) {
  exchange::Answer answer{.outcome = outcome, .entry = 0, .day = NullDate(), .reason = {}, .proposal = proposal.fact};
  if (outcome == Outcome::kAccepted) {
    answer.entry = books.txnId.value();
    answer.day = work.Host().Transactions().FindHeader(answer.entry).value().date;
  }
  if (outcome == Outcome::kRejected) answer.reason = "it was rejected here before";
  if (outcome == Outcome::kRefused) answer.reason = "the request id is in use here for something else";
  return answer;
}

std::string WhatHappened(InboxState state) {
  switch (state) {
    case InboxState::kNew:
      return "waits in the inbox";
    case InboxState::kHeld:
      return "is held, as what it takes back is not booked here";
    case InboxState::kAccepted:
      return "is booked here";
    case InboxState::kToBookAgain:
      return "was accepted before and is to be booked again";
    case InboxState::kRejected:
      return "was rejected here";
    case InboxState::kRefused:
      return "is refused, as its request id is in use here for something else";
    case InboxState::kWithdrawn:
      return "is withdrawn";
  }
  return {};
}

void NoteChange(DecidedRequest& decided, const std::string& request, const std::optional<InboxRow>& before,
                const InboxRow& now) {
  if (before && before->state == now.state && before->mark == now.mark) return;
  decided.changes.push_back({"request " + request,
                             before ? std::optional(std::string(NameOf(before->state))) : std::nullopt,
                             std::string(NameOf(now.state))});
}

void DecideAtReceiver(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const std::string& request,
                      DecidedRequest& decided) {
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kPartner, request);
  const HeldProposal* proposal = held.Proposal();
  if (proposal == nullptr) return;
  const std::optional<InboxRow> before = work.Host().Inbox().Find(pairing.id, request);
  const BooksOfReceiver books = BooksAbout(work, pairing, proposal->says, before);
  const exchange::ReceiversStanding standing = exchange::StandingAtReceiver(held.facts, books.has);
  const InboxState state = standing.inbox.value();
  const InboxRow now{.pairing = pairing.id,
                     .requestId = request,
                     .proposal = std::string(proposal->fact.Id().Bytes()),
                     .state = state,
                     .mark = MarkText(work, standing.mark, books, held),
                     .txnId = state == InboxState::kAccepted ? books.txnId : std::nullopt};
  if (before == now && !standing.answer) return;
  work.Host().Inbox().Set(now);
  if (standing.answer) MakeAnswer(work, pairing, keys, AnswerFromBooks(work, *proposal, *standing.answer, books));
  NoteChange(decided, request, before, now);
  if (!before || before->state != state) {
    decided.done.push_back(DecidedText(work, proposal->says, state));
  }
}

MEStatusCode MoveTo(const Pairing& pairing, const std::string& request, TransactionState state) {
  return MultiEntityDriver::UpdateTransactionWithState(std::string_view(pairing.partnerRealm),
                                                       std::string_view(request), static_cast<MEState>(state));
}

std::string OutcomeAtSender(const Pairing& pairing, TransactionState state, const exchange::Answer* answer) {
  const std::string reason = answer == nullptr || answer->reason.empty() ? "" : ": " + answer->reason;
  switch (state) {
    case TransactionState::kEstablished:
      return pairing.partnerName + " has accepted it";
    case TransactionState::kCameBack:
      return pairing.partnerName +
             (answer != nullptr && answer->outcome == Outcome::kRefused ? " has refused it" : " has rejected it") +
             reason;
    case TransactionState::kClosed:
      return "it is withdrawn";
    default:
      return "it had been sent";
  }
}

std::string MarkAtSender(const exchange::SendersStanding& standing, const HeldRequest& held,
                         const std::optional<std::int64_t>& amount) {
  if (standing.isLost) return "these books have no transaction for it; they were restored, or a copy is at work";
  if (amount && held.Proposal()->says.amount != *amount) return "the partner was told another amount";
  return held.proposals.size() > 1 ? "it was proposed with several contents" : "";
}

// What it corrected has come back, and the correction was sent: the earlier request has ended.
std::string CloseWhatItCorrects(Work& work, const Pairing& pairing, const exchange::Proposal& lost,
                                DecidedRequest& decided) {
  if (!lost.earlier || lost.earlier->how != exchange::EarlierRequest::kCorrected) return {};
  const std::optional<KnownLine> earlier = FindLine(work, pairing, lost.earlier->request);
  if (!earlier || !earlier->isOwn || TransactionState{earlier->row.state} != TransactionState::kCameBack) return {};
  const MEStatusCode answer = MoveTo(pairing, lost.earlier->request, TransactionState::kClosed);
  if (answer != MEStatusSuccess) return work.WhyNotDone(UseCase::kSetTransactionState, answer);
  decided.changes.push_back({"request " + lost.earlier->request, "came-back", "closed"});
  return {};
}

// The same for one that comes back after its correction was found to be lost.
void CloseForLostCorrection(Work& work, const Pairing& pairing, const std::string& request, DecidedRequest& decided) {
  std::vector<exchange::Fact> naming;
  work.Host().Facts().ForEachNaming(pairing.id, request, [&](const standalone::StoredFact& fact) {
    if (fact.origin != standalone::FactOrigin::kPartners) naming.emplace_back(fact.body, fact.signature);
  });
  for (const exchange::Fact& fact : naming) {
    const std::optional<OutboxRow> later = work.Host().Outbox().Find(pairing.id, fact.What().name);
    if (!later || later->targetId || !decided.outstanding.empty()) continue;
    decided.outstanding = CloseWhatItCorrects(work, pairing, exchange::ProposalOf(fact), decided);
  }
}

// The partner has booked it after all.
void FollowOvertaking(Work& work, const Pairing& pairing, std::int32_t txnId, OutboxRow& row, DecidedRequest& decided) {
  try {
    if (const std::optional<std::int32_t> putBack = PutBackReversed(work, txnId)) {
      decided.txnId = putBack;
      const standalone::AuditDeed posted = DeedOfPosting(work, {}, *putBack);
      decided.changes.insert(decided.changes.end(), posted.changes.begin(), posted.changes.end());
      decided.done.push_back(posted.subject + " puts back what was reversed here before the partner booked it");
    }
  } catch (const standalone::InvalidInput& refused) {
    decided.outstanding = refused.what();
    return;
  }
  const std::string left = WhatIsLeftToDo(work, pairing, row.requestId, txnId);
  if (left.empty()) return;
  row.mark = left;
  decided.done.push_back("request " + row.requestId + ": " + left);
  work.Host().Outbox().Set(row);
}

void DecideAtSender(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const std::string& request,
                    DecidedRequest& decided) {
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kUs, request);
  const HeldProposal* proposal = held.Proposal();
  if (proposal == nullptr) return;
  std::optional<KnownLine> line = FindLine(work, pairing, request);
  if (line && (!line->isOwn || StateOf(work, line->row).ofBefore)) line.reset();
  exchange::SendersBooks books;
  std::optional<std::int64_t> amount;
  if (line) {
    books.row = TransactionState{line->row.state};
    amount = work.Host().Transactions().FindLineOf(line->row.txnId, line->row.targetId).amount;
  }
  const exchange::SendersStanding standing = exchange::StandingAtSender(held.facts, books);
  const std::optional<OutboxRow> before = work.Host().Outbox().Find(pairing.id, request);
  OutboxRow now{.pairing = pairing.id,
                .requestId = request,
                .proposal = std::string(proposal->fact.Id().Bytes()),
                .targetId = line ? std::optional(line->row.targetId) : std::nullopt,
                .mark = MarkAtSender(standing, held, amount)};
  // That stays until a person has put it right.
  if (line && before && IsLeftToDo(before->mark)) {
    if (std::string left = WhatIsLeftToDo(work, pairing, request, line->row.txnId); !left.empty()) now.mark = left;
  }
  if (before != now) work.Host().Outbox().Set(now);
  if (standing.isLost && !before) {
    decided.changes.push_back({"request " + request, std::nullopt, "lost"});
    decided.done.push_back(RequestText(work, proposal->says) + " came back: " + now.mark);
    decided.outstanding = CloseWhatItCorrects(work, pairing, proposal->says, decided);
  }
  if (standing.isToBeWithdrawn) {
    MakeWithdrawal(work, pairing, keys, proposal->says);
    decided.txnId = line->row.txnId;
    decided.changes.push_back({"withdrawing", "no", "yes"});
    decided.done.push_back(RequestText(work, proposal->says) +
                           " had been sent, and is closed here: the partner is asked to withdraw it");
  }
  if (!standing.row || standing.row == books.row) return;
  const MEStatusCode answer = MoveTo(pairing, request, *standing.row);
  if (answer != MEStatusSuccess) {
    decided.outstanding = work.WhyNotDone(UseCase::kSetTransactionState, answer);
    return;
  }
  if (line) decided.txnId = line->row.txnId;
  decided.changes.push_back(
      {"request " + request, standalone::StateName(*books.row), standalone::StateName(*standing.row)});
  if (*standing.row == TransactionState::kCameBack) CloseForLostCorrection(work, pairing, request, decided);
  decided.done.push_back(RequestText(work, proposal->says) + ": " +
                         OutcomeAtSender(pairing, *standing.row, held.Answer()));
  if (standing.wasOvertaken) FollowOvertaking(work, pairing, line->row.txnId, now, decided);
}

// What is to be done about a request that was overtaken depends on what has become of one that corrects it.
void LookAgainAtCorrected(Work& work, const Pairing& pairing, const std::string& request) {
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kUs, request);
  const HeldProposal* proposal = held.Proposal();
  if (proposal == nullptr || !proposal->says.earlier) return;
  LookAgainAtRequest(work, pairing, proposal->says.earlier->request);
}

}  // namespace

bool IsAboutARequest(const Fact& fact) noexcept {
  const std::string& kind = fact.What().kind;
  return kind == exchange::kinds::kProposal || kind == exchange::kinds::kWithdrawal || kind == exchange::kinds::kAnswer;
}

// The module takes two request ids for one that differ by blanks at their ends.
std::string WhyNotUnderstood(const Fact& fact) {
  try {
    static_cast<void>(exchange::MeaningOf(fact));
    const standalone::RequestId request(fact.What().name);
    if (standalone::Trimmed(request.Text()) != request.Text()) return "its request id has blanks at its ends";
  } catch (const standalone::InvalidInput& notUnderstood) {
    return notUnderstood.what();
  }
  return {};
}

RequestOf WhoseRequest(const Fact& fact, bool isByUs) noexcept {
  const bool isAnswer = fact.What().kind == exchange::kinds::kAnswer;
  return isByUs != isAnswer ? RequestOf::kUs : RequestOf::kPartner;
}

DecidedRequest DecideRequest(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, RequestOf whose,
                             const std::string& request) {
  DecidedRequest decided;
  if (pairing.state != standalone::PairingState::kEstablished) {
    decided.outstanding = "the pairing is not established yet";
    return decided;
  }
  if (whose == RequestOf::kUs) {
    DecideAtSender(work, pairing, keys, request, decided);
    LookAgainAtCorrected(work, pairing, request);
    return decided;
  }
  DecideAtReceiver(work, pairing, keys, request, decided);
  DecideWhatNames(work, pairing, keys, request, decided);
  return decided;
}

void DecideWhatNames(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const std::string& request,
                     DecidedRequest& decided) {
  std::set<std::string> naming;
  work.Host().Facts().ForEachNaming(pairing.id, request, [&](const standalone::StoredFact& fact) {
    if (fact.origin == standalone::FactOrigin::kPartners) naming.insert(fact.name);
  });
  for (const std::string& later : naming) {
    const std::optional<InboxRow> row = work.Host().Inbox().Find(pairing.id, later);
    if (!row || (row->state != InboxState::kHeld && row->state != InboxState::kNew)) continue;
    DecideAtReceiver(work, pairing, keys, later, decided);
  }
}

void MakeAnswer(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const exchange::Answer& answer) {
  Keep(work, pairing, exchange::MakeFact(answer, keys), standalone::FactOrigin::kMade);
}

void MakeWithdrawal(Work& work, const Pairing& pairing, const exchange::KeyPair& keys,
                    const exchange::Proposal& proposal) {
  const exchange::Withdrawal withdrawal{.request = proposal.request, .month = exchange::MonthOf(proposal.date)};
  Keep(work, pairing, exchange::MakeFact(withdrawal, pairing.pairingId, keys), standalone::FactOrigin::kMade);
}

std::string DecidedText(Work& work, const exchange::Proposal& proposal, InboxState state) {
  return RequestText(work, proposal) + " " + WhatHappened(state);
}

std::string RequestText(Work& work, const exchange::Proposal& proposal) {
  const standalone::Money amount{
      .minorUnits = proposal.amount, .currency = proposal.currency, .decimals = work.Host().Settings().Get().decimals};
  return std::string(WordOf(proposal.type)) + " " + proposal.request + " of " +
         standalone::FormatIsoDate(proposal.date) + " over " + standalone::FormatAmount(amount) +
         (amount.currency.empty() ? "" : " " + amount.currency);
}

}  // namespace desk
