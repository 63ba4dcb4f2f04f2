#include "standalone/company/MessageLoop.h"

#include <chrono>
#include <exception>
#include <optional>
#include <utility>

#include "standalone/company/StandaloneHost.h"

namespace standalone {

namespace {

// How long a message is left alone whose unit of work could not begin, as when another program holds the file.
constexpr std::chrono::milliseconds kRetryAfter{1000};

constexpr const char* kSignature = "void MessageLoop::Run()";

}  // namespace

MessageLoop::MessageLoop(StandaloneHost& host, platform::LoopEvents& events) : host_(host), events_(events) {}

MessageLoop::~MessageLoop() = default;

void MessageLoop::Run() {
  while (!quit_) {
    if (RunTask() || DeliverMessage() || FireTimers()) continue;
    host_.Log().Flush();
    const bool messageCouldNotBegin = host_.App().HasMessages();
    events_.Sleep(messageCouldNotBegin ? std::optional(kRetryAfter) : std::nullopt);
  }
  host_.Log().Flush();
}

void MessageLoop::Post(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  events_.Wake();
}

void MessageLoop::Quit() noexcept {
  quit_ = true;
  events_.Wake();
}

bool MessageLoop::RunTask() {
  Task task;
  {
    const std::lock_guard lock(mutex_);
    if (tasks_.empty()) return false;
    task = std::move(tasks_.front());
    tasks_.pop_front();
  }
  try {
    task();
  } catch (const std::exception& error) {
    Report(error.what());
  }
  return true;
}

// False also when the message's unit of work could not begin; the message stays in the queue then.
bool MessageLoop::DeliverMessage() {
  if (!host_.App().HasMessages()) return false;
  bool hasBegun = false;
  RunInUnit(Access::kWrite, [&] {
    hasBegun = true;
    host_.App().DeliverNextMessage();
  });
  return hasBegun;
}

// A timer's procedure queues what it has to write, so that it never waits for another program.
bool MessageLoop::FireTimers() {
  return events_.RunDue([this](const Task& procedure, platform::LoopEvents::Due due) {
    if (due == platform::LoopEvents::Due::kTimer) TellTimer();
    RunInUnit(Access::kRead, procedure);
  });
}

// The timer's procedure runs, whether or not it can be told.
void MessageLoop::TellTimer() {
  try {
    if (onTimer_) onTimer_();
  } catch (const std::exception& error) {
    Report(error.what());
  }
}

void MessageLoop::RunInUnit(Access access, const Task& work) {
  try {
    host_.Request(access, work);
  } catch (const std::exception& error) {
    Report(error.what());
  }
}

void MessageLoop::Report(const char* what) {
  Util::Ops::MessageFunctor(host_.Log(), Util::Ops::Level::kError, Util::Ops::EventType::kDiagnostic, "standalone",
                            __LINE__, "MessageLoop::Run", kSignature)("HOST:: work of the loop failed: %s", what);
  if (onFailure_) onFailure_(what);
}

}  // namespace standalone
