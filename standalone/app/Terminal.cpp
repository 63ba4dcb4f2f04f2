// The one file of the program that asks the operating system instead of the standard library.
#include "standalone/app/Terminal.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <memory>
#include <system_error>

#include "standalone/Errors.h"
#else
#include <unistd.h>
#endif

namespace app {

#ifdef _WIN32

namespace {

// Argument number `position`, which Windows only promises to be 16-bit numbers.
std::string InUtf8(const wchar_t* word, int position) {
  const int size = ::WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, word, -1, nullptr, 0, nullptr, nullptr);
  if (size == 0) {
    throw standalone::InvalidInput("argument " + std::to_string(position) + " is not Unicode text; type it anew");
  }
  std::string text(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, word, -1, text.data(), size, nullptr, nullptr);
  text.pop_back();
  return text;
}

}  // namespace

std::vector<std::string> ArgumentsInUtf8(int /*argumentCount*/, char** /*arguments*/) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> words(::CommandLineToArgvW(::GetCommandLineW(), &count),
                                                              &::LocalFree);
  if (words == nullptr) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), "The command line");
  }
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(InUtf8(words.get()[i], i));
  return arguments;
}

void PrintTheSameEverywhere() noexcept {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  ::SetConsoleOutputCP(CP_UTF8);
}

#else

std::vector<std::string> ArgumentsInUtf8(int argumentCount, char** arguments) {
  if (argumentCount == 0) return {};
  return {arguments + 1, arguments + argumentCount};
}

void PrintTheSameEverywhere() noexcept {}

#endif

bool ReaderHasGone() noexcept {
#ifdef _WIN32
  // The C library has a name of its own for the first one only.
  return _doserrno == ERROR_BROKEN_PIPE || _doserrno == ERROR_NO_DATA || _doserrno == ERROR_PIPE_NOT_CONNECTED;
#else
  return errno == EPIPE;
#endif
}

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
