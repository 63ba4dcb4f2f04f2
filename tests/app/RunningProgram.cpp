// Running a program beside the test is POSIX here.
#include "app/RunningProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

constexpr int kPatienceInMilliseconds = 60'000;

[[noreturn]] void ThrowSystemError(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// The test's ends and the program's ends of what connects them.
struct Connection {
  int input = -1;
  int output = -1;
  int programInput = -1;
  int programOutput = -1;
};

std::array<int, 2> NewPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) ThrowSystemError("pipe");
  return ends;
}

Connection ThroughPipes() {
  const std::array<int, 2> input = NewPipe();
  const std::array<int, 2> output = NewPipe();
  return {.input = input[1], .output = output[0], .programInput = input[0], .programOutput = output[1]};
}

// Wine's console does so itself, but not before it reads for the first time.
void LeaveKeysToTheProgram(int terminal) {
  termios mode{};
  if (tcgetattr(terminal, &mode) != 0) ThrowSystemError("tcgetattr");
  cfmakeraw(&mode);
  if (tcsetattr(terminal, TCSANOW, &mode) != 0) ThrowSystemError("tcsetattr");
}

Connection ThroughATerminal() {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) ThrowSystemError("posix_openpt");
  const int programEnd = open(ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (programEnd < 0) ThrowSystemError("ptsname");
  // So large that no line is broken and none scrolls away.
  const winsize size{.ws_row = 200, .ws_col = 1000, .ws_xpixel = 0, .ws_ypixel = 0};
  if (ioctl(programEnd, TIOCSWINSZ, &size) != 0) ThrowSystemError("TIOCSWINSZ");
  if (IsWindowsProgram()) LeaveKeysToTheProgram(programEnd);
  return {.input = fcntl(terminal, F_DUPFD_CLOEXEC, 0),
          .output = terminal,
          .programInput = programEnd,
          .programOutput = fcntl(programEnd, F_DUPFD_CLOEXEC, 0)};
}

pid_t Start(const std::filesystem::path& directory, const std::filesystem::path& errors, const Connection& connection,
            const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {ProgramUnderTest()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, connection.programInput, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, connection.programOutput, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());
  pid_t child = 0;
  const int error = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), pointers[0]);
  return child;
}

}  // namespace

std::string ShownText::Add(std::string_view bytes) {
  std::string shown;
  for (const char byte : bytes) Add(byte, shown);
  return shown;
}

void ShownText::Add(char byte, std::string& shown) {
  constexpr char kEscape = '\x1b';
  constexpr char kCursorRight = 'C';
  switch (state_) {
    case State::kText:
      if (byte == kEscape) {
        state_ = State::kEscape;
      } else {
        shown += byte;
      }
      break;
    case State::kEscape:
      state_ = byte == '[' ? State::kSequence : State::kText;
      break;
    case State::kSequence:
      if (byte < '@') break;
      if (byte == kCursorRight) shown += ' ';
      state_ = State::kText;
      break;
  }
}

RunningProgram::RunningProgram(const std::filesystem::path& directory, const std::vector<std::string>& arguments,
                               Console console)
    : errors_(directory / "standard-error-of-the-running-program"), console_(console) {
  const Connection connection = console == Console::kPipes ? ThroughPipes() : ThroughATerminal();
  child_ = Start(directory, errors_, connection, arguments);
  input_ = connection.input;
  output_ = connection.output;
  close(connection.programInput);
  close(connection.programOutput);
}

RunningProgram::~RunningProgram() {
  if (child_ != 0) {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  EndInput();
  close(output_);
}

std::string RunningProgram::WaitFor(const std::string& text) {
  std::size_t found = unread_.find(text);
  while (found == std::string::npos) {
    if (!ReadMore()) {
      throw std::runtime_error("\"" + text + "\" was not printed, but: " + unread_ + "\nand: " + ContentsOf(errors_));
    }
    found = unread_.find(text);
  }
  std::string printed = unread_.substr(0, found + text.size());
  unread_.erase(0, found + text.size());
  return printed;
}

void RunningProgram::Type(const std::string& typed) const {
  std::string text = typed;
  if (console_ == Console::kTerminal) std::ranges::replace(text, '\n', '\r');
  if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) ThrowSystemError("write");
}

void RunningProgram::EndInput() {
  if (input_ >= 0) close(std::exchange(input_, -1));
}

void RunningProgram::Signal(int signal) const {
  if (kill(child_, signal) != 0) ThrowSystemError("kill");
}

Outcome RunningProgram::End() {
  while (ReadMore()) {
  }
  int status = 0;
  if (waitpid(std::exchange(child_, 0), &status, 0) < 0) ThrowSystemError("waitpid");
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), std::exchange(unread_, {}),
          ContentsOf(errors_)};
}

// False when there is no more: the program has closed its output, or has been silent for too long.
bool RunningProgram::ReadMore() {
  pollfd watched{output_, POLLIN, 0};
  if (poll(&watched, 1, kPatienceInMilliseconds) <= 0) return false;
  std::array<char, 4096> bytes{};
  // A terminal whose other end is closed answers with an error instead of an end.
  const ssize_t count = read(output_, bytes.data(), bytes.size());
  if (count <= 0) return false;
  const std::string_view printed(bytes.data(), static_cast<std::size_t>(count));
  unread_ += console_ == Console::kTerminal ? terminal_.Add(printed) : std::string(printed);
  return true;
}
