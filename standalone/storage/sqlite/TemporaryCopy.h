#pragma once

#include <filesystem>
#include <string>

namespace standalone {

// A copy of a company file, with what a crash left beside it, in a temporary folder of its own that only its owner may
// enter; removed with this.
class TemporaryCopy {
 public:
  // Throws CompanyFileError when it cannot be made, or when somebody changes the file meanwhile.
  explicit TemporaryCopy(const std::filesystem::path& file);
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;
  ~TemporaryCopy();

  std::filesystem::path File() const { return folder_ / name_; }
  // What to do when there is no room to work on it: not on the disk of the company.
  std::string RoomAdvice() const;

 private:
  void Remove() noexcept;

  std::filesystem::path folder_;
  std::filesystem::path name_;
};

}  // namespace standalone
