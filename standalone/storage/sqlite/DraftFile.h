#pragma once

#include <filesystem>

#include "platform/DiskFiles.h"

namespace standalone {

// A file of its owner's that is being made, under a name of its own beside its final one until it is complete; removed,
// with what a database puts beside it, when it does not get there.
class DraftFile {
 public:
  // Throws std::system_error when it cannot be made.
  explicit DraftFile(const std::filesystem::path& finalName);
  DraftFile(const DraftFile&) = delete;
  DraftFile& operator=(const DraftFile&) = delete;
  ~DraftFile();

  const std::filesystem::path& Path() const noexcept { return path_; }

  // False when a file of that name is there. Throws std::system_error.
  bool Publish(const std::filesystem::path& name) { return platform::RenameUnlessTaken(path_, name); }

 private:
  std::filesystem::path path_;
};

}  // namespace standalone
