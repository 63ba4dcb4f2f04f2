#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

// One line of the operations log, as it was written.
struct LogLine {
  std::string time;  // UTC: 2026-01-31T09:30:00.123Z
  std::string user;
  std::int32_t level = 0;
  std::int32_t eventType = 0;
  std::string sourceFile;
  std::int32_t sourceLine = 0;
  std::string shortName;
  std::string signature;
  std::string message;
};

// Empty when the text is no line of the operations log.
std::optional<LogLine> ParseLogLine(std::string_view text);

// What is looked at of a log and its older files at most, from the end.
inline constexpr std::uint64_t kMostLogBytes = 64U << 20U;

// Reads the operations log of a company file, rotated files included. Lines of the running unit of work appear when it
// has ended. Texts that are no log lines are passed over. A log that does not exist has no lines.
class LogReader {
 public:
  // Of the log file, see CompanyFile::LogPath.
  explicit LogReader(std::filesystem::path file);

  // The last `count` lines within kMostLogBytes, oldest first. Throws std::runtime_error when a file of them cannot be
  // read, or is none.
  std::vector<LogLine> LastLines(std::size_t count) const;

 private:
  std::filesystem::path file_;
};

}  // namespace standalone
