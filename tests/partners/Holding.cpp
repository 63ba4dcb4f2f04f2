#include "partners/Holding.h"

#include <algorithm>
#include <tuple>
#include <variant>

namespace partners {

namespace {

void Note(std::map<RequestName, HeldRequest>& held, const std::string& pairing, const HeldFact& one) {
  const exchange::Meaning meaning = exchange::MeaningOf(one.fact);
  // An answer is by the other one of the two.
  const bool isAnswer = std::holds_alternative<exchange::Answer>(meaning);
  const bool isOfOwnRequest = isAnswer != one.isOwn;
  // A dispute and a note decide nothing.
  if (std::holds_alternative<exchange::PairingOffer>(meaning) || std::holds_alternative<exchange::Remark>(meaning) ||
      std::holds_alternative<exchange::NewKey>(meaning)) {
    return;
  }
  HeldRequest& request = held[{.pairing = pairing, .request = one.fact.What().name, .isOwn = isOfOwnRequest}];
  request.isOwn = isOfOwnRequest;
  if (const auto* proposal = std::get_if<exchange::Proposal>(&meaning)) {
    request.proposals.emplace(one.fact.Id(), *proposal);
  } else if (isAnswer) {
    request.answers.push_back({.hash = one.fact.Id(), .what = std::get<exchange::Answer>(meaning)});
  } else {
    request.isWithdrawn = request.isWithdrawn || one.isApplied;
  }
}

}  // namespace

std::optional<exchange::Outcome> HeldRequest::Outcome() const {
  const auto first = std::ranges::min_element(answers, [](const Said& one, const Said& other) {
    return std::tie(one.what.outcome, one.hash) < std::tie(other.what.outcome, other.hash);
  });
  if (first == answers.end()) return std::nullopt;
  return first->what.outcome;
}

std::map<RequestName, HeldRequest> HeldRequests(Books& books) {
  std::map<RequestName, HeldRequest> held;
  for (const auto& [pairing, facts] : books.Facts()) {
    for (const HeldFact& fact : facts) Note(held, pairing, fact);
  }
  return held;
}

}  // namespace partners
