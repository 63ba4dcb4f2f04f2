#include "standalone/books/PendingWork.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace standalone {

namespace {

bool IsToConfirm(const Pairing& pairing) noexcept {
  return pairing.state == PairingState::kAnswered;
}

}  // namespace

bool WaitsForAnswer(BookedState state) noexcept {
  if (!state.ofBefore) return state.number == TransactionState::kCameBack;
  const auto number = static_cast<std::int16_t>(state.number);
  return number >= 0 && number <= 2;
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
        .outstanding = tables_.facts.CountSetAside(),
        .relations = tables_.relations.CountInState(static_cast<std::int16_t>(RelationState::kPending))};
    tables_.intercompany.ForEachState([&waiting](BookedState state, std::int64_t count) {
      if (!WaitsForAnswer(state)) return;
      (state.number == TransactionState::kCameBack ? waiting.cameBack : waiting.ofBefore) += count;
    });
    const std::vector<Pairing> pairings = tables_.pairings.List();
    waiting.partners = std::ranges::count_if(pairings, IsToConfirm);
    return waiting;
  });
}

}  // namespace standalone
