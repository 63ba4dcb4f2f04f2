#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <string_view>

#include "platform/LoopEvents.h"
#include "standalone/storage/Database.h"

namespace standalone {

class StandaloneHost;

// The user-interface thread's loop of a host that stays open: runs what other threads posted, delivers the queued
// messages in their order, fires due timers, and sleeps until there is more. Each message and each timer is one unit of
// work; a posted task opens its own ones.
class MessageLoop {
 public:
  using Task = std::function<void()>;
  // What went wrong in a message, a timer or a task, in words for the user. The loop goes on.
  using FailureHandler = std::function<void(std::string_view what)>;

  MessageLoop(StandaloneHost& host, platform::LoopEvents& events);
  MessageLoop(const MessageLoop&) = delete;
  MessageLoop& operator=(const MessageLoop&) = delete;
  ~MessageLoop();

  // Returns after Quit(), as soon as what is just running has returned. On the thread that made the host.
  void Run();

  // From any thread. Tasks run in their order; those left when the loop ends never run.
  void Post(Task task);
  // From any thread, also before Run(), and for good.
  void Quit() noexcept;

  void SetFailureHandler(FailureHandler handler) { onFailure_ = std::move(handler); }
  // Told of each timer that is due, right before its procedure runs.
  void SetTimerObserver(std::function<void()> observer) { onTimer_ = std::move(observer); }

 private:
  bool RunTask();
  bool DeliverMessage();
  bool FireTimers();
  void TellTimer();
  void RunInUnit(Access access, const Task& work);
  void Report(const char* what);

  StandaloneHost& host_;
  platform::LoopEvents& events_;
  FailureHandler onFailure_;
  std::function<void()> onTimer_;
  std::atomic<bool> quit_ = false;
  std::mutex mutex_;
  std::deque<Task> tasks_;
};

}  // namespace standalone
