#include "standalone/books/PendingWork.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace standalone {

namespace {

bool IsToConfirm(PairingTable& pairings, const Pairing& pairing) {
  if (pairing.state == PairingState::kRemoved) return false;
  if (pairing.state == PairingState::kAnswered) return true;
  return std::ranges::count(pairings.PartnerKeysOf(pairing.id), KeyStanding::kOffered, &PartnerKey::standing) != 0;
}

}  // namespace

bool WaitsForAnswer(BookedState state) noexcept {
  if (!state.ofBefore) return state.number == TransactionState::kCameBack;
  const auto number = static_cast<std::int16_t>(state.number);
  return number >= 0 && number <= 2;
}

void PendingWork::CountAsOutstanding(std::function<bool(const StoredFact& fact)> isOutstanding) {
  isOutstanding_ = std::move(isOutstanding);
}

SyncNeed PendingWork::Need() {
  const WaitingWork waiting = Count();
  const bool transactionsWait =
      waiting.requests + waiting.cameBack + waiting.ofBefore + waiting.partners + waiting.outstanding != 0;
  return static_cast<SyncNeed>((transactionsWait ? kTransactionsWait : kNothingWaits) +
                               (waiting.relations != 0 ? kRelationsWait : kNothingWaits));
}

WaitingWork PendingWork::Count() {
  return InReadingUnit(database_, [this] {
    WaitingWork waiting{
        .requests = tables_.inbox.CountToAnswer(),
        .cameBack = 0,
        .ofBefore = 0,
        .partners = 0,
        .outstanding = 0,
        .relations = tables_.relations.CountInState(static_cast<std::int16_t>(RelationState::kPending))};
    tables_.intercompany.ForEachState([&waiting](BookedState state, std::int64_t count) {
      if (!WaitsForAnswer(state)) return;
      (state.number == TransactionState::kCameBack ? waiting.cameBack : waiting.ofBefore) += count;
    });
    for (const Pairing& pairing : tables_.pairings.List()) {
      if (IsToConfirm(tables_.pairings, pairing)) ++waiting.partners;
      if (pairing.state != PairingState::kRemoved) waiting.outstanding += CountOutstanding(pairing);
    }
    return waiting;
  });
}

std::int64_t PendingWork::CountOutstanding(const Pairing& pairing) {
  std::int64_t count = 0;
  tables_.facts.ForEachSetAside(pairing.id, [&](const StoredFact& fact) {
    if (isOutstanding_(fact)) ++count;
  });
  return count;
}

}  // namespace standalone
