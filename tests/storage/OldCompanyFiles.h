#pragma once

#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace standalone {

// A copy, in a folder of its own, of a company file that an earlier version of the program wrote, with its write-ahead
// log if it has one.
class OldCompanyFile {
 public:
  OldCompanyFile(const char* version, const char* name) : path_(folder_ / name) {
    for (const char* suffix : {"", "-wal"}) {
      const std::filesystem::path original = Place(version) / (std::string(name) + suffix);
      if (std::filesystem::exists(original)) WriteFile(path_.string() + suffix, ReadFile(original));
    }
  }

  const std::filesystem::path& Path() const noexcept { return path_; }

  static std::filesystem::path Place(const char* version) {
    return std::filesystem::path(MULTIENTITY_OLD_COMPANY_FILES) / version;
  }

 private:
  TemporaryFolder folder_;
  std::filesystem::path path_;
};

}  // namespace standalone
