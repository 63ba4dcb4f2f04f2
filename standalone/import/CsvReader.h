#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/values/Errors.h"

namespace standalone {

// A refusal whose message names file and line already.
class RefusedRow : public InvalidInput {
 public:
  using InvalidInput::InvalidInput;
};

// Reads a CSV file row by row, with room for one row: UTF-8 with or without a byte order mark, a header row, fields in
// double quotes where they hold commas, quotes (doubled) or line breaks; empty lines are passed over. Every failure is
// InvalidInput, and RefusedRow when it lies in a row.
class CsvReader {
 public:
  // The header must have each of `required` and nothing but these and `optional`.
  CsvReader(const std::filesystem::path& file, std::span<const std::string_view> required,
            std::span<const std::string_view> optional);

  // Goes to the next row; false at the end.
  bool NextRow();

  // A field of the row, without blanks around it; empty when its optional column is not there.
  std::string_view operator[](std::string_view column) const;

  // Where the row begins.
  std::uint64_t Line() const noexcept { return rowLine_; }
  std::uint64_t BytesRead() const noexcept { return bytesRead_; }
  std::uint64_t BytesTotal() const noexcept { return bytesTotal_; }

  [[noreturn]] void Refuse(std::string_view reason) const { RefuseAt(rowLine_, reason); }
  [[noreturn]] void RefuseAt(std::uint64_t line, std::string_view reason) const;

 private:
  void ReadHeader(std::span<const std::string_view> required, std::span<const std::string_view> optional);
  bool ReadRecord();
  bool ReadField();
  void ReadQuoted(std::string& field);
  void Add(std::string& field, int character) const;
  int Get();
  int Peek();
  std::string& NewField();

  std::filesystem::path file_;
  std::ifstream stream_;
  std::vector<char> buffer_;
  std::vector<std::string> header_;
  std::vector<std::string> fields_;
  std::size_t fieldCount_ = 0;
  std::uint64_t line_ = 1;
  std::uint64_t rowLine_ = 1;
  std::uint64_t bytesRead_ = 0;
  std::uint64_t bytesTotal_ = 0;
};

}  // namespace standalone
