#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "standalone/storage/Statement.h"

namespace standalone {

// The files whose rows are in the books, by their SHA-256, each with the line of the audit trail that tells of its
// first import. Every operation needs an open unit of work.
class ImportedFileTable {
 public:
  explicit ImportedFileTable(Database& database);

  std::optional<std::int64_t> AuditLineOf(std::string_view sha256);
  // Does nothing for a file that is there.
  void Add(std::string_view sha256, std::int64_t auditLine);

 private:
  Statement find_;
  Statement insert_;
};

}  // namespace standalone
