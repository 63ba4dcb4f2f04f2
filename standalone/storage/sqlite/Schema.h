#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "standalone/storage/sqlite/SqliteDatabase.h"

namespace standalone {

// Stands in the file's header, so that other SQLite files are told apart.
inline constexpr std::int32_t kApplicationId = 0x4D454341;

// The SQL that brings a file from one schema version to the next; the first step makes version 1 of an empty file.
//
// A step makes a table anew by making another one, copying its rows, dropping the old one and giving the new one its
// name; then come the indexes and triggers. References are not looked at meanwhile, and a table that has its name again
// goes on with the numbers that it gave to rows.
using SchemaSpan = std::span<const char* const>;

// The steps of this program.
SchemaSpan SchemaSteps() noexcept;
// The DigestOf() what they make, so that it need not be made to be compared with; empty where nobody has written it
// down.
std::string_view SchemaDigest() noexcept;

// To be called before the transaction in which steps are taken.
void PrepareForSteps(SqliteDatabase& database);
// Takes the steps after the first `taken`, which the file has behind it, and sets its version.
void TakeSteps(SqliteDatabase& database, SchemaSpan steps, std::size_t taken);

// A table, index, trigger or view as the engine knows it.
struct SchemaObject {
  std::string type;
  std::string name;
  std::string sql;
  auto operator<=>(const SchemaObject&) const = default;
};
using SchemaObjects = std::set<SchemaObject>;

// Without what the engine makes for itself.
SchemaObjects ObjectsOf(SqliteDatabase& database);
// What the steps make of an empty file. Takes longer than all else of opening a small company.
SchemaObjects ObjectsMadeBy(SchemaSpan steps);
// A SHA-256 in hexadecimal digits; others for other objects.
std::string DigestOf(const SchemaObjects& objects);

enum class Search {
  kAsFarAsItIsFast,  // leaves out of a large file what would be read through at each opening
  kEverything,
};

// What is wrong with a file, in words; empty when nothing is: an object that the steps make is missing or changed, the
// engine finds it damaged, a row refers to nothing. Others may have added objects of their own. Sees what a transaction
// has not committed yet.
std::string FaultOf(SqliteDatabase& database, SchemaSpan steps, Search search);

// The posted transaction that does not sum to zero, in words; empty when all do, as far as the file is searched. Reads
// files of every version.
std::string ImbalanceOf(SqliteDatabase& database, Search search);

// The file's version; throws CompanyFileError unless it is 1 to `newest`.
std::size_t RequireKnownVersion(SqliteDatabase& database, std::size_t newest);

[[noreturn]] void ThrowDamaged(const std::filesystem::path& file, const std::string& reason);
[[noreturn]] void ThrowNewer(const std::filesystem::path& file, std::int64_t version, std::size_t newest);

}  // namespace standalone
