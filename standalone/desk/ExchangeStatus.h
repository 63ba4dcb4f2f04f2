#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/results/PairedPartner.h"
#include "standalone/values/Money.h"

// How far this company is with each partner with whom it exchanges letters.
namespace desk {

class Company;

// Requests that are as far as each other.
struct RequestsOfAKind {
  std::int64_t count = 0;
  std::optional<standalone::Money> sum;  // none of none, and of more than can be counted
  std::optional<DateType32> oldest;      // the earliest of their dates
};

struct DisputedRequests {
  RequestsOfAKind requests;
  std::int64_t toAnswer = 0;  // of which the partner was the last to say something
};

struct OutboxStatus {
  RequestsOfAKind entered;      // and not sent
  RequestsOfAKind unanswered;   // sent, and the partner has neither answered nor disputed nor been asked to let go
  DisputedRequests disputed;    // by the partner, which has not answered them nor been asked to let go
  RequestsOfAKind withdrawing;  // the partner was asked not to accept them, and has not answered
  RequestsOfAKind cameBack;
  RequestsOfAKind lost;  // the partner has their proposals, these books have no transactions
};

struct InboxStatus {
  RequestsOfAKind waiting;  // new, for a person
  RequestsOfAKind held;
  DisputedRequests disputed;  // by this company; neither waiting nor held
  RequestsOfAKind toBookAgain;
  std::int64_t marked = 0;  // of all of these, those that a person has to look at closely
};

struct ExchangeStatus {
  PairedPartner partner;
  std::optional<OutboxStatus> outbox;  // none for who may see no transactions
  std::optional<InboxStatus> inbox;
};

// Of each partner whose pairing is not removed, in the order in which the pairings were begun; of requests as far as
// the user may see those of their types.
std::vector<ExchangeStatus> TellExchangeStatus(Company& company);

}  // namespace desk
