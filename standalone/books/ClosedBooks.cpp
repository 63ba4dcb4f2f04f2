#include "standalone/books/ClosedBooks.h"

namespace standalone {

ClosedBooks::ClosedBooks(Database& database)
    : allow_(database, Writes::kBookings, "INSERT INTO after_close (id) VALUES (1)"),
      allowNone_(database, Writes::kBookings, "DELETE FROM after_close") {}

void ClosedBooks::AllowChanges() {
  allow_.Run();
}

void ClosedBooks::AllowNoChanges() {
  allowNone_.Run();
}

}  // namespace standalone
