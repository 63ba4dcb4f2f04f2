#pragma once

#include <functional>

#include "MultiEntityHost/Bridge.h"
#include "standalone/books/FactTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/values/WaitingWork.h"

namespace standalone {

// Whether an intercompany transaction in that state waits for this company: one that came back, to be corrected and
// sent again or closed. What is entered or sent waits for others; established and closed ones are settled; other
// numbers ask nothing of anybody. One of before waits when the partner has sent it (0), when it is pending (1) and when
// it came back to be changed (2).
bool WaitsForAnswer(BookedState state) noexcept;

// What waits in the company file; each question is answered in the unit of work that is open, or in one of its own.
class PendingWork {
 public:
  struct Tables {
    RelationTable& relations;
    IntercompanyTable& intercompany;
    PairingTable& pairings;
    InboxTable& inbox;
    FactTable& facts;
  };
  PendingWork(Database& database, const Tables& tables) noexcept : database_(database), tables_(tables) {}

  // Which of the facts that are set aside wait for a person: all of them, unless it is said. The books do not know what
  // facts say.
  void CountAsOutstanding(std::function<bool(const StoredFact& fact)> isOutstanding);

  // Relations wait while one of them is pending (state 1); all else that waits counts as transactions.
  SyncNeed Need();
  // Of partners with whom the pairing is ended nothing is counted.
  WaitingWork Count();

 private:
  std::int64_t CountOutstanding(const Pairing& pairing);

  Database& database_;
  Tables tables_;
  std::function<bool(const StoredFact& fact)> isOutstanding_ = [](const StoredFact&) {
    return true;
  };
};

}  // namespace standalone
