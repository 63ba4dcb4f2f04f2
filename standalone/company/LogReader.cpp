#include "standalone/company/LogReader.h"

#include <spdlog/sinks/rotating_file_sink.h>

#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <utility>

#include "standalone/values/Columns.h"

namespace standalone {

namespace {

constexpr std::size_t kColumns = 9;

std::optional<std::int32_t> Number(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string ReadFrom(const std::filesystem::path& file, std::uint64_t offset) {
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(offset));
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string FirstLine(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string line;
  std::getline(stream, line);
  return line;
}

void AppendLines(std::vector<LogLine>& lines, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (std::optional<LogLine> line = ParseLogLine(text.substr(0, end))) lines.push_back(*std::move(line));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

// The log's files that exist, the current one first, then the older ones.
std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& file) {
  std::vector<std::filesystem::path> files;
  const auto nameOf = [&file](std::size_t index) {
    return std::filesystem::path(spdlog::sinks::rotating_file_sink_st::calc_filename(file.native(), index));
  };
  std::error_code ignored;
  for (std::size_t index = 0; index == 0 || std::filesystem::exists(nameOf(index), ignored); ++index) {
    files.push_back(nameOf(index));
  }
  return files;
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
  std::vector<LogLine> lines;
  for (const std::filesystem::path& file : FilesOf(file_)) {
    if (lines.size() >= count) break;
    std::vector<LogLine> older;
    AppendLines(older, ReadFrom(file, 0));
    older.insert(older.end(), std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
    lines = std::move(older);
  }
  const std::size_t surplus = lines.size() - std::min(lines.size(), count);
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(surplus));
  return lines;
}

LogPosition LogReader::End() const {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file_, error);
  if (error || size == 0) return {};
  return {size, FirstLine(file_)};
}

std::vector<LogLine> LogReader::LinesSince(const LogPosition& position) const {
  const std::vector<std::filesystem::path> files = FilesOf(file_);
  // Without a first line there was no log at that position, and all of it is new.
  std::size_t newer = 0;
  while (newer < files.size() && (position.firstLine.empty() || FirstLine(files[newer]) != position.firstLine)) ++newer;

  std::vector<LogLine> lines;
  if (newer < files.size()) AppendLines(lines, ReadFrom(files[newer], position.offset));
  while (newer-- > 0) AppendLines(lines, ReadFrom(files[newer], 0));
  return lines;
}

}  // namespace standalone
