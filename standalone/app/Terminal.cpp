// The one file of the program that asks the operating system instead of the standard library.
#include "standalone/app/Terminal.h"

#include <csignal>
#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace app {

bool ErrorsGoToATerminal() noexcept {
#ifdef _WIN32
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

bool InputComesFromATerminal() noexcept {
#ifdef _WIN32
  return _isatty(_fileno(stdin)) != 0;
#else
  return isatty(STDIN_FILENO) != 0;
#endif
}

void IgnoreClosedPipes() noexcept {
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

}  // namespace app
