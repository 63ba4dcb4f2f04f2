#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "standalone/Database.h"

namespace standalone {

// Stands in the file's header, so that other SQLite files are told apart.
inline constexpr std::int32_t kApplicationId = 0x4D454341;

// The SQL that brings a file from one schema version to the next; the first step makes version 1 of an empty file.
std::span<const char* const> SchemaSteps() noexcept;

// Refuses a file that is not a company file, was written by a newer program (one with more steps) or is cut off; looks
// at the file's bytes only, so that it stays untouched. Throws CompanyFileError.
void RequireCompanyFileHeader(const std::filesystem::path& file, std::size_t newestVersion);

// Brings the schema up to date, each step whole or not at all, even when two programs try at once.
void Migrate(Database& database, std::span<const char* const> steps);

// Throws CompanyFileError when a part of the schema is missing or changed, the engine finds the file damaged, a row
// refers to nothing, or a posted transaction does not sum to zero.
void RequireSound(Database& database);

}  // namespace standalone
