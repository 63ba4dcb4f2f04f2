#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityScheduler.h"
#include "standalone/app/Company.h"
#include "standalone/app/Dialogue.h"
#include "standalone/app/Failure.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/PluginViews.h"
#include "standalone/app/Times.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/Screen.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/app/terminal/Termination.h"
#include "standalone/app/terminal/TypedLines.h"

namespace app {

namespace {

struct OpenOptions {
  std::string file;
  std::optional<std::string> answer;
};

Screen ScreenFor(const Invocation& invocation) {
  if (!invocation.options.json) return Screen();
  return Screen([](const Json& event) {
    Print(JsonLine(event));
    FinishPrinting();
  });
}

const char* CauseText(TerminationCause cause) noexcept {
  switch (cause) {
    case TerminationCause::kEndOfInput:
      return "end of input";
    case TerminationCause::kInterrupt:
      return "interrupt";
    case TerminationCause::kTerminate:
      return "termination";
  }
  return "end";
}

// A company that stays open, like the window of a desktop application, until it is told to close.
class OpenCompany {
 public:
  OpenCompany(Invocation& invocation, std::string file, std::optional<bool> answer);
  OpenCompany(const OpenCompany&) = delete;
  OpenCompany& operator=(const OpenCompany&) = delete;
  ~OpenCompany() = default;

  // Returns when the company is closed. Throws std::runtime_error when work failed meanwhile.
  void Run();

 private:
  void ListenToTheHost();
  void TellOpened();
  void OnLogLine(const Util::Ops::Line& line);
  void OnArmed(std::chrono::milliseconds period);
  void OnTimerDue();
  void OnDelivery(const AppMsg& message);
  void TellIfNotArmed();
  void OnFailure(std::string_view what);
  void OnEnd(TerminationCause cause);

  Invocation& invocation_;
  std::string file_;
  Screen screen_;
  TypedLines typed_;
  Company company_;
  Dialogue dialogue_;
  bool armed_ = false;
  bool failed_ = false;
  std::atomic<TerminationCause> cause_ = TerminationCause::kEndOfInput;
};

OpenCompany::OpenCompany(Invocation& invocation, std::string file, std::optional<bool> answer)
    : invocation_(invocation),
      file_(std::move(file)),
      screen_(ScreenFor(invocation)),
      company_(invocation, file_),
      dialogue_(screen_, "reminder-shown", answer,
                screen_.IsForPeople() && InputComesFromATerminal()
                    ? [this](const std::string& prompt) { return typed_.AnswerTo([&] { ShowPrompt(prompt); }); }
                    : ReadLine()) {
  ListenToTheHost();
}

void OpenCompany::ListenToTheHost() {
  standalone::StandaloneHost& host = company_.Host();
  host.Log().SetObserver([this](const Util::Ops::Line& line) { OnLogLine(line); });
  host.SetTimerObserver({.onArmed = [this](std::chrono::milliseconds period) { OnArmed(period); },
                         .onDue =
                             [this] {
                               OnTimerDue();
                             }});
  host.App().SetMessageObserver([this](const AppMsg& message) { OnDelivery(message); });
  host.App().SetCommandRunner(
      [this](standalone::PluginView view, std::string_view url) { ShowPluginView(company_, screen_, view, url); });
  host.MessageBoxes().SetAnswerer([this](const standalone::Question& question) { return dialogue_.Answer(question); });
  host.Loop().SetFailureHandler([this](std::string_view what) { OnFailure(what); });
}

void OpenCompany::Run() {
  TerminationHandlers handlers;
  handlers.onLine = [this](std::string line) {
    typed_.Put(std::move(line));
  };
  handlers.onEnd = [this](TerminationCause cause) {
    OnEnd(cause);
  };
  const Termination termination(std::move(handlers));
  TellOpened();
  company_.Attached().QueueReminder();
  company_.Host().Loop().Run();
  const char* const cause = CauseText(cause_);
  screen_.Tell({{"event", "closing"}, {"cause", cause}}, fmt::format("Closing {}: {}.\n", file_, cause));
  company_.Host().App().Close();
  screen_.Tell({{"event", "closed"}, {"file", file_}}, fmt::format("Closed {}.\n", file_));
  if (failed_) throw std::runtime_error("not all went well while the company was open; see what was said meanwhile");
}

void OpenCompany::TellOpened() {
  const std::string& user = company_.Host().CurrentUser().name;
  const bool hasBridge = company_.Attached().HasBridge();
  screen_.Tell({{"event", "opened"}, {"file", file_}, {"user", user}, {"bridge", hasBridge}},
               fmt::format("Opened {} for {}; Ctrl-C or the end of input closes it.\n{}", file_, user,
                           hasBridge ? "" : "The bridge library is not beside the program, so no reminder comes.\n"));
}

void OpenCompany::OnLogLine(const Util::Ops::Line& line) {
  if (invocation_.options.trace) PrintError(TraceText(TraceLineOf(line), invocation_.options.json));
}

void OpenCompany::OnArmed(std::chrono::milliseconds period) {
  armed_ = true;
  const auto seconds = static_cast<std::uint32_t>(std::chrono::floor<std::chrono::seconds>(period).count());
  screen_.Tell({{"event", "timer-armed"}, {"seconds", seconds}},
               fmt::format("The reminder comes in {}, at {}.\n", SecondsText(seconds),
                           LocalTimeAfter(company_.Host().Clock(), seconds)));
}

void OpenCompany::OnTimerDue() {
  armed_ = false;
  screen_.Tell({{"event", "timer-elapsed"}}, "The reminder's time has come.\n");
}

void OpenCompany::OnDelivery(const AppMsg& message) {
  const bool isFirst = dynamic_cast<const MultiEntityScheduler*>(&message) != nullptr;
  screen_.Tell({{"event", "message-delivered"}, {"message", isFirst ? "MultiEntityScheduler" : "MESchedulerUIPrompt"}},
               isFirst ? "The scheduler's message was delivered.\n" : "The reminder's message was delivered.\n");
  if (isFirst) company_.Host().Loop().Post([this] { TellIfNotArmed(); });
}

// Programs see it from what is missing between the events.
void OpenCompany::TellIfNotArmed() {
  if (armed_ || !screen_.IsForPeople()) return;
  Print(fmt::format("No reminder comes; multientity reminder show {} tells why.\n", file_));
  FinishPrinting();
}

void OpenCompany::OnFailure(std::string_view what) {
  failed_ = true;
  PrintError(invocation_.options.json ? JsonText({{"error", {{"exit", kExitNotDone}, {"message", what}}}})
                                      : fmt::format("multientity: {}\n", what));
}

// On the watching thread.
void OpenCompany::OnEnd(TerminationCause cause) {
  cause_ = cause;
  typed_.End();
  company_.Host().Loop().Quit();
}

void Open(Invocation& invocation, const OpenOptions& options) {
  const std::optional<bool> answer = GivenAnswer(options.answer);
  OpenCompany(invocation, options.file, answer).Run();
}

}  // namespace

void AddOpen(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<OpenOptions>();
  CLI::App& command = AddFileCommand(
      program, "open",
      "Keep a company open: the daily reminder of intercompany work is armed and shown when it is due, until the end\n"
      "of input, Ctrl-C or a request to terminate closes the company. With --json, one event per line",
      "open alder.company", options->file);
  AddAnswerOption(command, options->answer);
  invocation.When(command, [options](Invocation& run) { Open(run, *options); });
}

}  // namespace app
