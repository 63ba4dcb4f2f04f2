#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Frame/ActiveFile.h"
#include "Frame/Operations.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "platform/SystemTime.h"

namespace {

constexpr std::uint32_t kDefaultDelayInSeconds = 900;
constexpr std::uint32_t kDefaultLaunchHour = 10;

constexpr std::size_t kYearAt = 0;
constexpr std::size_t kYearLength = 4;
constexpr std::size_t kMonthAt = 4;
constexpr std::size_t kDayAt = 6;
constexpr std::size_t kFieldLength = 2;

// In decimal, with a leading zero below 10.
std::string TwoDigits(int number) {
  std::string digits = std::to_string(number);
  if (number < 10) digits.insert(digits.begin(), '0');
  return digits;
}

// A number as the runtime's own conversions read it: white space, a sign, digits; the rest is ignored.
struct Number {
  bool negative = false;
  std::string_view digits;
};

Number SplitNumber(std::string_view text) noexcept {
  Number number;
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  if (text.starts_with('-') || text.starts_with('+')) {
    number.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  number.digits = text.substr(0, text.find_first_not_of("0123456789"));
  return number;
}

// The runtimes differ in the width of unsigned long and in the words of their errors; the remote values mean the same
// everywhere.
std::uint32_t ToUnsignedLong(std::string_view text) {
  const Number number = SplitNumber(text);
  if (number.digits.empty()) throw std::invalid_argument("invalid stoul argument");
  std::uint64_t value = 0;
  for (const char digit : number.digits) {
    value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    if (value > std::numeric_limits<std::uint32_t>::max()) throw std::out_of_range("stoul argument out of range");
  }
  const auto magnitude = static_cast<std::uint32_t>(value);
  return number.negative ? 0U - magnitude : magnitude;
}

// A date's field of at most four characters, which cannot go out of an int's range.
int ToInt(std::string_view field) {
  const Number number = SplitNumber(field);
  if (number.digits.empty()) throw std::invalid_argument("invalid stoi argument");
  int value = 0;
  for (const char digit : number.digits) value = value * 10 + (digit - '0');
  return number.negative ? -value : value;
}

std::string_view Field(std::string_view text, std::size_t at) {
  if (at >= text.size()) throw std::out_of_range("invalid string position");
  return text.substr(at, kFieldLength);
}

SYSTEMTIME LocalTime() {
  SYSTEMTIME now{};
  Host().platform->GetLocalTime(now);
  return now;
}

DateType32 Today() {
  return MESchedulerUtil::SystemTimeToDate(LocalTime());
}

Util::TString RemoteValue(const char* key) {
  Util::TString value;
  Host().remoteValues.GetValue2(kRemoteValues, key, value);
  return value;
}

// The hour is kept for the life of the process by each of its two users on its own, so it is fetched, and logged, once
// for each. Without a host there is nothing worth keeping.
std::uint32_t HourOfTheDelay() {
  if (!IsHostAttached()) return MESchedulerUtil::GetHoursToLaunchFromDCE();
  static const std::uint32_t hour = MESchedulerUtil::GetHoursToLaunchFromDCE();
  return hour;
}

std::uint32_t HourOfTheLaunchDate() {
  if (!IsHostAttached()) return MESchedulerUtil::GetHoursToLaunchFromDCE();
  static const std::uint32_t hour = MESchedulerUtil::GetHoursToLaunchFromDCE();
  return hour;
}

}  // namespace

std::uint32_t MESchedulerUtil::GetDelayInSecondsFromDCE() {
  const OperationLog log{operations::GetDelayInSecondsFromDCE};
  log.Notice("MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE");
  try {
    const Util::TString value = RemoteValue(kInitialDelayInSeconds);
    log.Note("MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: %s",
             value.c_str());
    return value.empty() ? kDefaultDelayInSeconds : ToUnsignedLong(value.view());
  } catch (...) {
    log.Error("MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE");
    return kDefaultDelayInSeconds;
  }
}

std::uint32_t MESchedulerUtil::GetHoursToLaunchFromDCE() {
  const OperationLog log{operations::GetHoursToLaunchFromDCE};
  log.Notice("MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE");
  try {
    const Util::TString value = RemoteValue(kHoursToLaunchDay);
    log.Note("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from DCE: %s",
             value.c_str());
    return value.empty() ? kDefaultLaunchHour : ToUnsignedLong(value.view());
  } catch (...) {
    log.Error("MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE");
    return kDefaultLaunchHour;
  }
}

DateType32 MESchedulerUtil::GetNextSchedulerTimeFromPrefDb() {
  const OperationLog log{operations::GetNextSchedulerTimeFromPrefDb};
  log.Note("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db");
  if (MayUseDatabase()) {
    Util::TString text;
    if (Host().databasePreferences.GetCompanyDBPreference(kLaunchDatePreference, text).Succeeded()) {
      return StringToDate(std::string(text.view()));
    }
  }
  log.Note("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Unable to fetch next launch date from pref db");
  return Today();
}

void MESchedulerUtil::SetNextSchedulerTimeToPrefDb() {
  const OperationLog log{operations::SetNextSchedulerTimeToPrefDb};
  try {
    log.Note("MULTIENTITY::SetNextSchedulerTimeToPrefDb: Setting next launch date to pref db");
    const DateType32 today = Today();
    const DateType32 next = DateAdd(today, IsTimerLaunchDateToday() ? 0 : 1);
    if (!MayUseDatabase()) return;
    if (Host()
            .databasePreferences.SetCompanyDBPreference(kLaunchDatePreference, std::string_view(DateToString(next)))
            .Failed()) {
      log.Error("MULTIENTITY::SetNextSchedulerTimeToPrefDb: Unable to save next launch date to pref db");
    }
  } catch (...) {
    log.Error("MULTIENTITY:: Exception occured in SetNextSchedulerTimeToPrefDb API");
  }
}

// The log knows this operation as GetNextLaunchDelayInSeconds.
std::uint32_t MESchedulerUtil::GetSchedulerLaunchDelayInSeconds() {
  const OperationLog log{operations::GetSchedulerLaunchDelayInSeconds};
  const std::uint32_t hour = HourOfTheDelay();
  const DateType32 next = GetNextSchedulerTimeFromPrefDb();
  const SYSTEMTIME now = LocalTime();
  const DateType32 today = SystemTimeToDate(now);
  const std::uint32_t hourNow = now.wHour;

  std::uint32_t minutes = 0;
  if (today.Compare(next) < 0) {
    log.Note("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date in future");
    const auto days = static_cast<std::uint32_t>(DateMinusDate(next, today));
    minutes = ((days * 24U) - hourNow + hour) * 60U;
  } else {
    log.Note("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today");
    if (hour <= hourNow) return 0;
    minutes = (hour - hourNow) * 60U;
  }
  return ((minutes - now.wMinute) * 60U) - now.wSecond;
}

bool MESchedulerUtil::IsTimerLaunchDateToday() {
  const std::uint32_t hourNow = LocalTime().wHour;
  return hourNow < HourOfTheLaunchDate();
}

std::string MESchedulerUtil::DateToString(DateType32 date) {
  return std::to_string(date.GetYear()) + TwoDigits(date.GetMonth()) + TwoDigits(date.GetDay());
}

DateType32 MESchedulerUtil::StringToDate(std::string text) {
  const std::string_view digits = text;
  DateType32 date;
  date.SetYear(ToInt(digits.substr(kYearAt, kYearLength)));
  date.SetMonth(ToInt(Field(digits, kMonthAt)));
  date.SetDay(ToInt(Field(digits, kDayAt)));
  return date;
}

DateType32 MESchedulerUtil::SystemTimeToDate(SYSTEMTIME time) {
  return {time.wYear, time.wMonth, time.wDay};
}
