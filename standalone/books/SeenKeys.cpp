#include "standalone/books/SeenKeys.h"

namespace standalone {

namespace {

// What was noted of a key.
enum Note : std::int32_t { kNothing, kComplaint, kMetBefore };

}  // namespace

// What it writes is nobody's list.
SeenKeys::SeenKeys(Database& database)
    : create_(database, Writes::kBookings,
              "CREATE TEMP TABLE import_key (key TEXT PRIMARY KEY NOT NULL, line INTEGER NOT NULL, "
              "used INTEGER NOT NULL, note INTEGER NOT NULL) STRICT, WITHOUT ROWID"),
      drop_(database, Writes::kBookings, "DROP TABLE temp.import_key"),
      insert_(database, Writes::kBookings, "INSERT OR IGNORE INTO temp.import_key VALUES (?1, ?2, ?3, 0)"),
      note_(database, Writes::kBookings, "UPDATE temp.import_key SET note = ?2 WHERE key = ?1"),
      before_(database, "SELECT line, note FROM temp.import_key WHERE key = ?1"),
      lineOfUsed_(database, "SELECT ifnull(max(line), 0) FROM temp.import_key WHERE used = ?1") {}

void SeenKeys::Begin() {
  create_.Run();
}

void SeenKeys::End() {
  drop_.Run();
}

bool SeenKeys::Add(std::string_view key, const Place& place) {
  return insert_.Run(key, place.line, place.used) != 0;
}

void SeenKeys::NoteComplaint(std::string_view key) {
  note_.Run(key, std::int32_t{kComplaint});
}

std::optional<SeenKeys::Before> SeenKeys::MetBefore(std::string_view key) {
  Before before;
  {
    Rows rows = before_.Query(key);
    if (!rows.Step() || rows.Int32(1) == kMetBefore) return std::nullopt;
    before = {.line = rows.Int64(0), .complaint = rows.Int32(1) == kComplaint};
  }
  note_.Run(key, std::int32_t{kMetBefore});
  return before;
}

// One that was not put to use shares the number with the next one that was.
std::int64_t SeenKeys::LineOfUsed(std::int64_t before) {
  Rows rows = lineOfUsed_.Query(before);
  return rows.Step() ? rows.Int64(0) : 0;
}

}  // namespace standalone
