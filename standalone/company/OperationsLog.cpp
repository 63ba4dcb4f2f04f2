#include "standalone/company/OperationsLog.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <exception>
#include <limits>

#include "standalone/company/LogFile.h"
#include "standalone/values/Columns.h"

namespace standalone {

namespace {

// Whole lines are handed over in pieces of at most this size, each in one call to the system: two programs on one log
// then append whole lines, not parts of them. Small pieces cost more: the call takes longer than a dozen lines.
constexpr std::size_t kPieceBytes = 32 << 10;

// Of a line's four numbers and what stands between its columns.
constexpr std::size_t kRoomForNumbers = 64;

// Writes columns into room that is long enough for them.
class ColumnWriter {
 public:
  explicit ColumnWriter(char* at) noexcept : at_(at) {}

  void Put(char letter) noexcept { *at_++ = letter; }
  void Put(std::string_view text) noexcept { at_ = std::copy(text.begin(), text.end(), at_); }
  void Put(std::int32_t number) noexcept { at_ = std::to_chars(at_, at_ + kMostDigits, number).ptr; }
  void PutColumn(auto value) noexcept {
    Put(value);
    Put('\t');
  }
  void PutThreeDigits(std::int32_t number) noexcept {
    for (const std::int32_t unit : {100, 10, 1}) Put(static_cast<char>('0' + number / unit % 10));
  }

  const char* End() const noexcept { return at_; }

 private:
  static constexpr std::ptrdiff_t kMostDigits = std::numeric_limits<std::int32_t>::digits10 + 2;

  char* at_;
};

}  // namespace

OperationsLog::OperationsLog(const std::filesystem::path& file, std::string_view userName, LogLimits limits,
                             platform::Clock& clock)
    : clock_(clock), least_(limits.least), userColumn_(EscapeColumn(userName)) {
  if (file.empty()) return;
  try {
    file_ = std::make_unique<LogFile>(file, limits.fileBytes, limits.olderFiles);
  } catch (const std::exception&) {
    file_.reset();
  }
}

OperationsLog::~OperationsLog() {
  Flush();
}

bool OperationsLog::Wants(Level level) const noexcept {
  return observer_ != nullptr || (file_ != nullptr && level >= least_);
}

void OperationsLog::Write(const Line& line) noexcept {
  const std::size_t before = pending_.size();
  try {
    if (observer_) observer_(line);
    if (file_ != nullptr && line.level >= least_) Append(line);
  } catch (...) {
    pending_.resize(std::min(before, pending_.size()));
  }
}

// The line goes behind those that are held back; where it does not fit into their piece, they are written first.
void OperationsLog::Append(const Line& line) {
  const std::size_t before = pending_.size();
  AppendColumns(line);
  pending_.push_back('\n');
  if (before != 0 && pending_.size() > kPieceBytes) {
    WriteFirst(before);
    pending_.erase(0, before);
  }
  if (line.level == Level::kError) Flush();
}

void OperationsLog::AppendColumns(const Line& line) {
  const std::int64_t now = std::chrono::floor<std::chrono::milliseconds>(clock_.Now()).time_since_epoch().count();
  if (const std::int64_t second = now / 1000; second != second_) {
    secondText_ = fmt::format("{:%Y-%m-%dT%H:%M:%S}", fmt::gmtime(static_cast<std::time_t>(second)));
    second_ = second;
  }
  const std::string_view sourceFile = line.sourceFile;
  const std::string_view shortName = line.shortName;
  const std::string_view signature = line.signature;
  // Straight into room that is long enough; appending piece by piece takes half as long again.
  const std::size_t before = pending_.size();
  pending_.resize(before + secondText_.size() + userColumn_.size() + sourceFile.size() + shortName.size() +
                  signature.size() + kRoomForNumbers);
  ColumnWriter out(pending_.data() + before);
  out.Put(std::string_view(secondText_));
  out.Put('.');
  out.PutThreeDigits(static_cast<std::int32_t>((now % 1000 + 1000) % 1000));
  out.PutColumn('Z');
  out.PutColumn(std::string_view(userColumn_));
  out.PutColumn(static_cast<std::int32_t>(line.level));
  out.PutColumn(static_cast<std::int32_t>(line.eventType));
  out.PutColumn(sourceFile);
  out.PutColumn(static_cast<std::int32_t>(line.sourceLine));
  out.PutColumn(shortName);
  out.PutColumn(signature);
  pending_.resize(static_cast<std::size_t>(out.End() - pending_.data()));
  AppendEscaped(pending_, line.message);
}

// A call to the system for each unit would cost a quarter of a quick one.
void OperationsLog::EndUnit() noexcept {
  constexpr std::chrono::milliseconds kQuickSuccession{50};
  if (pending_.empty()) return;
  const auto now = std::chrono::steady_clock::now();
  if (lastUnitWritten_ && now - *lastUnitWritten_ < kQuickSuccession) return;
  lastUnitWritten_ = now;
  Flush();
}

void OperationsLog::Flush() noexcept {
  if (pending_.empty()) return;
  WriteFirst(pending_.size());
  pending_.clear();
}

void OperationsLog::WriteFirst(std::size_t length) noexcept {
  if (file_ == nullptr) return;
  try {
    file_->Append({pending_.data(), length});
  } catch (...) {
    file_.reset();
  }
}

}  // namespace standalone
