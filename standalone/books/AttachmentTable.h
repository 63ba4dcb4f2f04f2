#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"

namespace standalone {

// Where the papers of transactions are: paths and links, which nobody follows. Every operation needs an open unit of
// work; ConstraintViolation for a transaction that there is not.
class AttachmentTable {
 public:
  explicit AttachmentTable(Database& database);

  void Add(std::int32_t txnId, std::string_view reference);
  // However often it has been added.
  void Remove(std::int32_t txnId, std::string_view reference);
  // In the order in which they were added.
  std::vector<std::string> Of(std::int32_t txnId);

 private:
  Statement insert_;
  Statement remove_;
  Statement of_;
};

}  // namespace standalone
