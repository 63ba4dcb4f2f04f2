#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace app {

// Shows on a terminal how far a long piece of work has come, once it has taken longer than a second; nowhere else.
class ProgressBar {
 public:
  explicit ProgressBar(std::string_view title);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  // Wipes the bar.
  ~ProgressBar();

  // A total of 0 is one that nobody knows: then it shows how many MB are done.
  void Show(std::uint64_t done, std::uint64_t total) noexcept;

 private:
  using Clock = std::chrono::steady_clock;

  std::string title_;
  bool toATerminal_;
  bool shown_ = false;
  Clock::time_point next_;
};

}  // namespace app
