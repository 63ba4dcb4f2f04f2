#include "standalone/OperationsLog.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <chrono>
#include <cstdint>
#include <utility>

namespace standalone {

namespace {

// Whole lines are handed over in pieces of at most this size, each flushed: two programs on one log then append whole
// lines, not parts of them.
constexpr std::size_t kPieceBytes = 4096;

std::string TimeText() {
  const auto now = std::chrono::system_clock::now();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(now);
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now - seconds).count();
  return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z", fmt::gmtime(std::chrono::system_clock::to_time_t(seconds)),
                     milliseconds);
}

void AppendEscaped(std::string& out, std::string_view text) {
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    switch (character) {
      case '\t':
        out += "\\t";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\\':
        out += "\\\\";
        break;
      default:
        if (byte < 0x20 || byte == 0x7F) {
          fmt::format_to(std::back_inserter(out), "\\x{:02X}", byte);
        } else {
          out += character;
        }
    }
  }
}

int HexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

}  // namespace

class OperationsLog::File {
 public:
  File(const std::filesystem::path& path, LogLimits limits)
      : sink_(path.native(), limits.fileBytes, limits.olderFiles) {
    sink_.set_formatter(
        std::make_unique<spdlog::pattern_formatter>("%v", spdlog::pattern_time_type::utc, /*eol=*/"\n"));
  }

  void Append(std::string_view lines) {
    sink_.log(spdlog::details::log_msg(spdlog::string_view_t(), spdlog::level::info,
                                       spdlog::string_view_t(lines.data(), lines.size())));
    sink_.flush();
  }

 private:
  spdlog::sinks::rotating_file_sink_st sink_;
};

OperationsLog::OperationsLog(const std::filesystem::path& file, std::string userName, LogLimits limits)
    : userName_(std::move(userName)) {
  try {
    file_ = std::make_unique<File>(file, limits);
    pending_.reserve(kPieceBytes);
  } catch (const spdlog::spdlog_ex&) {
    file_.reset();
  }
}

OperationsLog::~OperationsLog() {
  Flush();
}

bool OperationsLog::Wants(Level /*level*/) const noexcept {
  return file_ != nullptr || observer_ != nullptr;
}

void OperationsLog::Write(const Line& line) noexcept {
  try {
    if (observer_) observer_(line);
    if (file_ == nullptr) return;
    std::string text = TimeText();
    text += '\t';
    AppendEscaped(text, userName_);
    fmt::format_to(std::back_inserter(text), "\t{}\t{}\t", static_cast<std::int32_t>(line.level),
                   static_cast<std::int32_t>(line.eventType));
    AppendEscaped(text, line.sourceFile);
    fmt::format_to(std::back_inserter(text), "\t{}\t", line.sourceLine);
    AppendEscaped(text, line.shortName);
    text += '\t';
    AppendEscaped(text, line.signature);
    text += '\t';
    AppendEscaped(text, line.message);

    if (pending_.size() + text.size() + 2 > kPieceBytes) Flush();
    if (!pending_.empty()) pending_ += '\n';
    pending_ += text;
    if (line.level == Level::kError) Flush();
  } catch (...) {
    pending_.clear();
  }
}

void OperationsLog::Flush() noexcept {
  if (file_ == nullptr || pending_.empty()) return;
  try {
    file_->Append(pending_);
  } catch (...) {
    file_.reset();
  }
  pending_.clear();
}

std::string EscapeColumn(std::string_view text) {
  std::string escaped;
  AppendEscaped(escaped, text);
  return escaped;
}

std::string UnescapeColumn(std::string_view text) {
  std::string plain;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] != '\\' || index + 1 == text.size()) {
      plain += text[index];
      continue;
    }
    switch (const char kind = text[++index]) {
      case 't':
        plain += '\t';
        break;
      case 'n':
        plain += '\n';
        break;
      case 'r':
        plain += '\r';
        break;
      case 'x':
        if (index + 2 < text.size() && HexDigit(text[index + 1]) >= 0 && HexDigit(text[index + 2]) >= 0) {
          plain += static_cast<char>(HexDigit(text[index + 1]) * 16 + HexDigit(text[index + 2]));
          index += 2;
          break;
        }
        [[fallthrough]];
      default:
        plain += kind;
    }
  }
  return plain;
}

}  // namespace standalone
