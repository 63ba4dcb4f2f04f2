#include "standalone/storage/sqlite/Schema.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "standalone/values/Errors.h"
#include "standalone/values/Sha256.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// Larger files are not read through at each opening; the engine still notices damage where it meets it. Comparing the
// indexes with their tables takes four times as long as the rest.
constexpr std::int64_t kChecksIndexesUpTo = 2 << 20;
constexpr std::int64_t kChecksWholeFileUpTo = 8 << 20;

std::int64_t SizeOf(SqliteDatabase& database) {
  return database.QueryNumber("PRAGMA page_count") * database.QueryNumber("PRAGMA page_size");
}

bool IsSearched(SqliteDatabase& database, Search search) {
  return search == Search::kEverything || SizeOf(database) <= kChecksWholeFileUpTo;
}

bool AreIndexesSearched(SqliteDatabase& database, Search search) {
  return search == Search::kEverything || SizeOf(database) <= kChecksIndexesUpTo;
}

bool AreOfThisProgram(SchemaSpan steps) {
  return steps.data() == SchemaSteps().data() && steps.size() == SchemaSteps().size();
}

// The file's rules live in its triggers and checks.
std::string LackIn(SqliteDatabase& database, SchemaSpan steps) {
  const SchemaObjects found = ObjectsOf(database);
  if (AreOfThisProgram(steps) && DigestOf(found) == SchemaDigest()) return {};
  const SchemaObjects made = ObjectsMadeBy(steps);
  std::vector<SchemaObject> lacking;
  std::ranges::set_difference(made, found, std::back_inserter(lacking));
  if (lacking.empty()) return {};
  // A table goes with its indexes and triggers.
  auto named = std::ranges::find(lacking, "table", &SchemaObject::type);
  if (named == lacking.end()) named = lacking.begin();
  return "its " + named->type + ' ' + named->name + " is missing or was changed";
}

}  // namespace

// References are not followed while tables are made anew: dropping the old one would delete what refers to its rows,
// and names in other tables would follow the old one instead of the new.
void PrepareForSteps(SqliteDatabase& database) {
  database.Execute("PRAGMA foreign_keys = OFF; PRAGMA legacy_alter_table = ON");
}

void TakeSteps(SqliteDatabase& database, SchemaSpan steps, std::size_t taken) {
  for (const char* step : steps.subspan(taken)) database.Execute(step);
  database.Execute(("PRAGMA user_version = " + std::to_string(steps.size())).c_str());
}

SchemaObjects ObjectsOf(SqliteDatabase& database) {
  SchemaObjects objects;
  database.ForEachRow("SELECT type, name, sql FROM sqlite_schema WHERE substr(name, 1, 7) <> 'sqlite_'",
                      [&](const Rows& row) {
                        objects.insert({std::string(row.Text(0)), std::string(row.Text(1)), std::string(row.Text(2))});
                      });
  return objects;
}

SchemaObjects ObjectsMadeBy(SchemaSpan steps) {
  SqliteDatabase empty = SqliteDatabase::InMemory();
  PrepareForSteps(empty);
  TakeSteps(empty, steps, 0);
  return ObjectsOf(empty);
}

std::string DigestOf(const SchemaObjects& objects) {
  Sha256 digest;
  for (const SchemaObject& object : objects) {
    for (const std::string* text : {&object.type, &object.name, &object.sql}) {
      digest.Add(*text);
      digest.Add(std::string_view("\0", 1));
    }
  }
  return digest.Finish();
}

std::string FaultOf(SqliteDatabase& database, SchemaSpan steps, Search search) {
  const std::string lack = LackIn(database, steps);
  if (!lack.empty() || !IsSearched(database, search)) return lack;
  const bool withIndexes = AreIndexesSearched(database, search);
  const std::string finding = database.QueryText(withIndexes ? "PRAGMA integrity_check(1)" : "PRAGMA quick_check(1)");
  if (finding != "ok") return finding;
  const std::string table = database.QueryText("SELECT \"table\" FROM pragma_foreign_key_check LIMIT 1");
  return table.empty() ? table : "a row of " + table + " refers to one that is missing";
}

std::string ImbalanceOf(SqliteDatabase& database, Search search) {
  if (!IsSearched(database, search)) return {};
  const std::string transaction = database.QueryText(
      "SELECT txn_id FROM txn_line GROUP BY txn_id HAVING sum(amount) <> 0 AND (SELECT posted FROM txn WHERE id = "
      "txn_id) = 1 LIMIT 1");
  return transaction.empty() ? transaction : "the lines of transaction " + transaction + " do not sum to zero";
}

std::size_t RequireKnownVersion(SqliteDatabase& database, std::size_t newest) {
  const std::int64_t version = database.QueryNumber("PRAGMA user_version");
  if (version < 1) ThrowDamaged(database.Name(), "its schema version is missing");
  if (version > static_cast<std::int64_t>(newest)) ThrowNewer(database.Name(), version, newest);
  return static_cast<std::size_t>(version);
}

void ThrowDamaged(const std::filesystem::path& file, const std::string& reason) {
  throw DamagedFile("The company file " + PathText(file) + " is damaged (" + reason + "). Restore it from a backup.",
                    reason);
}

void ThrowNewer(const std::filesystem::path& file, std::int64_t version, std::size_t newest) {
  throw CompanyFileError("The company file " + PathText(file) + " has schema version " + std::to_string(version) +
                         ", this program knows up to " + std::to_string(newest) +
                         ". Open it with the newer program that wrote it.");
}

}  // namespace standalone
