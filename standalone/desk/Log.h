#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace desk {

class Company;

// A line of the operations log, as it was written.
struct LogLine {
  std::string time;  // UTC: 2026-01-31T09:30:00.123Z
  std::string user;
  std::int32_t level = 0;      // Util::Ops::Level
  std::int32_t eventType = 0;  // Util::Ops::EventType
  std::string sourceFile;
  std::int32_t sourceLine = 0;
  std::string shortName;
  std::string signature;
  std::string message;
};

// The last `count` lines, oldest first.
std::vector<LogLine> ListLogLines(Company& company, std::size_t count);

}  // namespace desk
