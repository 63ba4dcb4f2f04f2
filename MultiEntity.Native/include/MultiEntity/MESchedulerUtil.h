#pragma once

#include <cstdint>
#include <string>

#include "MultiEntity/Export.h"
#include "MultiEntityHost/DateType32.h"

// SYSTEMTIME and the window that a timer procedure is told, as the Windows headers have them.
struct _SYSTEMTIME;
struct HWND__;

// The daily intercompany reminder: when it is due and the one timer that waits for it. Everything runs on the host's
// user-interface thread. Today and now are the local clock's.
class MESchedulerUtil {
 public:
  // The least delay in seconds before the reminder may come after the timer is armed; 900 unless configured remotely.
  MULTIENTITY_API static std::uint32_t GetDelayInSecondsFromDCE();

  // The hour of the local day at which the reminder comes; 10 unless configured remotely, and not held to 0 to 23.
  MULTIENTITY_API static std::uint32_t GetHoursToLaunchFromDCE();

  // The day that the company file remembers for the next reminder, or today. Throws as StringToDate() when the
  // remembered text cannot be read.
  MULTIENTITY_API static DateType32 GetNextSchedulerTimeFromPrefDb();

  // Remembers the day of the next reminder: today while the launch hour is still ahead, otherwise tomorrow. Catches the
  // host's exceptions.
  MULTIENTITY_API static void SetNextSchedulerTimeToPrefDb();

  // Seconds from now to the launch hour of the remembered day, a past day counting as today; 0 when today's launch hour
  // has come. Throws as StringToDate().
  MULTIENTITY_API static std::uint32_t GetSchedulerLaunchDelayInSeconds();

  // A date as YYYYMMDD, the year unpadded, and back. Reading throws std::invalid_argument where a field has no digits
  // and std::out_of_range where the text ends before it; the fields' values are not checked.
  MULTIENTITY_API static std::string DateToString(DateType32 date);
  MULTIENTITY_API static DateType32 StringToDate(std::string text);

  MULTIENTITY_API static DateType32 SystemTimeToDate(_SYSTEMTIME time);

  // Whether the host is in a state in which the reminder may use the company database.
  MULTIENTITY_API static bool CanProcessSchedulerMsg();

  // Arms the timer, after disarming one that is armed. Catches the host's exceptions and then leaves it disarmed.
  MULTIENTITY_API static void StartScheduler();

  // The timer's procedure, as Windows calls it: disarms it and queues the reminder. No argument is looked at.
  MULTIENTITY_API static void OnTimerElapsed(HWND__* window, std::uint32_t message, std::uintptr_t timer,
                                             unsigned long ticks);

  // Disarms the timer if it is armed.
  MULTIENTITY_API static void KillAnyExistingScheduler();

 private:
  friend struct MultiEntityPrivateAccess;

  // Whether the launch hour is still ahead today. Despite its name it does not look at the launch date.
  MULTIENTITY_API static bool IsTimerLaunchDateToday();
};
