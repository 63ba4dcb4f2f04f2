#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

#include "standalone/storage/sqlite/DraftFile.h"

namespace standalone {

// A file for other programs that is there as a whole or not at all: written beside its place, for its owner, and put
// there once it is complete and on the disk. Where one is replaced it keeps the rights of that. Throws
// std::runtime_error that names the file.
class WholeFile {
 public:
  // InvalidInput when the name is none, or one of the company's or of what lies beside it.
  WholeFile(const std::filesystem::path& name, const std::filesystem::path& company);

  // Whether a file of that name is there; InvalidInput when it is anything else.
  bool IsTaken() const;
  void Write(std::string_view bytes);
  std::uintmax_t Bytes() const noexcept { return bytes_; }
  // False when a file of that name is there and not to be replaced.
  bool Publish(bool replaces);

 private:
  [[noreturn]] void ThrowNotWritten(std::string_view reason) const;
  void Begin();

  std::filesystem::path name_;
  std::optional<DraftFile> draft_;
  std::ofstream stream_;
  std::uintmax_t bytes_ = 0;
};

}  // namespace standalone
