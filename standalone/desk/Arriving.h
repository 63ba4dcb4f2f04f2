#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// What tells, without opening a company, that there may be letters to carry for it.
namespace desk {

// Where letters for a company come to, as RunExchange tells it.
struct LetterPlaces {
  std::vector<std::filesystem::path> folders;
  std::vector<std::string> addresses;  // with which the names of its letters begin
};
// Whether a file of that name is a letter for whoever has one of these addresses.
bool IsLetterFor(const std::vector<std::string>& addresses, const std::filesystem::path& name);

// How the files of a company's books were last written; another one after they were written once more.
struct BooksWritten {
  struct File {
    std::uintmax_t bytes = 0;
    std::filesystem::file_time_type at;
    bool operator==(const File&) const = default;
  };
  std::vector<File> files;
  bool operator==(const BooksWritten&) const = default;
};
// Never throws for files that are not there.
BooksWritten BooksWrittenOf(const std::filesystem::path& company);
// In which they lie.
std::filesystem::path FolderOfBooks(const std::filesystem::path& company);

}  // namespace desk
