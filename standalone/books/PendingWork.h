#pragma once

#include "MultiEntityHost/Bridge.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RelationTable.h"

namespace standalone {

// Whether an intercompany transaction in that state waits for this company: one that came back, to be corrected and
// sent again or closed. What is entered or sent waits for others; established and closed ones are settled; other
// numbers ask nothing of anybody. One of before waits when the partner has sent it (0), when it is pending (1) and when
// it came back to be changed (2).
bool WaitsForAnswer(BookedState state) noexcept;

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
