#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace app {

// No answer is longer. An input without ends of lines takes no more memory than this.
inline constexpr std::size_t kLongestTypedLine = 4096;

// Cuts what is read from standard input into lines without their ends. One of more bytes than the longest is told of
// once, and dropped.
class LineCutter {
 public:
  LineCutter(const std::function<void(std::string)>& onLine, const std::function<void()>& onLongLine) noexcept
      : onLine_(onLine), onLongLine_(onLongLine) {}

  void Add(std::string_view bytes) {
    for (const char byte : bytes) {
      if (byte == '\n') {
        Finish();
      } else if (!isTooLong_) {
        Keep(byte);
      }
    }
  }

  void FinishLast() {
    if (!line_.empty()) Finish();
  }

 private:
  void Keep(char byte) {
    if (line_.size() < kLongestTypedLine) {
      line_ += byte;
      return;
    }
    isTooLong_ = true;
    line_.clear();
    if (onLongLine_) onLongLine_();
  }

  void Finish() {
    if (std::exchange(isTooLong_, false)) return;
    if (line_.ends_with('\r')) line_.pop_back();
    std::string line = std::exchange(line_, {});
    if (onLine_) onLine_(std::move(line));
  }

  const std::function<void(std::string)>& onLine_;
  const std::function<void()>& onLongLine_;
  std::string line_;
  bool isTooLong_ = false;
};

}  // namespace app
