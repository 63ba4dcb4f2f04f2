// What the program asks of a POSIX system instead of the standard library.
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "standalone/app/terminal/Terminal.h"

namespace app {

std::vector<std::string> ArgumentsInUtf8(int argumentCount, char** arguments) {
  if (argumentCount == 0) return {};
  return {arguments + 1, arguments + argumentCount};
}

void PrintTheSameEverywhere() noexcept {}

bool ErrorsGoToATerminal() noexcept {
  return isatty(STDERR_FILENO) != 0;
}

bool InputComesFromATerminal() noexcept {
  return isatty(STDIN_FILENO) != 0;
}

void IgnoreClosedPipes() noexcept {
  std::signal(SIGPIPE, SIG_IGN);
}

bool ReaderHasGone() noexcept {
  return errno == EPIPE;
}

}  // namespace app
