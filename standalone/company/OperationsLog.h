#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "MultiEntityHost/Ops.h"
#include "platform/Clock.h"

namespace standalone {

class LogFile;

struct LogLimits {
  // What is below is not written, and not even formatted unless somebody observes the log.
  Util::Ops::Level least = Util::Ops::Level::kTrace;
  std::size_t fileBytes = 8U << 20U;
  std::size_t olderFiles = 4;  // at least one
};

// The operations log: a rotating text file beside the company file, one line per log line, its columns separated by
// tabs. The end of a unit of work writes its lines, unless another's has written some within a twentieth of a second.
// Lines then wait for the end of a later unit, for tens of thousands of bytes to come together, for Flush(), which a
// message loop calls when it has nothing to do, or for the log to be closed; an error is written at once, with what
// waits. A log that cannot be written, or whose name something else has, such as a folder, a pipe or a device, is given
// up silently and not waited for; the work that it tells of goes on. One without a path has no file.
class OperationsLog final : public Util::Ops {
 public:
  OperationsLog(const std::filesystem::path& file, std::string_view userName, LogLimits limits = {},
                platform::Clock& clock = platform::SystemClock());
  OperationsLog(const OperationsLog&) = delete;
  OperationsLog& operator=(const OperationsLog&) = delete;
  ~OperationsLog();

  bool Wants(Level level) const noexcept override;
  void Write(const Line& line) noexcept override;

  void EndUnit() noexcept;
  void Flush() noexcept;

  // Also gets each line, at once, whether or not the log can be written.
  using Observer = std::function<void(const Line&)>;
  void SetObserver(Observer observer) { observer_ = std::move(observer); }

 private:
  void Append(const Line& line);
  void AppendColumns(const Line& line);
  // Writes so much of what is held back.
  void WriteFirst(std::size_t length) noexcept;

  platform::Clock& clock_;
  Observer observer_;
  Level least_;
  std::string userColumn_;
  std::unique_ptr<LogFile> file_;
  std::string pending_;
  // When a unit's end last wrote lines.
  std::optional<std::chrono::steady_clock::time_point> lastUnitWritten_;
  // The time text up to its second, which is mostly that of the line before.
  std::int64_t second_ = -1;
  std::string secondText_;
};

}  // namespace standalone
