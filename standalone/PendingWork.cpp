#include "standalone/PendingWork.h"

namespace standalone {

namespace {

constexpr std::int16_t kSentByPartner = 0;
constexpr std::int16_t kPending = 1;
constexpr std::int16_t kSentBackForChange = 2;

}  // namespace

bool WaitsForAnswer(std::int16_t transactionState) noexcept {
  return transactionState == kSentByPartner || transactionState == kPending || transactionState == kSentBackForChange;
}

PendingWork::PendingWork(Database& database)
    : database_(database),
      transactionStates_(database, "SELECT DISTINCT state FROM me_transaction"),
      pendingRelation_(database, "SELECT 1 FROM me_relation WHERE state = ?1 LIMIT 1") {}

SyncNeed PendingWork::Need() {
  return InReadingUnit(database_, [this] {
    return static_cast<SyncNeed>((TransactionsWait() ? kTransactionsWait : kNothingWaits) +
                                 (RelationsWait() ? kRelationsWait : kNothingWaits));
  });
}

bool PendingWork::TransactionsWait() {
  Rows rows = transactionStates_.Query();
  while (rows.Step()) {
    if (WaitsForAnswer(rows.Int16(0))) return true;
  }
  return false;
}

bool PendingWork::RelationsWait() {
  return pendingRelation_.Query(kPending).Step();
}

}  // namespace standalone
