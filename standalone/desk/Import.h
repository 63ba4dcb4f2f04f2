#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace desk {

class Company;

// What a CSV file can hold; its columns stand with the rooms of the imports.
enum class Importable { kAccounts, kNames, kTransactions };

// Called now and then with the bytes read so far and the size of the file.
using Progress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

// What was added.
struct Imported {
  std::int64_t rows = 0;  // data rows read
  std::int64_t accounts = 0;
  std::int64_t names = 0;
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
  std::int64_t intercompanyLines = 0;
};

// For administrators. A bad row, named with file, line and reason by standalone::InvalidInput, leaves the company as it
// was.
Imported Import(Company& company, Importable what, const std::filesystem::path& csv, const Progress& progress = {});

}  // namespace desk
