// What the program asks of a POSIX system instead of the standard library.
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <system_error>

#include "standalone/app/terminal/Output.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Errors.h"

namespace app {

namespace {

constexpr std::array kSignalsThatEnd{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// As the terminal was before what is typed was hidden.
termios modeBefore{};

// Ends the program as the signal would have, which is back to what it does by itself.
extern "C" void ShowAgainAndEnd(int signal) {
  tcsetattr(STDIN_FILENO, TCSANOW, &modeBefore);
  raise(signal);
}

// Does not show what is typed, as long as this lives. Where that is no terminal nothing changes.
class HiddenTyping {
 public:
  HiddenTyping() : isATerminal_(tcgetattr(STDIN_FILENO, &modeBefore) == 0) {
    if (!isATerminal_) return;
    struct sigaction ending{};
    ending.sa_handler = ShowAgainAndEnd;
    ending.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kSignalsThatEnd.size(); ++i) sigaction(kSignalsThatEnd[i], &ending, &before_[i]);
    termios hidden = modeBefore;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    hidden.c_lflag |= ECHONL;
    // A program that is stopped would leave the terminal so.
    hidden.c_cc[VSUSP] = _POSIX_VDISABLE;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;
  ~HiddenTyping() {
    if (!isATerminal_) return;
    tcsetattr(STDIN_FILENO, TCSANOW, &modeBefore);
    for (std::size_t i = 0; i < kSignalsThatEnd.size(); ++i) sigaction(kSignalsThatEnd[i], &before_[i], nullptr);
  }

 private:
  bool isATerminal_;
  std::array<struct sigaction, kSignalsThatEnd.size()> before_{};
};

}  // namespace

std::vector<std::string> ArgumentsInUtf8(int argumentCount, char** arguments) {
  if (argumentCount == 0) return {};
  return {arguments + 1, arguments + argumentCount};
}

std::optional<std::string> EnvironmentText(const char* name) {
  const char* const text = std::getenv(name);
  if (text == nullptr || *text == '\0') return std::nullopt;
  return text;
}

void PrintTheSameEverywhere() noexcept {}

bool ErrorsGoToATerminal() noexcept {
  return isatty(STDERR_FILENO) != 0;
}

std::optional<std::size_t> OutputWidth() noexcept {
  winsize size{};
  // A terminal that nobody told its size says 0.
  if (isatty(STDOUT_FILENO) == 0 || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
    return std::nullopt;
  }
  return size.ws_col;
}

bool InputComesFromATerminal() noexcept {
  return isatty(STDIN_FILENO) != 0;
}

std::size_t ReadInput(char* into, std::size_t most) {
  while (true) {
    const ssize_t count = ::read(STDIN_FILENO, into, most);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EINTR) continue;
    throw standalone::InvalidInput("standard input cannot be read: " + std::generic_category().message(errno));
  }
}

std::optional<std::string> ReadHiddenLine(std::string_view prompt) {
  const HiddenTyping hidden;
  PrintError(prompt);
  std::string line;
  if (!std::getline(std::cin, line)) return std::nullopt;
  return line;
}

void IgnoreClosedPipes() noexcept {
  std::signal(SIGPIPE, SIG_IGN);
}

bool ReaderHasGone() noexcept {
  return errno == EPIPE;
}

}  // namespace app
