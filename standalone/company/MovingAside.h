#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <vector>

namespace standalone {

// Whether there is a file of that name, or something that an engine has kept beside one.
bool IsAnythingThere(const std::filesystem::path& file);

// Gives a file that is a company no more another name, together with what lies beside it, in steps of which each one
// changes the disk once. Wherever they end, as when the power goes, the file is whole under its own name or under the
// other one: what lies beside it is there under the other name before the file is, and goes from beside the own name
// only afterwards. Whoever begins anew goes on from there.
class MovingAside {
 public:
  // Chooses the other name, the one of before when the steps have ended halfway.
  explicit MovingAside(const std::filesystem::path& file);

  const std::filesystem::path& Name() const noexcept { return name_; }

  // Takes the next step; false when all are taken. Throws std::system_error.
  bool Step();
  // As long as the file has its own name, removes what was made under the other one.
  void GiveUp() noexcept;

 private:
  void CopyOver(const char* suffix);
  void Rename();

  std::filesystem::path file_;
  std::filesystem::path name_;
  std::vector<std::function<void()>> steps_;
  std::size_t next_ = 0;
  std::vector<std::filesystem::path> made_;
};

}  // namespace standalone
