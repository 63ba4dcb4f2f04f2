#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "standalone/books/AuditTable.h"
#include "standalone/company/CompanyFile.h"

namespace standalone {

struct Backup {
  std::uintmax_t bytes = 0;
  std::int64_t auditLines = 0;
  std::string head;  // the SHA-256 of its last audit line
};

// Throws CompanyFileError when a file of that name is there, or something that its engine would take for its own, or
// when the name is one that what lies beside the company has, or will have.
void RequireFreeForBackup(const std::filesystem::path& backup, const std::filesystem::path& company);

// Copies all that is committed in a company, outside of units of work and while others may work on it, to a file of its
// owner's that is there once it is complete, on the disk and found sound in all of it. Throws CompanyFileError, and
// leaves nothing behind.
Backup MakeBackup(SqliteDatabase& company, const std::filesystem::path& backup, SchemaSpan schema = SchemaSteps());

// The audit trail of a file that nobody else opens; searches through all of it. Throws DamagedFile, which calls the
// file by that name.
AuditCheck TrailOfDraft(const std::filesystem::path& draft, const std::filesystem::path& name, SchemaSpan schema);

// Searches through all of a company, and its audit trail, whatever its size. Throws DamagedFile.
AuditCheck RequireWhole(SqliteDatabase& database, SchemaSpan schema);

}  // namespace standalone
