#include "standalone/company/LogFile.h"

#include <string>
#include <system_error>
#include <utility>

namespace standalone {

namespace {

bool IsTaken(const std::filesystem::path& name) {
  return std::filesystem::exists(std::filesystem::symlink_status(name));
}

// What is no log is not overwritten and does not become the next older one.
void RequireLog(const std::filesystem::path& older) {
  const std::filesystem::file_status status = std::filesystem::symlink_status(older);
  if (std::filesystem::is_regular_file(status) || std::filesystem::is_symlink(status)) return;
  throw std::filesystem::filesystem_error("An older log", older, std::make_error_code(std::errc::invalid_argument));
}

}  // namespace

std::filesystem::path OlderLog(const std::filesystem::path& log, std::size_t number) {
  std::filesystem::path older = log;
  older.replace_extension();
  older += '.' + std::to_string(number);
  older += log.extension();
  return older;
}

LogFile::LogFile(std::filesystem::path path, std::size_t mostBytes, std::size_t olderFiles)
    : path_(std::move(path)),
      mostBytes_(mostBytes),
      olderFiles_(olderFiles),
      file_(platform::SharedFile::OpenToAppend(path_)) {}

void LogFile::Append(std::string_view lines) {
  if (!file_.HasName(path_)) file_ = platform::SharedFile::OpenToAppend(path_);
  if (IsFullFor(lines)) Rotate();
  file_.Append(lines);
}

bool LogFile::IsFullFor(std::string_view lines) const {
  const std::uint64_t size = file_.Size();
  return size != 0 && size + lines.size() > mostBytes_;
}

// Whoever gets the lock while the file still has the log's name rotates it. While another one does, or when it cannot
// be done for a while, as somebody reads an older log on Windows, lines still go where they went.
void LogFile::Rotate() {
  if (!file_.TryLock()) return;
  try {
    if (file_.HasName(path_)) MakeOlder();
    file_ = platform::SharedFile::OpenToAppend(path_);
  } catch (const std::filesystem::filesystem_error&) {
    file_.Unlock();
    if (file_.Size() > 2 * mostBytes_) throw;
  }
}

// Up to the first name that is free, as one is after a program was killed in the middle of this.
void LogFile::MakeOlder() const {
  std::size_t last = 1;
  while (last < olderFiles_ && IsTaken(OlderLog(path_, last))) ++last;
  for (std::size_t number = 1; number <= last; ++number) {
    if (IsTaken(OlderLog(path_, number))) RequireLog(OlderLog(path_, number));
  }
  for (; last > 1; --last) std::filesystem::rename(OlderLog(path_, last - 1), OlderLog(path_, last));
  std::filesystem::rename(path_, OlderLog(path_, last));
}

}  // namespace standalone
