#include "standalone/desk/inside/HeldRequests.h"

#include <algorithm>
#include <functional>

#include "standalone/books/FactTable.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/exchange/Errors.h"

namespace desk {

namespace {

using exchange::Fact;
using standalone::FactOrigin;
using standalone::Pairing;
using standalone::StoredFact;

bool IsBy(RequestOf whose, FactOrigin origin) noexcept {
  return (whose == RequestOf::kPartner) == (origin == FactOrigin::kPartners);
}

RequestOf Other(RequestOf whose) noexcept {
  return whose == RequestOf::kUs ? RequestOf::kPartner : RequestOf::kUs;
}

// What is not understood is held, and says nothing.
template <typename Take>
void ForEachBy(Work& work, const Pairing& pairing, RequestOf author, std::string_view kind, std::string_view request,
               Take&& take) {
  work.Host().Facts().ForEachOf(pairing.id, kind, request, [&](const StoredFact& stored) {
    if (!IsBy(author, stored.origin)) return;
    try {
      take(Fact(stored.body, stored.signature));
    } catch (const exchange::NotUnderstood&) {
      return;
    }
  });
}

}  // namespace

const HeldProposal* HeldRequest::Proposal() const {
  const exchange::HeldProposal* counts = exchange::ProposalThatCounts(facts);
  if (counts == nullptr) return nullptr;
  return &*std::ranges::find_if(proposals, [&](const HeldProposal& held) { return held.fact.Id() == counts->hash; });
}

const exchange::Answer* HeldRequest::Answer() const {
  const exchange::HeldAnswer* counts = exchange::AnswerThatCounts(facts);
  if (counts == nullptr) return nullptr;
  return &std::ranges::find(answers, counts->hash, [](const auto& held) { return held.first; })->second;
}

HeldRequest HeldAbout(Work& work, const Pairing& pairing, RequestOf whose, std::string_view request) {
  HeldRequest held;
  ForEachBy(work, pairing, whose, exchange::kinds::kProposal, request, [&](const Fact& fact) {
    const exchange::Proposal says = exchange::ProposalOf(fact);
    // In another currency it would be booked as another amount.
    if (says.currency != work.Host().Settings().Get().homeCurrency) return;
    held.facts.proposals.push_back({.hash = fact.Id(), .amount = says.amount});
    held.proposals.push_back({.fact = fact, .says = says});
  });
  ForEachBy(work, pairing, Other(whose), exchange::kinds::kAnswer, request, [&](const Fact& fact) {
    const exchange::Answer says = exchange::AnswerOf(fact);
    // One that answers what is not held answers nothing: who takes an answer takes its proposal, too.
    if (std::ranges::find(held.facts.proposals, says.proposal.Id(), &exchange::HeldProposal::hash) ==
        held.facts.proposals.end()) {
      return;
    }
    held.facts.answers.push_back({.hash = fact.Id(), .outcome = says.outcome, .proposal = says.proposal.Id()});
    held.answers.emplace_back(fact.Id(), says);
  });
  ForEachBy(work, pairing, whose, exchange::kinds::kWithdrawal, request, [&](const Fact& fact) {
    static_cast<void>(exchange::WithdrawalOf(fact));
    held.facts.withdrawal = true;
  });
  return held;
}

}  // namespace desk
