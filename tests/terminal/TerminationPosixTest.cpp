// Standard input and signals as POSIX systems have them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <future>
#include <stdexcept>
#include <string>
#include <string_view>

#include "standalone/app/terminal/LineCutter.h"
#include "tests/terminal/TerminationRecord.h"

namespace app {
namespace {

using testing::ElementsAre;

class TheWatchForTermination : public TerminationRecord {
 protected:
  TheWatchForTermination() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    EXPECT_EQ(dup2(ends[0], STDIN_FILENO), STDIN_FILENO);
    close(ends[0]);
    input_ = ends[1];
  }

  void Type(std::string_view text) const {
    EXPECT_EQ(write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void EndInput() const { close(input_); }

  int input_ = -1;
};

TEST_F(TheWatchForTermination, EndsWithTheInputAndHandsOverItsLines) {
  const Termination watch(Handlers());

  Type("yes\r\nn");
  Type("o\n\nlast");
  EndInput();

  EXPECT_EQ(Cause(), TerminationCause::kEndOfInput);
  EXPECT_THAT(lines_, ElementsAre("yes", "no", "", "last"));
}

TEST_F(TheWatchForTermination, TellsOfALineThatIsTooLongOnceAndHandsOverTheNext) {
  const Termination watch(Handlers());

  for (int i = 0; i < 64; ++i) Type(std::string(kLongestTypedLine, 'x'));
  Type("\nyes\n");
  EndInput();

  EXPECT_EQ(Cause(), TerminationCause::kEndOfInput);
  EXPECT_THAT(lines_, ElementsAre("yes"));
  EXPECT_EQ(longLines_, 1);
}

TEST_F(TheWatchForTermination, EndsWithCtrlC) {
  const Termination watch(Handlers());

  raise(SIGINT);

  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
}

TEST_F(TheWatchForTermination, EndsWhenTheSystemAsksForIt) {
  const Termination watch(Handlers());

  raise(SIGTERM);
  raise(SIGTERM);

  EXPECT_EQ(Cause(), TerminationCause::kTerminate);
}

TEST_F(TheWatchForTermination, EndsWhenTheTerminalIsGone) {
  const Termination watch(Handlers());

  raise(SIGHUP);

  EXPECT_EQ(Cause(), TerminationCause::kTerminate);
}

TEST_F(TheWatchForTermination, IsGivenUpWithoutAnEnd) {
  {
    const Termination watch(Handlers());
  }

  struct sigaction action{};
  sigaction(SIGTERM, nullptr, &action);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
  EXPECT_EQ(ended_.get_future().wait_for(std::chrono::seconds(0)), std::future_status::timeout);
}

TEST_F(TheWatchForTermination, LeavesASignalAloneThatTheProgramIsToIgnore) {
  signal(SIGHUP, SIG_IGN);
  const Termination watch(Handlers());

  raise(SIGHUP);
  raise(SIGINT);

  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
}

TEST_F(TheWatchForTermination, IsKeptOnlyOnceAtATime) {
  const Termination watch(Handlers());

  EXPECT_THROW(const Termination second(Handlers()), std::logic_error);

  raise(SIGINT);
  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
}

}  // namespace
}  // namespace app
