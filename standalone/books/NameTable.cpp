#include "standalone/books/NameTable.h"

#include <array>
#include <utility>

#include "standalone/values/Errors.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::array<const char*, 4> kKindTexts{"customer", "vendor", "employee", "other"};

Name ReadName(const Rows& rows) {
  Name name;
  name.id = rows.Int32(0);
  name.parentId = rows.Int32(1);
  name.name = rows.Text(2);
  name.fullName = rows.Text(3);
  name.kind = static_cast<NameKind>(rows.Int16(4));
  return name;
}

}  // namespace

std::string NameKindText(NameKind kind) {
  return kKindTexts.at(static_cast<std::size_t>(kind));
}

NameKind ParseNameKind(std::string_view text) {
  for (std::size_t kind = 0; kind < kKindTexts.size(); ++kind) {
    if (EqualIgnoringCase(text, kKindTexts[kind])) return static_cast<NameKind>(kind);
  }
  throw InvalidInput("The kind of name " + Quoted(text) +
                     " is not known; the kinds are customer, vendor, employee and other.");
}

NameTable::NameTable(Database& database)
    : database_(database),
      all_(database, "SELECT id, parent_id, name, full_name, kind FROM name ORDER BY full_name"),
      byId_(database, "SELECT id, parent_id, name, full_name, kind FROM name WHERE id = ?1"),
      byFullName_(database, "SELECT id, parent_id, name, full_name, kind FROM name WHERE full_name = ?1"),
      beyondAscii_(database,
                   "SELECT full_name FROM name WHERE full_name GLOB '*[^ -~]*' AND full_name <> ?1 ORDER BY id"),
      lengthBelow_(database,
                   "WITH RECURSIVE below (id) AS (VALUES (?1) "
                   "UNION ALL SELECT name.id FROM name JOIN below ON parent_id = below.id) "
                   "SELECT max(length(CAST(full_name AS BLOB))) FROM name WHERE id IN below"),
      rename_(database, Writes::kLists,
              "WITH RECURSIVE below (id) AS (VALUES (?1) "
              "UNION ALL SELECT name.id FROM name JOIN below ON parent_id = below.id) "
              "UPDATE name SET name = iif(id = ?1, ?2, name), "
              "full_name = ?3 || substr(full_name, length(?4) + 1) WHERE id IN below"),
      use_(database,
           "SELECT (SELECT count(*) FROM txn WHERE name_id = ?1), (SELECT count(*) FROM name WHERE parent_id = ?1)"),
      insert_(database, Writes::kLists,
              "INSERT INTO name (parent_id, name, full_name, kind) VALUES (nullif(?1, 0), ?2, ?3, ?4)"),
      delete_(database, Writes::kLists, "DELETE FROM name WHERE id = ?1"),
      last_(database) {}

std::vector<Name> NameTable::List() {
  std::vector<Name> names;
  Rows rows = all_.Query();
  while (rows.Step()) names.push_back(ReadName(rows));
  return names;
}

// A booking names it, has it looked up and tells of it.
std::optional<Name> NameTable::Find(std::int32_t id) {
  if (const Name* const last = last_.Held(); last != nullptr && last->id == id) return *last;
  return ReadOne(byId_.Query(id));
}

std::optional<Name> NameTable::FindByFullName(std::string_view fullName) {
  return ReadOne(byFullName_.Query(fullName));
}

// A name of digits only may look like the record number of another one.
std::optional<Name> NameTable::FindTyped(std::string_view text) {
  if (const auto id = ParseMarkedRecordNumber(text)) return Find(*id);
  std::optional<Name> called = FindByFullName(NormalizedFullName("The name", text));
  const std::optional<std::int32_t> id = ParseRecordNumber(text);
  if (!id) return called;
  std::optional<Name> numbered = Find(*id);
  if (!called || !numbered || called->id == numbered->id) return numbered ? numbered : called;
  throw InvalidInput(Quoted(text) + " is the record number of the name " + Quoted(numbered->fullName) + " (#" +
                     std::to_string(numbered->id) + ") and the full name of another one (#" +
                     std::to_string(called->id) + "); write # before the record number, as here.");
}

Name NameTable::Require(std::string_view idOrFullName) {
  if (std::optional<Name> name = FindTyped(idOrFullName)) return *std::move(name);
  std::vector<std::string> known;
  for (const Name& other : List()) known.push_back(other.fullName);
  throw InvalidInput("There is no name " + Quoted(idOrFullName) +
                     "; give its number or its full name, as 'names' lists them." + DidYouMean(idOrFullName, known));
}

Name NameTable::Create(std::string_view fullName, NameKind kind) {
  Name added;
  added.fullName = NormalizedFullName("The name", fullName);
  added.name = LastPart(added.fullName);
  added.kind = kind;
  if (const std::string_view parentName = ParentPart(added.fullName); !parentName.empty()) {
    const std::optional<Name> parent = FindByFullName(parentName);
    if (!parent) {
      throw InvalidInput("The name " + Quoted(added.fullName) + " stands under " + Quoted(parentName) +
                         ", which does not exist; add that name first.");
    }
    added.parentId = parent->id;
    added.fullName = FullNameUnder(parent->fullName, added.name);
  }
  RequireFreeName(added.fullName, added.id);
  insert_.Run(added.parentId, added.name, added.fullName, static_cast<std::int16_t>(kind));
  added.id = static_cast<std::int32_t>(database_.LastInsertedId());
  return added;
}

AlikeNames NameTable::ForAlike(std::string_view butFor) {
  AlikeNames names([this](std::string_view fullName) -> std::optional<std::string> {
    if (std::optional<Name> found = FindByFullName(fullName)) return std::move(found->fullName);
    return std::nullopt;
  });
  Rows rows = beyondAscii_.Query(butFor);
  while (rows.Step()) names.Add(rows.Text(0));
  return names;
}

std::optional<Name> NameTable::ReadOne(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  return last_.Hold(ReadName(rows));
}

void NameTable::RequireFreeName(std::string_view fullName, std::int32_t id) {
  const std::optional<Name> taken = FindByFullName(fullName);
  if (!taken || taken->id == id) return;
  throw ConstraintViolation("There is already a name " + Quoted(taken->fullName) + "; choose another one.");
}

std::int64_t NameTable::LongestBelow(std::int32_t id) {
  Rows rows = lengthBelow_.Query(id);
  rows.Step();
  return rows.Int64(0);
}

std::int64_t NameTable::Rename(std::int32_t id, std::string_view ownName) {
  const std::optional<Name> name = Find(id);
  if (!name) throw InvalidInput("There is no name " + std::to_string(id) + ".");
  const std::string fullName = RenamedFullName("The name", name->fullName, ownName);
  RequireFreeName(fullName, id);
  RequireRoomBelow(LongestBelow(id), name->fullName, fullName);
  return rename_.Run(id, LastPart(fullName), fullName, name->fullName) - 1;
}

NameUse NameTable::UseOf(std::int32_t id) {
  Rows rows = use_.Query(id);
  rows.Step();
  return {.transactions = rows.Int64(0), .subNames = rows.Int64(1)};
}

void NameTable::Delete(std::int32_t id) {
  if (delete_.Run(id) == 0) throw InvalidInput("There is no name " + std::to_string(id) + ".");
}

}  // namespace standalone
