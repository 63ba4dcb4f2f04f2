#include "standalone/exchange/Standing.h"

#include <algorithm>
#include <tuple>

namespace exchange {

namespace {

using standalone::InboxState;
using standalone::TransactionState;

bool CountsBefore(const HeldAnswer& one, const HeldAnswer& other) noexcept {
  return std::tie(one.outcome, one.hash) < std::tie(other.outcome, other.hash);
}

InboxState StateAfter(Outcome outcome) noexcept {
  switch (outcome) {
    case Outcome::kAccepted:
      return InboxState::kAccepted;
    case Outcome::kRejected:
      return InboxState::kRejected;
    case Outcome::kRefused:
      return InboxState::kRefused;
    case Outcome::kWithdrawn:
      return InboxState::kWithdrawn;
  }
  return InboxState::kRefused;
}

ReceiversStanding Decided(Outcome outcome) noexcept {
  return {.inbox = StateAfter(outcome), .answer = outcome};
}

ReceiversStanding AnsweredBefore(const HeldAnswer& counts, const HeldProposal& proposal,
                                 const ReceiversBooks& books) noexcept {
  const bool isBooked = books.bookedAmount == proposal.amount;
  // What stands in the books was accepted, whatever else was answered by books that are no more.
  if (isBooked && counts.outcome != Outcome::kAccepted) return Decided(Outcome::kAccepted);
  if (!isBooked && counts.outcome == Outcome::kAccepted) return {.inbox = InboxState::kToBookAgain};
  return {.inbox = StateAfter(counts.outcome)};
}

ReceiversStanding Undecided(const ReceiversBooks& books) noexcept {
  if (books.reversed == Reversed::kNotBooked) return {.inbox = InboxState::kHeld};
  if (books.bookedAmount) return {.inbox = InboxState::kNew, .mark = Mark::kKnownWithAnotherAmount};
  if (books.reversed == Reversed::kBookedAndReversed)
    return {.inbox = InboxState::kNew, .mark = Mark::kReversedAlready};
  return {.inbox = InboxState::kNew};
}

TransactionState AfterAnswer(TransactionState row, Outcome outcome) noexcept {
  if (outcome == Outcome::kAccepted) return TransactionState::kEstablished;
  if (row != TransactionState::kSent) return row;
  return outcome == Outcome::kWithdrawn ? TransactionState::kClosed : TransactionState::kCameBack;
}

}  // namespace

const HeldAnswer* AnswerThatCounts(const HeldFacts& held) noexcept {
  const auto first = std::ranges::min_element(held.answers, CountsBefore);
  return first == held.answers.end() ? nullptr : &*first;
}

const HeldProposal* ProposalThatCounts(const HeldFacts& held) noexcept {
  const HeldAnswer* answer = AnswerThatCounts(held);
  const auto counts = answer != nullptr ? std::ranges::find(held.proposals, answer->proposal, &HeldProposal::hash)
                                        : std::ranges::min_element(held.proposals, {}, &HeldProposal::hash);
  return counts == held.proposals.end() ? nullptr : &*counts;
}

ReceiversStanding StandingAtReceiver(const HeldFacts& held, const ReceiversBooks& books) noexcept {
  const HeldProposal* proposal = ProposalThatCounts(held);
  if (proposal == nullptr) return {.inbox = books.inbox};
  if (const HeldAnswer* answer = AnswerThatCounts(held)) return AnsweredBefore(*answer, *proposal, books);
  if (books.bookedAmount == proposal->amount) return Decided(Outcome::kAccepted);
  // What the inbox does not know yet may have been decided before there was one.
  if (!books.inbox && books.rejectionIsKept) return Decided(Outcome::kRejected);
  if (held.withdrawal) return Decided(Outcome::kWithdrawn);
  if (!books.inbox && books.isInUse) return Decided(Outcome::kRefused);
  return Undecided(books);
}

SendersStanding StandingAtSender(const HeldFacts& held, const SendersBooks& books) noexcept {
  if (ProposalThatCounts(held) == nullptr) return {.row = books.row};
  if (!books.row) return {.isLost = true};
  const HeldAnswer* answer = AnswerThatCounts(held);
  const TransactionState sent = *books.row == TransactionState::kEntered ? TransactionState::kSent : *books.row;
  if (answer == nullptr) {
    return {.row = sent,
            .isWithdrawing = held.withdrawal && sent == TransactionState::kSent,
            .isToBeWithdrawn = !held.withdrawal && sent == TransactionState::kClosed};
  }
  const TransactionState row = AfterAnswer(sent, answer->outcome);
  const bool hadEnded = sent == TransactionState::kCameBack || sent == TransactionState::kClosed;
  return {.row = row, .wasOvertaken = hadEnded && row == TransactionState::kEstablished};
}

}  // namespace exchange
