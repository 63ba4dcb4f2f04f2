#include "standalone/books/SeenKeys.h"

namespace standalone {

// What it writes is nobody's list.
SeenKeys::SeenKeys(Database& database)
    : create_(database, Writes::kBookings,
              "CREATE TEMP TABLE import_key (key TEXT PRIMARY KEY NOT NULL) STRICT, WITHOUT ROWID"),
      drop_(database, Writes::kBookings, "DROP TABLE temp.import_key"),
      insert_(database, Writes::kBookings, "INSERT OR IGNORE INTO temp.import_key VALUES (?1)") {}

void SeenKeys::Begin() {
  create_.Run();
}

void SeenKeys::End() {
  drop_.Run();
}

bool SeenKeys::Add(std::string_view key) {
  return insert_.Run(key) != 0;
}

}  // namespace standalone
