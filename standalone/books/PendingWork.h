#pragma once

#include <cstdint>

#include "MultiEntityHost/Bridge.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RelationTable.h"

namespace standalone {

// Whether an intercompany transaction in that state waits for this company's answer: one that the partner has sent (0),
// that is pending (1) or that came back to be changed (2). Established (3), rejected (4) and deactivated (5) ones are
// settled; other numbers ask nothing of anybody.
bool WaitsForAnswer(std::int16_t transactionState) noexcept;

// What waits in the company file; each question is answered in the unit of work that is open, or in one of its own.
class PendingWork {
 public:
  PendingWork(Database& database, RelationTable& relations, IntercompanyTable& intercompany) noexcept
      : database_(database), relations_(relations), intercompany_(intercompany) {}

  // Relations wait while one of them is pending (state 1).
  SyncNeed Need();

 private:
  Database& database_;
  RelationTable& relations_;
  IntercompanyTable& intercompany_;
};

}  // namespace standalone
