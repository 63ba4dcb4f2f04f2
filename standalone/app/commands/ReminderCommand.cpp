#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Seconds.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Reminder.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

std::string WhyNot(const desk::Reminder& reminder) {
  using desk::NoReminder;
  switch (*reminder.obstacle) {
    case NoReminder::kNoBridge:
      return "the bridge library is not beside the program";
    case NoReminder::kFeatureIsOff:
      return "the multi-entity feature is switched off";
    case NoReminder::kSampleFile:
      return "this is a sample file";
    case NoReminder::kAccountantsCopy:
      return "this is an accountant's copy";
    case NoReminder::kSeveralCurrencies:
      return "the company keeps several currencies";
    case NoReminder::kNoRight:
      return "this user is no administrator and no accountant and may not create journal entries";
    case NoReminder::kRelationsNotRead:
      return "the relations could not be read";
    case NoReminder::kNoRelation:
      return "there is no relation with a partner company";
    case NoReminder::kRememberedDayIsNone:
      break;
  }
  return fmt::format("the company file remembers {} as the day of the next reminder, which is no day",
                     standalone::Quoted(reminder.rememberedDay.value_or("")));
}

std::string WhyThen(DateType32 launchDay, const desk::ReminderTiming& timing) {
  const std::string launch =
      fmt::format("{:02}:00 {}", timing.launchHour,
                  timing.isLaunchDayAhead ? "on " + standalone::FormatIsoDate(launchDay) : "today");
  const std::string passed = timing.isLaunchDayPast ? ", as which a day in the past counts," : "";
  const std::string least = SecondsText(timing.leastDelay);
  if (timing.comesEarly) {
    return timing.untilLaunch >= timing.leastDelay
               ? fmt::format("{}{} lies further ahead than a timer can wait, so the reminder comes earlier", launch,
                             passed)
               : fmt::format("a timer cannot wait for the least delay of {}, so the reminder comes earlier", least);
  }
  if (timing.untilLaunch >= timing.leastDelay) return fmt::format("{}{} is still ahead", launch, passed);
  if (timing.untilLaunch == std::chrono::seconds::zero()) {
    return fmt::format("{}{} has passed, so the least delay of {} counts", launch, passed, least);
  }
  return fmt::format("{}{} comes before the least delay of {} is over", launch, passed, least);
}

std::string DayText(const desk::Reminder& reminder) {
  if (!reminder.launchDay) return "none";
  return standalone::FormatIsoDate(*reminder.launchDay) +
         (reminder.rememberedDay ? "" : " (today, as the company file remembers no day)");
}

std::string WaitingText(const desk::Reminder& reminder) {
  const std::string waiting = standalone::WaitingText(reminder.waiting);
  return waiting.empty() ? "nothing" : waiting;
}

std::string DelayText(const desk::Reminder& reminder) {
  if (!reminder.timing) return "none";
  return fmt::format("{}, until {}", SecondsText(reminder.timing->delay),
                     standalone::FormatDayAndTime(reminder.timing->due, ' '));
}

void ShowReminder(Invocation& invocation, const std::string& file) {
  desk::Company company(FilePath(file), HowToOpen(invocation, file));
  const desk::Reminder reminder = desk::ShowReminder(company);
  invocation.Report(desk::JsonOf(reminder),
                    fmt::format("Reminder:   {}\nLaunch day: {}\nDelay:      {}\nWhy:        {}\nWaiting:    {}\n",
                                reminder.obstacle ? "does not come" : "comes while the company is open",
                                DayText(reminder), DelayText(reminder),
                                reminder.obstacle ? WhyNot(reminder) : WhyThen(*reminder.launchDay, *reminder.timing),
                                WaitingText(reminder)));
}

std::string ResetText(const desk::ReminderReset& reset) {
  const std::string now = "today, " + standalone::FormatIsoDate(reset.launchDay) + ", counts as the launch day";
  if (!reset.before) return fmt::format("The company file remembered no day of the next reminder; {}.\n", now);
  return fmt::format("The company file remembered {} as the day of the next reminder and has forgotten it; {}.\n",
                     standalone::Quoted(*reset.before), now);
}

void ResetReminder(Invocation& invocation, const std::string& file) {
  desk::Company company(FilePath(file), HowToOpen(invocation, file));
  const desk::ReminderReset reset = desk::ResetReminder(company);
  invocation.Report(desk::JsonOf(reset), ResetText(reset));
}

}  // namespace

void AddReminder(CLI::App& program, Invocation& invocation) {
  CLI::App& reminder =
      AddGroup(program, "reminder", "The daily reminder of intercompany work", "reminder show alder.company");
  const auto file = std::make_shared<std::string>();
  CLI::App& show = AddFileCommand(reminder, "show",
                                  "Tell on which day the reminder comes next, after how many seconds it would come if "
                                  "the company were opened now, and why",
                                  "reminder show alder.company", *file);
  invocation.When(show, [file](Invocation& run) { ShowReminder(run, *file); });

  CLI::App& reset = AddFileCommand(reminder, "reset",
                                   "Have the company file forget the day of the next reminder, so that today counts; "
                                   "for administrators",
                                   "reminder reset alder.company", *file);
  invocation.When(reset, [file](Invocation& run) { ResetReminder(run, *file); });
}

}  // namespace app
