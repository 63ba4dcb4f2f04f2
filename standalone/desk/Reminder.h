#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "MultiEntityHost/DateType32.h"
#include "standalone/values/Dates.h"
#include "standalone/values/WaitingWork.h"

namespace desk {

class Company;

// The first that stands against the daily reminder: first of all the bridge, without which nobody is an accountant
// either, then in the order in which the module asks.
enum class NoReminder {
  kNoBridge,  // the bridge library is not beside the program
  kFeatureIsOff,
  kSampleFile,
  kAccountantsCopy,
  kSeveralCurrencies,
  kNoRight,  // the user is no administrator and no accountant and may not create journal entries
  kRelationsNotRead,
  kNoRelation,
  kRememberedDayIsNone,  // what the company remembers as the day of the next reminder is no day
};

struct ReminderTiming {
  std::uint32_t launchHour = 0;        // of the day of the launch
  bool isLaunchDayAhead = false;       // later than today
  bool isLaunchDayPast = false;        // which then counts as today
  std::chrono::seconds untilLaunch{};  // zero when it has passed
  std::chrono::seconds leastDelay{};   // after the company was opened
  std::chrono::seconds delay{};        // until the reminder comes: the longer one, unless no timer waits so long
  bool comesEarly = false;             // as no timer does
  standalone::DayAndTime due;          // local time
};

struct Reminder {
  std::optional<NoReminder> obstacle;                          // none when it comes while the company is open
  std::optional<std::string> rememberedDay;                    // as the company has it
  std::optional<DateType32> launchDay;                         // today when no day is remembered
  std::optional<ReminderTiming> timing;                        // if the company were opened now; when it comes
  standalone::WaitingWork waiting{standalone::WaitingWork()};  // of which it would tell now
};

Reminder ShowReminder(Company& company);

struct ReminderReset {
  std::optional<std::string> before;  // the day that was remembered, as the company had it
  DateType32 launchDay;               // today, as for a company that has not been reminded yet
};

// Has the company forget the day of its next reminder. For administrators. Where the company is kept open, a reminder
// that is armed already comes as it was armed.
ReminderReset ResetReminder(Company& company);

}  // namespace desk
