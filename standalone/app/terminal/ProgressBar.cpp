#include "standalone/app/terminal/ProgressBar.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Text.h"
#include "standalone/values/Unicode.h"

namespace app {

namespace {

constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kPace{100};
constexpr std::uint64_t kCells = 40;
constexpr double kBytesPerMegabyte = 1e6;
constexpr std::size_t kWidthBesideTheTitle = std::string_view(" [").size() + kCells + std::string_view("] 100%").size();

}  // namespace

ProgressBar::ProgressBar(std::string_view title)
    : title_(standalone::Shown(title)), toATerminal_(ErrorsGoToATerminal()), next_(Clock::now() + kPatience) {}

ProgressBar::~ProgressBar() {
  // Wiped with blanks, which every terminal understands.
  if (shown_) std::fprintf(stderr, "\r%*s\r", static_cast<int>(standalone::CellsIn(title_) + kWidthBesideTheTitle), "");
}

void ProgressBar::Show(std::uint64_t done, std::uint64_t total) noexcept {
  const Clock::time_point now = Clock::now();
  if (!toATerminal_ || now < next_) return;
  next_ = now + kPace;
  shown_ = true;
  if (total == 0) {
    std::fprintf(stderr, "\r%s: %.1f MB", title_.c_str(), static_cast<double>(done) / kBytesPerMegabyte);
    std::fflush(stderr);
    return;
  }
  const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
  const auto filled = static_cast<std::uint64_t>(share * static_cast<double>(kCells));
  std::array<char, kCells + 1> bar{};
  std::fill_n(bar.begin(), filled, '#');
  std::fill_n(bar.begin() + filled, kCells - filled, '.');
  std::fprintf(stderr, "\r%s [%s] %3d%%", title_.c_str(), bar.data(), static_cast<int>(share * 100));
  std::fflush(stderr);
}

}  // namespace app
