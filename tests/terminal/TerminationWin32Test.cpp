// Standard input and control events as Windows consoles have them.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include <array>
#include <chrono>
#include <future>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "tests/terminal/TerminationRecord.h"

namespace app {
namespace {

using testing::ElementsAre;

constexpr DWORD kPatience = 10'000;

// The thread on which the system tells a program of a control event, started as the system does.
class ControlEvent {
 public:
  explicit ControlEvent(DWORD event) {
    const HMODULE kernel = ::GetModuleHandleW(L"kernelbase.dll");
    const auto routine =
        reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(::GetProcAddress(kernel, "CtrlRoutine")));
    thread_ =
        ::CreateThread(nullptr, 0, routine, reinterpret_cast<void*>(static_cast<std::uintptr_t>(event)), 0, nullptr);
    EXPECT_NE(thread_, nullptr);
  }
  ControlEvent(const ControlEvent&) = delete;
  ControlEvent& operator=(const ControlEvent&) = delete;
  ~ControlEvent() { ::CloseHandle(thread_); }

  bool IsHandledWithin(DWORD milliseconds) const {
    return ::WaitForSingleObject(thread_, milliseconds) == WAIT_OBJECT_0;
  }

 private:
  HANDLE thread_ = nullptr;
};

class TheWatchForTermination : public TerminationRecord {
 protected:
  TheWatchForTermination() {
    std::array<int, 2> ends{};
    EXPECT_EQ(_pipe(ends.data(), 4096, _O_BINARY), 0);
    EXPECT_EQ(_dup2(ends[0], _fileno(stdin)), 0);
    _close(ends[0]);
    input_ = ends[1];
  }
  // The watch's reading thread is left behind, and what it reads ends with the input.
  ~TheWatchForTermination() override { EndInput(); }

  void Type(std::string_view text) const {
    EXPECT_EQ(_write(input_, text.data(), static_cast<unsigned>(text.size())), static_cast<int>(text.size()));
  }
  void EndInput() {
    if (input_ >= 0) _close(std::exchange(input_, -1));
  }

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

TEST_F(TheWatchForTermination, EndsWithCtrlC) {
  const Termination watch(Handlers());

  const ControlEvent event(CTRL_C_EVENT);

  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
  EXPECT_TRUE(event.IsHandledWithin(kPatience));
}

TEST_F(TheWatchForTermination, EndsWithCtrlBreak) {
  const Termination watch(Handlers());

  const ControlEvent event(CTRL_BREAK_EVENT);

  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
  EXPECT_TRUE(event.IsHandledWithin(kPatience));
}

// The system ends the program as soon as it has handled the event.
TEST_F(TheWatchForTermination, LetsTheProgramEndItselfWhenItsConsoleIsClosed) {
  std::optional<Termination> watch(Handlers());

  const ControlEvent event(CTRL_CLOSE_EVENT);

  EXPECT_EQ(Cause(), TerminationCause::kTerminate);
  watch.reset();
  EXPECT_FALSE(event.IsHandledWithin(50));
}

TEST_F(TheWatchForTermination, EndsWhenTheSystemShutsDown) {
  const Termination watch(Handlers());

  const ControlEvent event(CTRL_SHUTDOWN_EVENT);

  EXPECT_EQ(Cause(), TerminationCause::kTerminate);
}

TEST_F(TheWatchForTermination, TellsOfItsEndOnce) {
  std::optional<Termination> watch(Handlers());

  const ControlEvent first(CTRL_BREAK_EVENT);
  EXPECT_TRUE(first.IsHandledWithin(kPatience));
  const ControlEvent second(CTRL_BREAK_EVENT);
  EXPECT_TRUE(second.IsHandledWithin(kPatience));
  EndInput();

  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
}

TEST_F(TheWatchForTermination, IsGivenUpWithoutAnEnd) {
  {
    const Termination watch(Handlers());
  }

  EXPECT_EQ(ended_.get_future().wait_for(std::chrono::seconds(0)), std::future_status::timeout);
}

TEST_F(TheWatchForTermination, IsKeptOnlyOnceAtATime) {
  const Termination watch(Handlers());

  EXPECT_THROW(const Termination second(Handlers()), std::logic_error);

  const ControlEvent event(CTRL_BREAK_EVENT);
  EXPECT_EQ(Cause(), TerminationCause::kInterrupt);
  EXPECT_TRUE(event.IsHandledWithin(kPatience));
}

}  // namespace
}  // namespace app
