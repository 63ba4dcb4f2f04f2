#include "standalone/books/ImportedFileTable.h"

namespace standalone {

// Nothing that is held of bookings or lists tells of files.
ImportedFileTable::ImportedFileTable(Database& database)
    : find_(database, "SELECT audit_id FROM imported_file WHERE sha256 = ?1"),
      insert_(database, Writes::kBookings, "INSERT OR IGNORE INTO imported_file VALUES (?1, ?2)") {}

std::optional<std::int64_t> ImportedFileTable::AuditLineOf(std::string_view sha256) {
  Rows rows = find_.Query(sha256);
  if (!rows.Step()) return std::nullopt;
  return rows.Int64(0);
}

void ImportedFileTable::Add(std::string_view sha256, std::int64_t auditLine) {
  insert_.Run(sha256, auditLine);
}

}  // namespace standalone
