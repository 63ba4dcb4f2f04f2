#include "standalone/desk/Reminder.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Preferences.h"
#include "standalone/books/PreferenceTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/ReminderTimer.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

// The module answers only by arming a timer or not; this explains it. A test holds both against each other, for all of
// what counts.
std::optional<NoReminder> ObstacleFor(Work& work) {
  if (!work.Attached().HasBridge()) return NoReminder::kNoBridge;
  if (!MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    return NoReminder::kFeatureIsOff;
  }
  const standalone::Settings settings = work.Host().Settings().Get();
  if (settings.sampleFile) return NoReminder::kSampleFile;
  if (settings.accountantsCopy) return NoReminder::kAccountantsCopy;
  if (settings.multiCurrency) return NoReminder::kSeveralCurrencies;
  if (!MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureJournalEntries)) {
    return NoReminder::kNoRight;
  }
  std::vector<DBMultiEntityRelation> relations;
  if (MultiEntityDriver::GetRelationsList(relations) != MEStatusSuccess) return NoReminder::kRelationsNotRead;
  if (relations.empty()) return NoReminder::kNoRelation;
  return std::nullopt;
}

std::chrono::seconds ByTheCalendar(const standalone::DayAndTime& now, DateType32 launchDay, std::uint32_t launchHour) {
  return std::chrono::days(DateMinusDate(launchDay, now.day)) + std::chrono::hours(launchHour) - now.sinceMidnight;
}

ReminderTiming TimingOf(Work& work, DateType32 launchDay) {
  platform::Clock& clock = work.Host().Clock();
  const standalone::DayAndTime now = LocalTimeAfter(clock, {});
  const int fromToday = launchDay.Compare(now.day);
  ReminderTiming timing;
  timing.launchHour = MESchedulerUtil::GetHoursToLaunchFromDCE();
  timing.isLaunchDayAhead = fromToday > 0;
  timing.isLaunchDayPast = fromToday < 0;
  const std::uint32_t counted = MESchedulerUtil::GetSchedulerLaunchDelayInSeconds();
  const std::uint32_t least = MESchedulerUtil::GetDelayInSecondsFromDCE();
  timing.untilLaunch =
      SecondsCountedAs(counted, ByTheCalendar(now, timing.isLaunchDayAhead ? launchDay : now.day, timing.launchHour));
  timing.leastDelay = std::chrono::seconds(least);
  timing.delay = std::chrono::floor<std::chrono::seconds>(ReminderPeriod(std::max(counted, least)));
  timing.comesEarly = timing.delay < std::max(timing.untilLaunch, timing.leastDelay);
  timing.due = LocalTimeAfter(clock, timing.delay);
  return timing;
}

// None when what the file remembers cannot be read as a day; the module raises an error then and arms no timer.
std::optional<DateType32> LaunchDay() {
  try {
    return MESchedulerUtil::GetNextSchedulerTimeFromPrefDb();
  } catch (const std::logic_error&) {
    return std::nullopt;
  }
}

}  // namespace

Reminder ShowReminder(Company& company) {
  Work work(company.Opened(), UseCase::kShowReminder);
  return work.Read([&] {
    Reminder reminder;
    reminder.rememberedDay = work.Host().Preferences().Find(kLaunchDatePreference);
    reminder.obstacle = ObstacleFor(work);
    reminder.launchDay = LaunchDay();
    reminder.waiting = work.Host().Pending().Count();
    if (reminder.obstacle) return reminder;
    if (reminder.launchDay) {
      reminder.timing = TimingOf(work, *reminder.launchDay);
    } else {
      reminder.obstacle = NoReminder::kRememberedDayIsNone;
    }
    return reminder;
  });
}

ReminderReset ResetReminder(Company& company) {
  Work work(company.Opened(), UseCase::kResetReminder);
  return work.WriteAsAdministrator("a change of the day of the next reminder", [&] {
    standalone::PreferenceTable& preferences = work.Host().Preferences();
    ReminderReset reset{.before = preferences.Find(kLaunchDatePreference), .launchDay = {}};
    if (reset.before) {
      preferences.Forget(kLaunchDatePreference);
      work.Host().Record(DeedOf("reminder.reset", "the next reminder", {{"day", *reset.before}}, {}));
    }
    reset.launchDay = MESchedulerUtil::GetNextSchedulerTimeFromPrefDb();
    return reset;
  });
}

}  // namespace desk
