// Watches standard input and the console's control events on Windows. Reading standard input is not broken off, so the
// reading thread is left behind when the watch ends, and what it reads then goes nowhere.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <array>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "standalone/app/terminal/LineCutter.h"
#include "standalone/app/terminal/Termination.h"

namespace app {

namespace {

// Shared with the reading thread, which may outlive the watch.
class Handlers {
 public:
  explicit Handlers(TerminationHandlers handlers) : handlers_(std::move(handlers)) {}

  void Line(std::string line) {
    const std::lock_guard lock(mutex_);
    if (!isOver_ && handlers_.onLine) handlers_.onLine(std::move(line));
  }

  void LongLine() {
    const std::lock_guard lock(mutex_);
    if (!isOver_ && handlers_.onLongLine) handlers_.onLongLine();
  }

  void End(TerminationCause cause) {
    const std::lock_guard lock(mutex_);
    if (!std::exchange(isOver_, true) && handlers_.onEnd) handlers_.onEnd(cause);
  }

  void LetGo() {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }

 private:
  std::mutex mutex_;
  TerminationHandlers handlers_;
  bool isOver_ = false;
};

std::mutex watchMutex;
std::shared_ptr<Handlers> watching;

BOOL WINAPI OnControl(DWORD event) {
  std::shared_ptr<Handlers> handlers;
  {
    const std::lock_guard lock(watchMutex);
    handlers = watching;
  }
  if (handlers == nullptr) return FALSE;
  const bool isInterrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  handlers->End(isInterrupt ? TerminationCause::kInterrupt : TerminationCause::kTerminate);
  // Of a console that is closed the system ends the program when this returns, or when its patience is over. Until then
  // the program closes the company and ends itself.
  if (!isInterrupt) ::Sleep(INFINITE);
  return TRUE;
}

// It stays for good, as it does nothing while nobody watches: the system lets no handler be taken out while one runs.
void ListenToTheConsole() {
  static const bool isListening = ::SetConsoleCtrlHandler(&OnControl, TRUE) != 0;
  if (!isListening) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), "The watch for the console");
  }
}

// False at the end of input, which an input that cannot be read has reached, too.
bool ReadInput(HANDLE input, LineCutter& lines) {
  std::array<char, 4096> bytes;
  DWORD count = 0;
  ::SetLastError(ERROR_SUCCESS);
  const bool isRead = ::ReadFile(input, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) != 0;
  // Ctrl-C breaks the reading of a console off, and is told of elsewhere.
  if (count == 0) return isRead && ::GetLastError() == ERROR_OPERATION_ABORTED;
  lines.Add({bytes.data(), count});
  return true;
}

// Not through the C library, which waits for its readers when the program ends.
void ReadLines(const std::shared_ptr<Handlers>& handlers) {
  const std::function<void(std::string)> onLine = [&handlers](std::string line) {
    handlers->Line(std::move(line));
  };
  const std::function<void()> onLongLine = [&handlers] {
    handlers->LongLine();
  };
  LineCutter lines(onLine, onLongLine);
  const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
  while (ReadInput(input, lines)) {
  }
  lines.FinishLast();
  handlers->End(TerminationCause::kEndOfInput);
}

}  // namespace

class Termination::Watch {
 public:
  explicit Watch(TerminationHandlers handlers) {
    const bool watchesInput = handlers.watchesInput;
    handlers_ = std::make_shared<Handlers>(std::move(handlers));
    ListenToTheConsole();
    const std::lock_guard lock(watchMutex);
    if (watching != nullptr) throw std::logic_error("The console is watched already.");
    watching = handlers_;
    if (watchesInput) std::thread(ReadLines, handlers_).detach();
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    handlers_->LetGo();
    const std::lock_guard lock(watchMutex);
    watching = nullptr;
  }

 private:
  std::shared_ptr<Handlers> handlers_;
};

Termination::Termination(TerminationHandlers handlers) : watch_(std::make_unique<Watch>(std::move(handlers))) {}

Termination::~Termination() = default;

}  // namespace app
