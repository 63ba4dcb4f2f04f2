// The one file of the program that asks the operating system instead of the standard library.
#include "standalone/app/Terminal.h"

#include <csignal>
#include <cstdio>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <filesystem>
#include <memory>
#include <system_error>
#else
#include <unistd.h>
#endif

namespace app {

#ifdef _WIN32

std::vector<std::string> ArgumentsInUtf8(int /*argumentCount*/, char** /*arguments*/) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> words(::CommandLineToArgvW(::GetCommandLineW(), &count),
                                                              &::LocalFree);
  if (words == nullptr) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), "The command line");
  }
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    const std::u8string word = std::filesystem::path(words.get()[i]).u8string();
    arguments.emplace_back(word.begin(), word.end());
  }
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
