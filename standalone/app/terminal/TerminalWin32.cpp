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

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>

#include "standalone/app/terminal/Output.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Errors.h"

namespace app {

namespace {

// What Windows only promises to be 16-bit numbers; `what` names it.
std::string InUtf8(const wchar_t* word, const std::string& what) {
  const int size = ::WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, word, -1, nullptr, 0, nullptr, nullptr);
  if (size == 0) {
    throw standalone::InvalidInput(what + " is not Unicode text; type it anew");
  }
  std::string text(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, word, -1, text.data(), size, nullptr, nullptr);
  text.pop_back();
  return text;
}

// Does not show what is typed, as long as this lives. The console's own program shows it again when this one is ended.
class HiddenTyping {
 public:
  explicit HiddenTyping(HANDLE console) : console_(console), isAConsole_(::GetConsoleMode(console, &before_) != 0) {
    if (isAConsole_) ::SetConsoleMode(console_, (before_ | ENABLE_LINE_INPUT) & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  }
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;
  ~HiddenTyping() {
    if (isAConsole_) ::SetConsoleMode(console_, before_);
  }

 private:
  HANDLE console_;
  DWORD before_ = 0;
  bool isAConsole_;
};

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
  for (int i = 1; i < count; ++i) arguments.push_back(InUtf8(words.get()[i], "argument " + std::to_string(i)));
  return arguments;
}

std::optional<std::string> EnvironmentText(const char* name) {
  const wchar_t* const text = _wgetenv(std::wstring(name, name + std::strlen(name)).c_str());
  if (text == nullptr || *text == L'\0') return std::nullopt;
  return InUtf8(text, name);
}

void PrintTheSameEverywhere() noexcept {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  ::SetConsoleOutputCP(CP_UTF8);
}

bool ErrorsGoToATerminal() noexcept {
  return IsConsole(STD_ERROR_HANDLE);
}

std::optional<std::size_t> OutputWidth() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO screen{};
  if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &screen) == 0) return std::nullopt;
  // A line as long as the window would be followed by an empty one.
  const int cells = screen.srWindow.Right - screen.srWindow.Left;
  if (cells <= 0) return std::nullopt;
  return static_cast<std::size_t>(cells);
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

std::optional<std::string> ReadHiddenLine(std::string_view prompt) {
  const HANDLE console = ::GetStdHandle(STD_INPUT_HANDLE);
  const HiddenTyping hidden(console);
  PrintError(prompt);
  std::wstring line;
  while (line.empty() || line.back() != L'\n') {
    std::array<wchar_t, 256> part{};
    DWORD count = 0;
    if (::ReadConsoleW(console, part.data(), static_cast<DWORD>(part.size()), &count, nullptr) == 0)
      return std::nullopt;
    if (count == 0) return std::nullopt;
    line.append(part.data(), count);
  }
  // Ctrl-Z ends the input.
  if (line.front() == L'\x1a') return std::nullopt;
  line.erase(line.find_last_not_of(L"\r\n") + 1);
  PrintError("\n");
  return InUtf8(line.c_str(), "what was typed");
}

// A write to a closed pipe is like any other there.
void IgnoreClosedPipes() noexcept {}

bool ReaderHasGone() noexcept {
  // The C library has a name of its own for the first one only.
  return _doserrno == ERROR_BROKEN_PIPE || _doserrno == ERROR_NO_DATA || _doserrno == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace app
