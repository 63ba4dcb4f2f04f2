#include "standalone/books/PendingWork.h"

namespace standalone {

namespace {

constexpr std::int16_t kSentByPartner = 0;
constexpr std::int16_t kPending = 1;
constexpr std::int16_t kSentBackForChange = 2;

}  // namespace

bool WaitsForAnswer(std::int16_t transactionState) noexcept {
  return transactionState == kSentByPartner || transactionState == kPending || transactionState == kSentBackForChange;
}

SyncNeed PendingWork::Need() {
  return InReadingUnit(database_, [this] {
    const bool transactionsWait = intercompany_.HasAnyState(&WaitsForAnswer);
    const bool relationsWait = relations_.HasAnyInState(kPending);
    return static_cast<SyncNeed>((transactionsWait ? kTransactionsWait : kNothingWaits) +
                                 (relationsWait ? kRelationsWait : kNothingWaits));
  });
}

}  // namespace standalone
