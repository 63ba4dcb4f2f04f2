#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/Preferences.h"
#include "platform/Clock.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Times.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct Reminder {
  bool comes = false;
  std::string why;
  std::optional<std::string> rememberedDay;  // as the company file has it
  std::optional<DateType32> day;
  std::optional<std::uint32_t> delayInSeconds;
};

// Why the company needs no reminder, tested in the order in which it is decided; empty when it needs one.
std::string WhyNotNeeded(Company& company) {
  if (!MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    return "the multi-entity feature is switched off";
  }
  const standalone::Settings settings = company.Host().Settings().Get();
  if (settings.sampleFile) return "this is a sample file";
  if (settings.accountantsCopy) return "this is an accountant's copy";
  if (settings.multiCurrency) return "the company keeps several currencies";
  if (!MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureJournalEntries)) {
    return "this user is no administrator and no accountant and may not create journal entries";
  }
  std::vector<DBMultiEntityRelation> relations;
  if (MultiEntityDriver::GetRelationsList(relations) != MEStatusSuccess) return "the relations could not be read";
  return relations.empty() ? "there is no relation with a partner company" : "";
}

std::string WhyThen(DateType32 today, DateType32 day, std::uint32_t launchDelay, std::uint32_t leastDelay) {
  const std::string launch = fmt::format("{:02}:00 {}", MESchedulerUtil::GetHoursToLaunchFromDCE(),
                                         day.Compare(today) > 0 ? "on " + standalone::FormatIsoDate(day) : "today");
  const std::string passed = day.Compare(today) < 0 ? ", as which a day in the past counts," : "";
  if (launchDelay >= leastDelay) return fmt::format("{}{} is still ahead", launch, passed);
  if (launchDelay == 0) {
    return fmt::format("{}{} has passed, so the least delay of {} counts", launch, passed, SecondsText(leastDelay));
  }
  return fmt::format("{}{} comes before the least delay of {} is over", launch, passed, SecondsText(leastDelay));
}

// The module raises an error when the day that the file remembers cannot be read as one; then no reminder comes.
void FillTiming(Company& company, Reminder& reminder) {
  try {
    reminder.day = MESchedulerUtil::GetNextSchedulerTimeFromPrefDb();
    if (!reminder.comes) return;
    const std::uint32_t launchDelay = MESchedulerUtil::GetSchedulerLaunchDelayInSeconds();
    const std::uint32_t leastDelay = MESchedulerUtil::GetDelayInSecondsFromDCE();
    reminder.delayInSeconds = std::max(launchDelay, leastDelay);
    reminder.why = WhyThen(platform::Today(company.Host().Clock()), *reminder.day, launchDelay, leastDelay);
  } catch (const std::logic_error&) {
    if (!reminder.comes) return;
    reminder.comes = false;
    reminder.why = fmt::format("the company file remembers {} as the day of the next reminder, which is no day",
                               standalone::Quoted(reminder.rememberedDay.value_or("")));
  }
}

Reminder Find(Company& company) {
  Reminder reminder;
  reminder.rememberedDay = company.Host().Preferences().Find(kLaunchDatePreference);
  reminder.why = WhyNotNeeded(company);
  reminder.comes = reminder.why.empty();
  FillTiming(company, reminder);
  return reminder;
}

std::string DayText(const Reminder& reminder) {
  if (!reminder.day) return "none";
  return standalone::FormatIsoDate(*reminder.day) +
         (reminder.rememberedDay ? "" : " (today, as the company file remembers no day)");
}

void ShowReminder(Invocation& invocation, const std::string& file) {
  Company company(invocation, file);
  const Reminder reminder = company.Read([&] { return Find(company); });
  Json json = {{"comes", reminder.comes}, {"why", reminder.why},
               {"launchDate", nullptr},   {"remembered", reminder.rememberedDay.has_value()},
               {"delaySeconds", nullptr}, {"dueAt", nullptr}};
  std::string delay = "none";
  if (reminder.day) json["launchDate"] = standalone::FormatIsoDate(*reminder.day);
  if (reminder.delayInSeconds) {
    const std::string due = LocalTimeAfter(company.Host().Clock(), *reminder.delayInSeconds);
    json["delaySeconds"] = *reminder.delayInSeconds;
    json["dueAt"] = due;
    delay = fmt::format("{}, until {}", SecondsText(*reminder.delayInSeconds), due);
  }
  invocation.Report(json, fmt::format("Reminder:   {}\nLaunch day: {}\nDelay:      {}\nWhy:        {}\n",
                                      reminder.comes ? "comes while the company is open" : "does not come",
                                      DayText(reminder), delay, reminder.why));
}

}  // namespace

void AddReminder(CLI::App& program, Invocation& invocation) {
  CLI::App& reminder = *program.add_subcommand("reminder", "The daily reminder of intercompany work");
  reminder.require_subcommand(1);
  reminder.footer("Example:\n  multientity reminder show alder.company");
  const auto file = std::make_shared<std::string>();
  CLI::App& show = AddFileCommand(reminder, "show",
                                  "Tell on which day the reminder comes next, after how many seconds it would come if "
                                  "the company were opened now, and why",
                                  "reminder show alder.company", *file);
  invocation.When(show, [file](Invocation& run) { ShowReminder(run, *file); });
}

}  // namespace app
