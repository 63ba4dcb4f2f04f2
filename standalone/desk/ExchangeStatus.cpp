#include "standalone/desk/ExchangeStatus.h"

#include <map>
#include <string>

#include "standalone/desk/Company.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Pairing.h"
#include "standalone/values/Amount.h"

namespace desk {

namespace {

using OutboxesByRealm = std::map<std::string, OutboxStatus>;
using InboxesByRealm = std::map<std::string, InboxStatus>;

void CountIn(RequestsOfAKind& kind, DateType32 date, const standalone::Money& amount) {
  ++kind.count;
  if (kind.count == 1) {
    kind.sum = amount;
    kind.oldest = date;
    return;
  }
  if (date.Compare(*kind.oldest) < 0) kind.oldest = date;
  if (!kind.sum) return;
  const std::optional<std::int64_t> more = standalone::AddAmounts(kind.sum->minorUnits, amount.minorUnits);
  if (more) {
    kind.sum->minorUnits = *more;
  } else {
    kind.sum.reset();
  }
}

// Nothing for what is settled, or was booked when nothing was exchanged.
RequestsOfAKind* WhereItCounts(OutboxStatus& status, const OutboxRequest& request) {
  if (request.isLost || !request.state) return &status.lost;
  if (request.state->ofBefore) return nullptr;
  switch (request.state->number) {
    case standalone::TransactionState::kEntered:
      return &status.entered;
    case standalone::TransactionState::kSent:
      if (request.isWithdrawing) return &status.withdrawing;
      return request.isDisputed ? &status.disputed.requests : &status.unanswered;
    case standalone::TransactionState::kCameBack:
      return &status.cameBack;
    default:
      return nullptr;
  }
}

RequestsOfAKind* WhereItCounts(InboxStatus& status, const InboxRequest& request) {
  if (request.isDisputed) return &status.disputed.requests;
  switch (request.state) {
    case standalone::InboxState::kNew:
      return &status.waiting;
    case standalone::InboxState::kHeld:
      return &status.held;
    case standalone::InboxState::kToBookAgain:
      return &status.toBookAgain;
    default:
      return nullptr;
  }
}

// Counts one that is among the disputed ones.
template <typename Status, typename Request>
void CountToAnswer(Status& status, const RequestsOfAKind* kind, const Request& request) {
  if (kind == &status.disputed.requests && !request.remarks.back().isOurs) ++status.disputed.toAnswer;
}

OutboxesByRealm OutboxesOf(Company& company) {
  OutboxesByRealm all;
  for (const OutboxRequest& request : ListOutbox(company)) {
    OutboxStatus& status = all[request.realm];
    RequestsOfAKind* const kind = WhereItCounts(status, request);
    if (kind == nullptr) continue;
    CountIn(*kind, request.date, request.amount);
    CountToAnswer(status, kind, request);
  }
  return all;
}

InboxesByRealm InboxesOf(Company& company) {
  InboxesByRealm all;
  for (const InboxRequest& request : ListInbox(company)) {
    InboxStatus& status = all[request.realm];
    RequestsOfAKind* const kind = WhereItCounts(status, request);
    if (kind == nullptr) continue;
    CountIn(*kind, request.date, request.amount);
    CountToAnswer(status, kind, request);
    if (!request.mark.empty()) ++status.marked;
  }
  return all;
}

// What `read` reads; nothing for who has no right to it.
template <typename Read>
auto IfAllowed(Read read) -> std::optional<decltype(read())> {
  try {
    return read();
  } catch (const Refused& refused) {
    const Remedy remedy = refused.Value().remedy;
    if (remedy == Remedy::kAskForTheRight || remedy == Remedy::kAskAnAdministrator) return std::nullopt;
    throw;
  }
}

// With nothing to tell for a partner that has no requests.
template <typename Status>
std::optional<Status> StatusWith(const std::optional<std::map<std::string, Status>>& all, const std::string& realm) {
  if (!all) return std::nullopt;
  const auto found = realm.empty() ? all->end() : all->find(realm);
  return found == all->end() ? Status() : found->second;
}

}  // namespace

std::vector<ExchangeStatus> TellExchangeStatus(Company& company) {
  const std::vector<PairedPartner> partners = ListPairedPartners(company);
  const std::optional<OutboxesByRealm> outboxes = IfAllowed([&] { return OutboxesOf(company); });
  const std::optional<InboxesByRealm> inboxes = IfAllowed([&] { return InboxesOf(company); });
  std::vector<ExchangeStatus> all;
  for (const PairedPartner& partner : partners) {
    all.push_back({.partner = partner,
                   .outbox = StatusWith(outboxes, partner.realm),
                   .inbox = StatusWith(inboxes, partner.realm)});
  }
  return all;
}

}  // namespace desk
