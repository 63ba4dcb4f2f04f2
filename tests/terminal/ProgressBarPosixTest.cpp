#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>

#include "standalone/app/terminal/ProgressBar.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

int Opened(int descriptor) {
  if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "a terminal");
  return descriptor;
}

// A terminal in the place of standard error, for as long as a test runs.
class AProgressBar : public testing::Test {
 public:
  AProgressBar() {
    EXPECT_EQ(grantpt(screen_), 0);
    EXPECT_EQ(unlockpt(screen_), 0);
    program_ = Opened(open(ptsname(screen_), O_RDWR | O_NOCTTY | O_CLOEXEC));
    Opened(dup2(program_, STDERR_FILENO));
  }
  AProgressBar(const AProgressBar&) = delete;
  AProgressBar& operator=(const AProgressBar&) = delete;
  ~AProgressBar() override {
    dup2(errors_, STDERR_FILENO);
    for (const int descriptor : {errors_, program_, screen_}) close(descriptor);
  }

 protected:
  // Works on until something is shown.
  std::string ShownOf(app::ProgressBar& bar, std::uint64_t done, std::uint64_t total) const {
    constexpr std::chrono::minutes kGivenUpAfter{1};
    const auto begun = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - begun < kGivenUpAfter) {
      bar.Show(done, total);
      const std::string shown = Shown();
      if (!shown.empty()) return shown;
    }
    return {};
  }
  // What has come to the terminal since it was asked last.
  std::string Shown() const {
    constexpr int kMillisecondsOfAPoll = 20;
    std::string text;
    pollfd asked{.fd = screen_, .events = POLLIN, .revents = 0};
    while (poll(&asked, 1, kMillisecondsOfAPoll) == 1) {
      std::array<char, 256> bytes{};
      const ssize_t count = read(screen_, bytes.data(), bytes.size());
      if (count <= 0) break;
      text.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int errors_ = Opened(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
  int screen_ = Opened(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
  int program_ = -1;
};

TEST_F(AProgressBar, ShowsHowMuchOfAFileIsDone) {
  app::ProgressBar bar("Importing march.csv");

  EXPECT_EQ(ShownOf(bar, 5'000'000, 10'000'000),
            "\rImporting march.csv [####################....................]  50%");
}

TEST_F(AProgressBar, ShowsHowManyMegabytesHaveComeThroughAPipe) {
  app::ProgressBar bar("Importing -");

  EXPECT_EQ(ShownOf(bar, 12'340'000, 0), "\rImporting -: 12.3 MB");
}

TEST_F(AProgressBar, OfAPipeIsWipedInTheEnd) {
  {
    app::ProgressBar bar("Importing -");
    ASSERT_THAT(ShownOf(bar, 12'340'000, 0), HasSubstr("12.3 MB"));
  }

  const std::string wiped = Shown();

  EXPECT_THAT(wiped, EndsWith("\r"));
  EXPECT_GE(wiped.size(), std::string("\rImporting -: 12.3 MB\r").size());
  EXPECT_EQ(wiped.find_first_not_of("\r "), std::string::npos);
}

}  // namespace
