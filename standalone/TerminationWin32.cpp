// Watches standard input and the console's control events on Windows. Reading standard input cannot be broken off
// there, so the reading thread is left behind when the watch ends, and what it reads then goes nowhere.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <iostream>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "standalone/Termination.h"

namespace standalone {

namespace {

// Shared with the reading thread, which may outlive the watch.
class Handlers {
 public:
  explicit Handlers(TerminationHandlers handlers) : handlers_(std::move(handlers)) {}

  void Line(std::string line) {
    const std::lock_guard lock(mutex_);
    if (!isOver_ && handlers_.onLine) handlers_.onLine(std::move(line));
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
// Set when the watch is over, which ends the system's patience with a console that is closed.
HANDLE closed = nullptr;

BOOL WINAPI OnControl(DWORD event) {
  std::shared_ptr<Handlers> handlers;
  {
    const std::lock_guard lock(watchMutex);
    handlers = watching;
  }
  if (handlers == nullptr) return FALSE;
  const bool isInterrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  handlers->End(isInterrupt ? TerminationCause::kInterrupt : TerminationCause::kTerminate);
  // The program is ended when this returns.
  if (!isInterrupt) ::WaitForSingleObject(closed, INFINITE);
  return TRUE;
}

void ReadLines(const std::shared_ptr<Handlers>& handlers) {
  std::string line;
  while (std::getline(std::cin, line)) {
    if (line.ends_with('\r')) line.pop_back();
    handlers->Line(std::move(line));
  }
  handlers->End(TerminationCause::kEndOfInput);
}

}  // namespace

class Termination::Watch {
 public:
  explicit Watch(TerminationHandlers handlers) : handlers_(std::make_shared<Handlers>(std::move(handlers))) {
    {
      const std::lock_guard lock(watchMutex);
      if (watching != nullptr) throw std::logic_error("The console is watched already.");
      if (closed == nullptr) closed = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
      ::ResetEvent(closed);
      watching = handlers_;
    }
    ::SetConsoleCtrlHandler(&OnControl, TRUE);
    std::thread(ReadLines, handlers_).detach();
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    ::SetConsoleCtrlHandler(&OnControl, FALSE);
    handlers_->LetGo();
    const std::lock_guard lock(watchMutex);
    watching = nullptr;
    ::SetEvent(closed);
  }

 private:
  std::shared_ptr<Handlers> handlers_;
};

Termination::Termination(TerminationHandlers handlers) : watch_(std::make_unique<Watch>(std::move(handlers))) {}

Termination::~Termination() = default;

}  // namespace standalone
