#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

#include "platform/SharedFile.h"

namespace standalone {

// The log that was rotated so many times since: alder.company.1.log for alder.company.log.
std::filesystem::path OlderLog(const std::filesystem::path& log, std::size_t number);

// A file of lines that grows behind its end and is rotated when it is full: it becomes the first of the older ones, the
// last of them goes. Several programs may write to one; one of those that find it full rotates it, the others go on in
// the new one.
class LogFile {
 public:
  // Both throw std::exception when there is no writing it.
  LogFile(std::filesystem::path path, std::size_t mostBytes, std::size_t olderFiles);
  // Whole lines.
  void Append(std::string_view lines);

 private:
  bool IsFullFor(std::string_view lines) const;
  void Rotate();
  // Frees the name of the log.
  void MakeOlder() const;

  std::filesystem::path path_;
  std::uint64_t mostBytes_;
  std::size_t olderFiles_;
  platform::SharedFile file_;
};

}  // namespace standalone
