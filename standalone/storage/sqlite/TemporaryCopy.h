#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace standalone {

// A copy of a company file, with the journals that lie beside it, in a temporary folder of its own that only its owner
// may enter; removed with this. Nothing is written where the file lies, and nobody is kept from working on it.
class TemporaryCopy {
 public:
  // Throws CompanyFileError when it cannot be made, FileInUse when others go on changing the file for so long that it
  // is never all of one moment.
  explicit TemporaryCopy(const std::filesystem::path& file, std::chrono::milliseconds patience = {});
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;
  ~TemporaryCopy();

  std::filesystem::path File() const { return folder_ / name_; }
  // What to do when there is no room to work on it: not on the disk of the company.
  std::string RoomAdvice() const;
  // What to do when it is not what was written any more.
  std::string CheckAdvice() const;

 private:
  void Remove() noexcept;

  std::filesystem::path folder_;
  std::filesystem::path name_;
};

}  // namespace standalone
