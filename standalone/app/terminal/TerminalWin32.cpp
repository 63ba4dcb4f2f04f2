// What the program asks of Windows instead of the standard library.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <fcntl.h>
#include <io.h>
#include <windows.h>

// After <windows.h>, whose types it uses.
#include <shellapi.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Errors.h"

namespace app {

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

// The C library would also take the null device for a terminal.
bool IsConsole(DWORD standardHandle) noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(standardHandle), &mode) != 0;
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

bool ErrorsGoToATerminal() noexcept {
  return IsConsole(STD_ERROR_HANDLE);
}

bool InputComesFromATerminal() noexcept {
  return IsConsole(STD_INPUT_HANDLE);
}

std::size_t ReadInput(char* into, std::size_t most) {
  // Otherwise line ends are translated and a file ends at Ctrl-Z.
  static const int madeBinary = _setmode(_fileno(stdin), _O_BINARY);
  const int count = madeBinary < 0 ? -1 : _read(_fileno(stdin), into, static_cast<unsigned int>(most));
  if (count >= 0) return static_cast<std::size_t>(count);
  throw standalone::InvalidInput("standard input cannot be read: " + std::generic_category().message(errno));
}

// A write to a closed pipe is like any other there.
void IgnoreClosedPipes() noexcept {}

bool ReaderHasGone() noexcept {
  // The C library has a name of its own for the first one only.
  return _doserrno == ERROR_BROKEN_PIPE || _doserrno == ERROR_NO_DATA || _doserrno == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace app
