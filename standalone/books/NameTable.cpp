#include "standalone/books/NameTable.h"

#include <array>
#include <utility>

#include "standalone/values/Errors.h"
#include "standalone/values/ListNames.h"
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

std::optional<Name> ReadOne(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  return ReadName(rows);
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
      insert_(database, Writes::kLists,
              "INSERT INTO name (parent_id, name, full_name, kind) VALUES (nullif(?1, 0), ?2, ?3, ?4)") {}

std::vector<Name> NameTable::List() {
  std::vector<Name> names;
  Rows rows = all_.Query();
  while (rows.Step()) names.push_back(ReadName(rows));
  return names;
}

std::optional<Name> NameTable::Find(std::int32_t id) {
  return ReadOne(byId_.Query(id));
}

std::optional<Name> NameTable::FindByFullName(std::string_view fullName) {
  return ReadOne(byFullName_.Query(fullName));
}

Name NameTable::Require(std::string_view idOrFullName) {
  const std::optional<std::int32_t> id = ParseRecordNumber(idOrFullName);
  std::optional<Name> name = id ? Find(*id) : FindByFullName(NormalizedFullName("The name", idOrFullName));
  if (name) return *std::move(name);
  throw InvalidInput("There is no name " + Quoted(idOrFullName) +
                     "; give its number or its full name, as 'names' lists them.");
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
  }
  if (FindByFullName(added.fullName)) {
    throw ConstraintViolation("There is already a name " + Quoted(added.fullName) + "; choose another one.");
  }
  insert_.Run(added.parentId, added.name, added.fullName, static_cast<std::int16_t>(kind));
  added.id = static_cast<std::int32_t>(database_.LastInsertedId());
  return added;
}

}  // namespace standalone
