// What the program asks of a POSIX system instead of the standard library.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Errors.h"

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

std::size_t ReadInput(char* into, std::size_t most) {
  while (true) {
    const ssize_t count = ::read(STDIN_FILENO, into, most);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EINTR) continue;
    throw standalone::InvalidInput("standard input cannot be read: " + std::generic_category().message(errno));
  }
}

void IgnoreClosedPipes() noexcept {
  std::signal(SIGPIPE, SIG_IGN);
}

bool ReaderHasGone() noexcept {
  return errno == EPIPE;
}

}  // namespace app
