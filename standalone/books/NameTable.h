#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"

namespace standalone {

enum class NameKind : std::int16_t { kCustomer = 0, kVendor = 1, kEmployee = 2, kOther = 3 };

// "customer", "vendor", "employee", "other".
std::string NameKindText(NameKind kind);
// The same texts in any case; throws InvalidInput.
NameKind ParseNameKind(std::string_view text);

struct Name {
  std::int32_t id = 0;        // record number, 1 or greater
  std::int32_t parentId = 0;  // 0 without a parent
  std::string name;           // its own, without its parents'
  std::string fullName;       // colon-separated, from the top
  NameKind kind = NameKind::kOther;
};

// The names that transactions carry. Full names compare without regard to the case of ASCII letters and are unique.
// Every operation needs an open unit of work.
class NameTable {
 public:
  explicit NameTable(Database& database);

  // By full name.
  std::vector<Name> List();
  std::optional<Name> Find(std::int32_t id);
  std::optional<Name> FindByFullName(std::string_view fullName);
  // A record number or a full name that a person typed; a text of digits is a record number. Throws InvalidInput.
  Name Require(std::string_view idOrFullName);

  // Adds a name; its parent must exist. Throws InvalidInput, or ConstraintViolation when the full name is taken.
  Name Create(std::string_view fullName, NameKind kind);

 private:
  Database& database_;
  Statement all_;
  Statement byId_;
  Statement byFullName_;
  Statement insert_;
};

}  // namespace standalone
