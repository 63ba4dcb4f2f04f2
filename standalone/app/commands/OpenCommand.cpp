#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/CarriedTexts.h"
#include "standalone/app/Dialogue.h"
#include "standalone/app/ExitCode.h"
#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/LettersBeside.h"
#include "standalone/app/PluginScreens.h"
#include "standalone/app/Seconds.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/LineCutter.h"
#include "standalone/app/terminal/Screen.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/app/terminal/Termination.h"
#include "standalone/app/terminal/TypedLines.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/KeptOpen.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using standalone::Shown;

struct OpenOptions {
  std::string file;
  std::optional<std::string> answer;
  std::optional<std::string> every;
};

constexpr std::chrono::seconds kLettersAtLast{30};

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

// The trace comes as it happens.
desk::CompanyOptions HowToStayOpen(Invocation& invocation, const std::string& file, bool& isOnlyRead) {
  desk::CompanyOptions options = HowToOpen(invocation, file);
  // How it ends is told of the company that is closed, whatever was saved while it was open.
  options.onSaved = {};
  options.onOpened = [&isOnlyRead, tell = std::move(options.onOpened)](const desk::Opening& opening) {
    isOnlyRead = opening.onlyRead.has_value();
    tell(opening);
  };
  if (invocation.options.trace) {
    options.onLogLine = [json = invocation.options.json](const desk::NewLogLine& line) {
      PrintError(TraceText(line, json));
    };
  }
  return options;
}

// Tells at a terminal what happens while a company stays open, until it is told to close it.
class OpenCompany {
 public:
  // `every` is how often letters are carried.
  OpenCompany(Invocation& invocation, std::string file, std::optional<bool> answer, std::chrono::seconds every);
  OpenCompany(const OpenCompany&) = delete;
  OpenCompany& operator=(const OpenCompany&) = delete;
  ~OpenCompany() = default;

  // Returns when the company is closed. Throws std::runtime_error when work failed meanwhile.
  void Run();

 private:
  desk::Person Person();
  desk::DayEvents Events();
  void TellOpened();
  void OnArmed(std::chrono::seconds delay, const standalone::DayAndTime& due);
  void OnDelivery(desk::Delivery delivery);
  void OnNoReminder();
  void OnFailure(std::string_view what);
  void OnLongLine();
  void OnEnd(TerminationCause cause);
  void OnCarried(CarriedBeside carried);
  void TellCarried();

  Invocation& invocation_;
  std::string file_;
  std::chrono::seconds every_;
  bool isOnlyRead_ = false;
  Screen screen_;
  TypedLines typed_;
  desk::Company company_;
  Dialogue dialogue_;
  desk::KeptOpen open_;
  std::mutex mutex_;
  std::vector<CarriedBeside> carried_;  // and not told yet
  bool failed_ = false;
  std::atomic<TerminationCause> cause_ = TerminationCause::kEndOfInput;
};

OpenCompany::OpenCompany(Invocation& invocation, std::string file, std::optional<bool> answer,
                         std::chrono::seconds every)
    : invocation_(invocation),
      file_(std::move(file)),
      every_(every),
      screen_(ScreenFor(invocation)),
      company_(FilePath(file_), HowToStayOpen(invocation, file_, isOnlyRead_)),
      dialogue_(screen_, "reminder-shown", answer,
                screen_.IsForPeople() && InputComesFromATerminal()
                    ? [this](const std::string& prompt) { return typed_.AnswerTo([&] { ShowPrompt(prompt); }); }
                    : ReadLine()),
      open_(company_, Person(), Events()) {}

desk::Person OpenCompany::Person() {
  return {.answer = [this](const desk::Question& question) { return dialogue_.Answer(question); },
          .show =
              [this](std::string_view url, const desk::PluginScreen& shown) {
                ShowPluginScreen(screen_, file_, url, shown);
              }};
}

desk::DayEvents OpenCompany::Events() {
  return {
      .onDelivered = [this](desk::Delivery delivery) { OnDelivery(delivery); },
      .onReminderArmed = [this](std::chrono::seconds delay, const standalone::DayAndTime& due) { OnArmed(delay, due); },
      .onReminderDue = [this] { screen_.Tell({{"event", "timer-elapsed"}}, "The reminder's time has come.\n"); },
      .onNoReminder = [this] { OnNoReminder(); },
      .onFailure =
          [this](std::string_view what) {
            OnFailure(what);
          }};
}

void OpenCompany::Run() {
  TerminationHandlers handlers;
  handlers.onLine = [this](std::string line) {
    typed_.Put(std::move(line));
  };
  handlers.onLongLine = [this] {
    OnLongLine();
  };
  handlers.onEnd = [this](TerminationCause cause) {
    OnEnd(cause);
  };
  const Termination termination(std::move(handlers));
  TellOpened();
  std::optional<LettersBeside> letters;
  // Where a company on a share is worked on, nobody else may have it open.
  if (!isOnlyRead_ && !invocation_.options.networkShare) {
    letters.emplace(invocation_.options, file_, every_,
                    [this](CarriedBeside carried) { OnCarried(std::move(carried)); });
  }
  open_.Run();
  const char* const cause = CauseText(cause_);
  screen_.Tell({{"event", "closing"}, {"cause", cause}}, fmt::format("Closing {}: {}.\n", Shown(file_), cause));
  open_.Close();
  if (letters) letters->CarryAtLast(kLettersAtLast);
  TellCarried();
  screen_.Tell({{"event", "closed"}, {"file", file_}}, fmt::format("Closed {}.\n", Shown(file_)));
  if (failed_) throw std::runtime_error("not all went well while the company was open; see what was said meanwhile");
}

void OpenCompany::TellOpened() {
  const std::string& user = company_.UserName();
  const bool hasBridge = company_.HasBridge();
  screen_.Tell({{"event", "opened"}, {"file", file_}, {"user", user}, {"bridge", hasBridge}},
               fmt::format("Opened {} for {}; Ctrl-C or the end of input closes it.\n{}", Shown(file_), Shown(user),
                           hasBridge ? "" : "The bridge library is not beside the program, so no reminder comes.\n"));
}

void OpenCompany::OnArmed(std::chrono::seconds delay, const standalone::DayAndTime& due) {
  screen_.Tell(
      {{"event", "timer-armed"}, {"seconds", delay.count()}},
      fmt::format("The reminder comes in {}, at {}.\n", SecondsText(delay), standalone::FormatDayAndTime(due, ' ')));
}

void OpenCompany::OnDelivery(desk::Delivery delivery) {
  const bool isFirst = delivery == desk::Delivery::kScheduler;
  screen_.Tell({{"event", "message-delivered"}, {"message", isFirst ? "MultiEntityScheduler" : "MESchedulerUIPrompt"}},
               isFirst ? "The scheduler's message was delivered.\n" : "The reminder's message was delivered.\n");
}

// Programs see it from what is missing between the events.
void OpenCompany::OnNoReminder() {
  if (!screen_.IsForPeople()) return;
  Print(fmt::format("No reminder comes; multientity reminder show {} tells why.\n", Shown(file_)));
  FinishPrinting();
}

void OpenCompany::OnFailure(std::string_view what) {
  failed_ = true;
  PrintError(invocation_.options.json ? JsonText({{"error", {{"exit", kExitNotDone}, {"message", what}}}})
                                      : fmt::format("multientity: {}\n", Shown(what)));
}

// On the thread that carries.
void OpenCompany::OnCarried(CarriedBeside carried) {
  {
    const std::lock_guard lock(mutex_);
    carried_.push_back(std::move(carried));
  }
  open_.Post([this] { TellCarried(); });
}

void OpenCompany::TellCarried() {
  std::vector<CarriedBeside> all;
  {
    const std::lock_guard lock(mutex_);
    all.swap(carried_);
  }
  for (const CarriedBeside& carried : all) {
    std::string text;
    for (const Json& partner : carried.partners) text += CarriedText(partner, file_);
    if (!carried.partners.empty()) screen_.Tell({{"event", "letters-carried"}, {"partners", carried.partners}}, text);
    if (carried.failure.empty()) continue;
    screen_.Tell({{"event", "letters-not-carried"}, {"message", carried.failure}},
                 fmt::format("Letters were not carried: {}\n", Shown(carried.failure)));
  }
}

// On the watching thread.
void OpenCompany::OnLongLine() {
  const std::string what =
      fmt::format("a line of standard input has more than {} bytes; it is passed over", kLongestTypedLine);
  PrintError(invocation_.options.json ? JsonText({{"note", {{"message", what}}}}) : fmt::format("note: {}\n", what));
}

// On the watching thread.
void OpenCompany::OnEnd(TerminationCause cause) {
  cause_ = cause;
  typed_.End();
  open_.Quit();
}

void Open(Invocation& invocation, const OpenOptions& options) {
  const std::optional<bool> answer = GivenAnswer(options.answer);
  OpenCompany(invocation, options.file, answer, HowOften(options.every)).Run();
}

}  // namespace

void AddOpen(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<OpenOptions>();
  CLI::App& command = AddFileCommand(
      program, "open",
      "Keep a company open: the daily reminder of intercompany work is shown when it is due, and letters are carried,\n"
      "until the end of input, Ctrl-C or a request to terminate closes it. With --json, one event per line",
      "open alder.company", options->file);
  AddAnswerOption(command, options->answer);
  command.add_option("--every", options->every, "Carry letters so many seconds after each run; 60 when left out");
  invocation.When(command, [options](Invocation& run) { Open(run, *options); });
}

}  // namespace app
