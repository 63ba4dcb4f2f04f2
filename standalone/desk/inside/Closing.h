#pragma once

#include "MultiEntityHost/DateType32.h"
#include "standalone/books/AuditTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/ClosedDays.h"

namespace desk {

// The first day on which the books are open, unless the one that is meant is.
DateType32 OpenDay(Work& work, DateType32 meant);

// What a use case posts and removes where the books are closed; within a unit of work that writes, and gone before its
// end.
class Closing {
 public:
  // Refused unless who wants to change closed days is an administrator.
  Closing(Work& work, ClosedDays closedDays);
  Closing(const Closing&) = delete;
  Closing& operator=(const Closing&) = delete;
  ~Closing();

  // Asked before something of that day is posted or removed; refused where it may not be.
  void RequireOpen(DateType32 day);
  // Has the trail tell of a closed day that was changed.
  standalone::AuditDeed Told(standalone::AuditDeed deed) const;

 private:
  Work& work_;
  ClosedDays closedDays_;
  bool changesClosedDays_ = false;
};

}  // namespace desk
