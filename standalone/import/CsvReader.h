#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/import/CsvSource.h"

namespace standalone {

// Reads a CSV file row by row, with room for one row: UTF-8 with or without a byte order mark, a header row, fields in
// double quotes where they hold commas, quotes (doubled) or line breaks; empty lines are passed over. What is no CSV is
// BadRows, and nothing can be read behind it.
class CsvReader {
 public:
  // The header must have each of `required` and nothing but these and `optional`.
  CsvReader(CsvSource& source, std::span<const std::string_view> required, std::span<const std::string_view> optional);

  // Goes to the next row; false at the end.
  bool NextRow();
  // Throws InvalidInput unless the row has a field for each column, in UTF-8; only then it may be asked for fields.
  void RequireFields() const;

  // A column by its name, of the required and optional ones.
  class Column {
   public:
    Column(const CsvReader& rows, std::string_view name);

   private:
    friend class CsvReader;
    std::size_t field_;
  };

  // A field of the row, without blanks around it; empty when its optional column is not there.
  std::string_view operator[](Column column) const;

  // Where the row begins.
  std::uint64_t Line() const noexcept { return rowLine_; }
  std::uint64_t BytesRead() const noexcept { return bytesRead_; }

 private:
  [[noreturn]] void RefuseAt(std::uint64_t line, const std::string& reason) const;
  void ReadHeader(std::span<const std::string_view> required, std::span<const std::string_view> optional);
  bool ReadRecord();
  bool ReadField();
  void ReadQuoted(std::string& field);
  void Add(std::string& field, int character) const;
  void AddPlain(std::string& field);
  int Get();
  int Peek();
  bool ReadBlock();
  std::string& NewField();

  CsvSource& source_;
  std::string_view block_;
  std::size_t at_ = 0;  // within the block
  std::vector<std::string> header_;
  std::vector<std::string> fields_;
  std::size_t fieldCount_ = 0;
  std::uint64_t line_ = 1;
  std::uint64_t rowLine_ = 1;
  std::uint64_t bytesRead_ = 0;
};

}  // namespace standalone
