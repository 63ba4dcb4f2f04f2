#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/values/Sha256.h"

namespace standalone {

// Fills in up to so many bytes and returns how many, 0 at the end. Throws InvalidInput when they cannot be read.
using ReadBytes = std::function<std::size_t(char* into, std::size_t most)>;

// The bytes of a CSV file, read once. Has waited for the first of them when it is made, so that a pipe that is slow to
// begin keeps nobody waiting who needs the company.
class CsvSource {
 public:
  // A file, a pipe or a device. InvalidInput when it cannot be read.
  CsvSource(const std::filesystem::path& file);
  // What hands out bytes, and what people call it.
  CsvSource(std::string name, ReadBytes read);
  CsvSource(const CsvSource&) = delete;
  CsvSource& operator=(const CsvSource&) = delete;
  ~CsvSource() = default;

  const std::string& Name() const noexcept { return name_; }
  // 0 when nobody knows before the end.
  std::uint64_t BytesTotal() const noexcept { return bytesTotal_; }

  // The bytes that follow, valid until the next ones are read; empty at the end.
  std::string_view Next();
  // Of all bytes, to be asked once and at the end.
  std::string Sha256Digits() { return sha256_.Finish(); }

 private:
  void Fill();

  std::string name_;
  ReadBytes read_;
  std::uint64_t bytesTotal_ = 0;
  std::vector<char> buffer_;
  std::size_t filled_ = 0;
  bool isFirst_ = true;
  Sha256 sha256_;
};

}  // namespace standalone
