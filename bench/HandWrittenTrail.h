#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

struct sqlite3_stmt;

// What a programmer would write who has to leave the same lines in the audit trail: their JSON and their SHA-256.
namespace bench {

// The values that a line tells of, as the text of a JSON array.
class ChangesText {
 public:
  void Add(std::string_view field, std::string_view after);
  void Change(std::string_view field, std::string_view before, std::string_view after);
  void Remove(std::string_view field, std::string_view before);
  // Nothing is added afterwards.
  std::string_view End();

 private:
  void Begin(std::string_view field);
  void Append(std::string_view key, std::string_view value);

  std::string text_{"["};
};

// 64 hexadecimal digits: of the audit line that the statement is at, all of whose columns it yields, and of a file.
std::string DigestOfLine(sqlite3_stmt* line);
std::string DigestOfFile(const std::filesystem::path& file);

std::string PlainAmount(std::int64_t minorUnits);
std::string IsoDate(std::uint32_t date);

}  // namespace bench
