#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/books/AlikeNames.h"
#include "standalone/storage/ReadOnce.h"
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

// What a name is used by.
struct NameUse {
  std::int64_t transactions = 0;
  std::int64_t subNames = 0;
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
  // A record number, which a "#" may mark, or a full name that a person typed. Throws InvalidInput, also for what is
  // the record number of one name and the full name of another.
  Name Require(std::string_view idOrFullName);
  // For finding those, but for the one of that full name, that are called alike.
  AlikeNames ForAlike(std::string_view butFor = {});

  // Adds a name; its parent must exist. Throws InvalidInput, or ConstraintViolation when the full name is taken.
  Name Create(std::string_view fullName, NameKind kind);
  // Gives a name another one of its own, which changes the full names of those below it, too; returns how many these
  // were. Throws InvalidInput, or ConstraintViolation when a full name is taken.
  std::int64_t Rename(std::int32_t id, std::string_view ownName);
  NameUse UseOf(std::int32_t id);
  // Throws ConstraintViolation when it is used.
  void Delete(std::int32_t id);

 private:
  std::optional<Name> ReadOne(Rows rows);
  std::optional<Name> FindTyped(std::string_view text);
  void RequireFreeName(std::string_view fullName, std::int32_t id);
  std::int64_t LongestBelow(std::int32_t id);

  Database& database_;
  Statement all_;
  Statement byId_;
  Statement byFullName_;
  Statement beyondAscii_;
  Statement lengthBelow_;
  Statement rename_;
  Statement use_;
  Statement insert_;
  Statement delete_;
  ReadOnce<Name> last_;  // that was found
};

}  // namespace standalone
