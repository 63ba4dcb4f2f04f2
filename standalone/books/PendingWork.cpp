#include "standalone/books/PendingWork.h"

#include <cstdint>

namespace standalone {

bool WaitsForAnswer(BookedState state) noexcept {
  if (!state.ofBefore) return state.number == TransactionState::kCameBack;
  const auto number = static_cast<std::int16_t>(state.number);
  return number >= 0 && number <= 2;
}

SyncNeed PendingWork::Need() {
  return InReadingUnit(database_, [this] {
    const bool transactionsWait = intercompany_.HasAnyState(&WaitsForAnswer);
    const bool relationsWait = relations_.HasAnyInState(static_cast<std::int16_t>(RelationState::kPending));
    return static_cast<SyncNeed>((transactionsWait ? kTransactionsWait : kNothingWaits) +
                                 (relationsWait ? kRelationsWait : kNothingWaits));
  });
}

}  // namespace standalone
