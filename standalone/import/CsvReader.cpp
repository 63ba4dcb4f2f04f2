#include "standalone/import/CsvReader.h"

#include <algorithm>

#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kBufferBytes = 1U << 16U;
constexpr std::size_t kFieldBytes = 1U << 16U;
constexpr std::size_t kMostFields = 100;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int kEnd = std::char_traits<char>::eof();

bool Contains(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string Joined(std::span<const std::string_view> names) {
  std::string joined;
  for (const std::string_view name : names) joined.append(joined.empty() ? "" : ", ").append(name);
  return joined;
}

}  // namespace

CsvReader::CsvReader(const std::filesystem::path& file, std::span<const std::string_view> required,
                     std::span<const std::string_view> optional)
    : file_(file), buffer_(kBufferBytes) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    throw InvalidInput("There is no file " + PathText(file) + "; name a CSV file.");
  }
  stream_.rdbuf()->pubsetbuf(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  stream_.open(file, std::ios::binary);
  if (!stream_) throw InvalidInput("The file " + PathText(file) + " cannot be read; check that you may read it.");
  bytesTotal_ = std::filesystem::file_size(file, error);
  ReadHeader(required, optional);
}

bool CsvReader::NextRow() {
  do {
    rowLine_ = line_;
    if (!ReadRecord()) return false;
  } while (fieldCount_ == 1 && fields_[0].empty());
  if (fieldCount_ != header_.size()) {
    Refuse("it has " + std::to_string(fieldCount_) + " fields, but the header has " + std::to_string(header_.size()) +
           "; put a field that holds a comma into double quotes");
  }
  for (std::size_t field = 0; field < fieldCount_; ++field) {
    if (!IsUtf8(fields_[field]))
      Refuse("the field " + header_[field] + " is not UTF-8; save the file in that encoding");
  }
  return true;
}

std::string_view CsvReader::operator[](std::string_view column) const {
  const auto found = std::find(header_.begin(), header_.end(), column);
  if (found == header_.end()) return {};
  return Trimmed(fields_[static_cast<std::size_t>(found - header_.begin())]);
}

void CsvReader::RefuseAt(std::uint64_t line, std::string_view reason) const {
  throw RefusedRow(PathText(file_) + ", line " + std::to_string(line) + ": " + std::string(reason) +
                   (reason.ends_with('.') ? "" : "."));
}

void CsvReader::ReadHeader(std::span<const std::string_view> required, std::span<const std::string_view> optional) {
  if (!ReadRecord() || (fieldCount_ == 1 && fields_[0].empty())) {
    RefuseAt(1,
             "there is no header row; the columns are " + Joined(required) + ", and, if wanted, " + Joined(optional));
  }
  for (std::size_t field = 0; field < fieldCount_; ++field) header_.emplace_back(Trimmed(fields_[field]));
  for (auto column = header_.begin(); column != header_.end(); ++column) {
    if (!Contains(required, *column) && !Contains(optional, *column)) {
      RefuseAt(1, "the column " + Quoted(*column) + " is not known; the columns are " + Joined(required) +
                      (optional.empty() ? "" : ", and, if wanted, " + Joined(optional)));
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
  if (field.size() == kFieldBytes) RefuseAt(line_, "a field is longer than 65536 bytes");
  field += static_cast<char>(character);
}

int CsvReader::Get() {
  const int character = stream_.rdbuf()->sbumpc();
  if (character == kEnd) return kEnd;
  ++bytesRead_;
  if (character == '\n') ++line_;
  return character;
}

int CsvReader::Peek() {
  return stream_.rdbuf()->sgetc();
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
