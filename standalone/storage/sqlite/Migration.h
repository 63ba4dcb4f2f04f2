#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "standalone/storage/sqlite/Schema.h"

namespace standalone {

// How much was in a company file.
struct Holdings {
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
  std::int64_t intercompanyRows = 0;
  std::int64_t relations = 0;
};

// What was done to bring a company file to a newer schema version.
struct Migrated {
  std::size_t from = 0;
  std::size_t to = 0;
  std::filesystem::path before;   // the copy of the file as it was; empty when none was asked for
  std::string beforeSha256;       // of that copy, in hexadecimal digits
  Holdings held;                  // before
  std::vector<std::string> left;  // what others had added and does not fit any more, such as "index by_memo"
};

struct MigrationOptions {
  std::filesystem::path name;  // what people call the file
  SchemaSpan steps;
  std::chrono::milliseconds patience{};  // how long to wait for other programs that have the file open
  bool keepsCopy = true;
  // Writes down what was done, in the unit of work that does it.
  std::function<void(const Migrated& done, Database& database)> record = nullptr;
  std::optional<std::string> roomAdvice =
      std::nullopt;  // what to do when there is no room, unless that is on the company's own disk
};

// Brings the schema of a company file up to date, wholly or not at all: nothing when it is. No other program has the
// file open meanwhile, so that none goes on by the rules of the former version. The file as it was is kept beside it as
// NAME.before-VERSION, or under that name with a number behind it when it is taken by another file.
//
// Throws CompanyFileError, which says whether the file is as it was.
std::optional<Migrated> BringForward(const std::filesystem::path& file, const MigrationOptions& options);

}  // namespace standalone
