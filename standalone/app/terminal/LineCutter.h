#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace app {

// Cuts what is read from standard input into lines without their ends.
class LineCutter {
 public:
  explicit LineCutter(const std::function<void(std::string)>& onLine) noexcept : onLine_(onLine) {}

  void Add(std::string_view bytes) {
    for (const char byte : bytes) {
      if (byte == '\n') {
        Finish();
      } else {
        line_ += byte;
      }
    }
  }

  void FinishLast() {
    if (!line_.empty()) Finish();
  }

 private:
  void Finish() {
    if (line_.ends_with('\r')) line_.pop_back();
    std::string line = std::exchange(line_, {});
    if (onLine_) onLine_(std::move(line));
  }

  const std::function<void(std::string)>& onLine_;
  std::string line_;
};

}  // namespace app
