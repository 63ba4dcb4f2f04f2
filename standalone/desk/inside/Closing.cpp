#include "standalone/desk/inside/Closing.h"

#include <utility>

#include "standalone/books/ClosedBooks.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/values/Dates.h"

namespace desk {

DateType32 OpenDay(Work& work, DateType32 meant) {
  const DateType32 closed = work.Host().Settings().Get().closingDate;
  return meant.Value() > closed.Value() ? meant : standalone::DayAfter(closed);
}

Closing::Closing(Work& work, ClosedDays closedDays) : work_(work), closedDays_(closedDays) {
  if (closedDays_ == ClosedDays::kChangedAllTheSame)
    work_.RequireAdministrator("a change after the closing of the books");
}

// The file commits no unit of work that leaves it open, so a failure here takes all of it back.
Closing::~Closing() {
  if (!changesClosedDays_) return;
  try {
    work_.Host().ClosedBooks().AllowNoChanges();
  } catch (...) {
    work_.Host().Data().Rollback();
  }
}

void Closing::RequireOpen(DateType32 day) {
  const DateType32 through = work_.Host().Settings().Get().closingDate;
  if (day.Value() > through.Value()) return;
  if (closedDays_ == ClosedDays::kRefused) {
    work_.Refuse("the books are closed through " + standalone::FormatIsoDate(through) + ", and " +
                     standalone::FormatIsoDate(day) + " is not after that",
                 Remedy::kDateLaterOrReopen);
  }
  if (std::exchange(changesClosedDays_, true)) return;
  work_.Host().ClosedBooks().AllowChanges();
}

standalone::AuditDeed Closing::Told(standalone::AuditDeed deed) const {
  if (changesClosedDays_) deed.changes.push_back({.field = "after close", .before = std::nullopt, .after = "yes"});
  return deed;
}

}  // namespace desk
