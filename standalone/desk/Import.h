#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <variant>

namespace desk {

class Company;

// What a CSV file can hold; its columns stand with the rooms of the imports.
enum class Importable { kAccounts, kNames, kTransactions };

// Called now and then with the bytes read so far and the size of the file, 0 while nobody knows it.
using Progress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

// What hands out the bytes of a CSV file, such as standard input.
struct CsvStream {
  std::string name;  // as people call it
  // Fills in up to so many bytes and returns how many, 0 at the end. standalone::InvalidInput when they cannot be read.
  std::function<std::size_t(char* into, std::size_t most)> read;
};

// A file, a pipe or a device by its path, or a stream. It is opened once the user is known to have the right.
using CsvToImport = std::variant<std::filesystem::path, CsvStream>;

struct HowToImport {
  // Transactions whose partner's requests are in the books are passed over; they are refused otherwise.
  bool skipKnown = false;
  bool again = false;   // also a file that was imported before
  bool dryRun = false;  // nothing is kept of it
  Progress progress;
};

// What was added.
struct Imported {
  std::int64_t rows = 0;  // data rows read
  std::int64_t accounts = 0;
  std::int64_t names = 0;
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
  std::int64_t intercompanyLines = 0;
  std::int64_t passedOver = 0;  // transactions that were in the books
};

// For administrators. Rows that are not acceptable, told by standalone::BadRows, leave the company as it was, and so
// does a file that was imported before, whatever it was called then: Refused says when and by whom.
Imported Import(Company& company, Importable what, const CsvToImport& csv, const HowToImport& how = {});

}  // namespace desk
