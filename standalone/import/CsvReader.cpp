#include "standalone/import/CsvReader.h"

#include <algorithm>

#include "standalone/import/Faults.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kFieldBytes = 1U << 16U;
constexpr const char* kTooLong = "a field is longer than 65536 bytes";
constexpr std::size_t kMostFields = 100;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int kEnd = std::char_traits<char>::eof();

constexpr bool MayMeanSomething(char character) {
  return character == ',' || character == '\n' || character == '\r' || character == '"';
}

bool Contains(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string Joined(std::span<const std::string_view> names) {
  std::string joined;
  for (const std::string_view name : names) joined.append(joined.empty() ? "" : ", ").append(name);
  return joined;
}

}  // namespace

CsvReader::CsvReader(CsvSource& source, std::span<const std::string_view> required,
                     std::span<const std::string_view> optional)
    : source_(source) {
  ReadHeader(required, optional);
}

bool CsvReader::NextRow() {
  do {
    rowLine_ = line_;
    if (!ReadRecord()) return false;
  } while (fieldCount_ == 1 && fields_[0].empty());
  return true;
}

void CsvReader::RequireFields() const {
  if (fieldCount_ != header_.size()) {
    throw InvalidInput("it has " + Counted(static_cast<std::int64_t>(fieldCount_), "field") + ", but the header has " +
                       std::to_string(header_.size()) + "; put a field that holds a comma into double quotes");
  }
  for (std::size_t field = 0; field < fieldCount_; ++field) {
    if (IsUtf8(fields_[field])) continue;
    throw InvalidInput("the field " + header_[field] + " is not UTF-8; save the file in that encoding");
  }
}

CsvReader::Column::Column(const CsvReader& rows, std::string_view name)
    : field_(
          static_cast<std::size_t>(std::find(rows.header_.begin(), rows.header_.end(), name) - rows.header_.begin())) {}

std::string_view CsvReader::operator[](Column column) const {
  if (column.field_ == header_.size()) return {};
  return Trimmed(fields_[column.field_]);
}

void CsvReader::RefuseAt(std::uint64_t line, const std::string& reason) const {
  Faults faults;
  faults.Add(line, reason);
  throw faults.In(source_.Name());
}

void CsvReader::ReadHeader(std::span<const std::string_view> required, std::span<const std::string_view> optional) {
  const std::string columns =
      "the columns are " + Joined(required) + (optional.empty() ? "" : ", and, if wanted, " + Joined(optional));
  if (!ReadRecord() || (fieldCount_ == 1 && fields_[0].empty())) RefuseAt(1, "there is no header row; " + columns);
  for (std::size_t field = 0; field < fieldCount_; ++field) header_.emplace_back(Trimmed(fields_[field]));
  for (auto column = header_.begin(); column != header_.end(); ++column) {
    if (!Contains(required, *column) && !Contains(optional, *column)) {
      RefuseAt(1, "the column " + Quoted(*column) + " is not known; " + columns);
    }
    if (std::find(header_.begin(), column, *column) != column) RefuseAt(1, "the column " + *column + " comes twice");
  }
  for (const std::string_view column : required) {
    if (std::find(header_.begin(), header_.end(), column) == header_.end()) {
      RefuseAt(1, "the column " + std::string(column) + " is missing from the header row");
    }
  }
}

// Reads the fields of one record; false at the end of the file.
bool CsvReader::ReadRecord() {
  fieldCount_ = 0;
  if (Peek() == kEnd) return false;
  while (ReadField()) {
  }
  return true;
}

// Reads one field and the comma or line end after it; false when the record ends with it.
bool CsvReader::ReadField() {
  std::string& field = NewField();
  if (Peek() == '"') ReadQuoted(field);
  while (true) {
    AddPlain(field);
    const int character = Get();
    if (character == ',') return true;
    if (character == '\n' || character == kEnd) return false;
    if (character == '\r' && (Peek() == '\n' || Peek() == kEnd)) continue;
    if (character == '"')
      RefuseAt(line_, "a double quote stands inside of a field; put the field into quotes and double it");
    Add(field, character);
  }
}

void CsvReader::ReadQuoted(std::string& field) {
  const std::uint64_t begin = line_;
  Get();
  while (true) {
    const int character = Get();
    if (character == kEnd) RefuseAt(begin, "a field begins with a double quote that is never closed");
    if (character != '"') {
      Add(field, character);
    } else if (Peek() == '"') {
      Add(field, Get());
    } else {
      break;
    }
  }
  const int next = Peek();
  if (next != ',' && next != '\n' && next != '\r' && next != kEnd) {
    RefuseAt(line_, "text follows the closing quote of a field; double a quote that belongs to the text");
  }
}

void CsvReader::Add(std::string& field, int character) const {
  if (field.size() == kFieldBytes) RefuseAt(line_, kTooLong);
  field += static_cast<char>(character);
}

// What stands in the block up to the next character that may mean something.
void CsvReader::AddPlain(std::string& field) {
  const std::string_view rest = block_.substr(at_);
  const auto* const end = std::find_if(rest.begin(), rest.end(), MayMeanSomething);
  const auto length = static_cast<std::size_t>(end - rest.begin());
  if (length > kFieldBytes - field.size()) RefuseAt(line_, kTooLong);
  field.append(rest.begin(), end);
  at_ += length;
  bytesRead_ += length;
}

int CsvReader::Get() {
  const int character = Peek();
  if (character == kEnd) return kEnd;
  ++at_;
  ++bytesRead_;
  if (character == '\n') ++line_;
  return character;
}

int CsvReader::Peek() {
  if (at_ == block_.size() && !ReadBlock()) return kEnd;
  return static_cast<unsigned char>(block_[at_]);
}

bool CsvReader::ReadBlock() {
  block_ = source_.Next();
  at_ = 0;
  return !block_.empty();
}

// Fields are kept from row to row for their memory.
std::string& CsvReader::NewField() {
  if (fieldCount_ == kMostFields) RefuseAt(line_, "it has more than 100 fields");
  if (fieldCount_ == fields_.size()) fields_.emplace_back();
  std::string& field = fields_[fieldCount_++];
  field.clear();
  if (fieldCount_ == 1 && bytesRead_ == 0) {
    for (const char mark : kByteOrderMark) {
      if (Peek() != static_cast<unsigned char>(mark)) break;
      Get();
    }
  }
  return field;
}

}  // namespace standalone
