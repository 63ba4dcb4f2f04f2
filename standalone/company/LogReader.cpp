#include "standalone/company/LogReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/SharedFile.h"
#include "standalone/company/LogFile.h"
#include "standalone/values/Columns.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kColumns = 9;

std::optional<std::int32_t> Number(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// The lines of a file, the last one first, in as much memory as the longest of them needs. They are looked for in the
// last `most` bytes; a line that begins before them is none.
class LinesFromTheEnd {
 public:
  LinesFromTheEnd(const platform::SharedFile& file, std::uint64_t most)
      : file_(file), begin_(file.Size()), least_(begin_ - std::min(begin_, most)) {}

  std::optional<std::string> Next() {
    std::size_t end = text_.rfind('\n');
    for (; end == std::string::npos && begin_ > least_; end = text_.rfind('\n')) ReadMore();
    if (end != std::string::npos) {
      std::string line = text_.substr(end + 1);
      text_.resize(end);
      return line;
    }
    if (begin_ != 0 || isFirstHandedOut_) return std::nullopt;
    isFirstHandedOut_ = true;
    return std::exchange(text_, {});
  }

 private:
  // At least as much as there is of a long line, so that it is not moved many times.
  void ReadMore() {
    constexpr std::size_t kPiece = 64U << 10U;
    const auto length =
        static_cast<std::size_t>(std::min<std::uint64_t>(std::max(kPiece, text_.size()), begin_ - least_));
    std::string text(length, '\0');
    begin_ -= length;
    text.resize(file_.Read(begin_, text));
    text_.insert(0, text);
  }

  const platform::SharedFile& file_;
  std::uint64_t begin_;  // of what has been read
  std::uint64_t least_;
  std::string text_;  // what has been read and not handed out
  bool isFirstHandedOut_ = false;
};

[[noreturn]] void ThrowUnreadable(const std::filesystem::path& file, const std::system_error& error) {
  std::error_code ignored;
  if (std::filesystem::is_regular_file(file, ignored)) {
    throw std::runtime_error("The operations log " + PathText(file) + " cannot be read: " + error.code().message());
  }
  throw std::runtime_error("The operations log " + PathText(file) +
                           " cannot be read, as it is no file but something else of that name, such as a folder, a "
                           "pipe or a device; move it away.");
}

platform::SharedFile Open(const std::filesystem::path& file) {
  try {
    return platform::SharedFile::OpenToRead(file);
  } catch (const std::system_error& error) {
    ThrowUnreadable(file, error);
  }
}

bool IsAFileThere(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::exists(file, ignored);
}

}  // namespace

std::optional<LogLine> ParseLogLine(std::string_view text) {
  std::array<std::string_view, kColumns> columns;
  for (std::size_t column = 0; column < kColumns; ++column) {
    const std::size_t tab = text.find('\t');
    const bool isLast = column + 1 == kColumns;
    if (isLast != (tab == std::string_view::npos)) return std::nullopt;
    columns[column] = text.substr(0, tab);
    if (!isLast) text.remove_prefix(tab + 1);
  }
  const std::optional<std::int32_t> level = Number(columns[2]);
  const std::optional<std::int32_t> eventType = Number(columns[3]);
  const std::optional<std::int32_t> sourceLine = Number(columns[5]);
  if (!level || !eventType || !sourceLine) return std::nullopt;
  return LogLine{.time = UnescapeColumn(columns[0]),
                 .user = UnescapeColumn(columns[1]),
                 .level = *level,
                 .eventType = *eventType,
                 .sourceFile = UnescapeColumn(columns[4]),
                 .sourceLine = *sourceLine,
                 .shortName = UnescapeColumn(columns[6]),
                 .signature = UnescapeColumn(columns[7]),
                 .message = UnescapeColumn(columns[8])};
}

LogReader::LogReader(std::filesystem::path file) : file_(std::move(file)) {}

std::vector<LogLine> LogReader::LastLines(std::size_t count) const {
  std::vector<LogLine> lines;  // the last one first
  std::uint64_t most = kMostLogBytes;
  std::optional<platform::SharedFile> newer;
  for (std::size_t number = 0; lines.size() < count && most > 0; ++number) {
    const std::filesystem::path name = number == 0 ? file_ : OlderLog(file_, number);
    if (!IsAFileThere(name)) {
      if (number == 0) continue;
      break;
    }
    // It became the older one while it was read.
    if (newer && newer->HasName(name)) continue;
    newer = Open(name);
    LinesFromTheEnd texts(*newer, most);
    for (std::optional<std::string> text; lines.size() < count && (text = texts.Next());) {
      if (std::optional<LogLine> line = ParseLogLine(*text)) lines.push_back(*std::move(line));
    }
    most -= std::min(most, newer->Size());
  }
  std::reverse(lines.begin(), lines.end());
  return lines;
}

}  // namespace standalone
