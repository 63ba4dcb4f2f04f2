#pragma once

#include "standalone/storage/Statement.h"

namespace standalone {

// The days through which the books are closed, as the settings tell: the company posts and deletes nothing on them.
// Every operation needs an open unit of work.
class ClosedBooks {
 public:
  explicit ClosedBooks(Database& database);

  // From one to the other the unit of work posts and deletes on closed days as well. A unit without the second one is
  // not committed.
  void AllowChanges();
  void AllowNoChanges();

 private:
  Statement allow_;
  Statement allowNone_;
};

}  // namespace standalone
