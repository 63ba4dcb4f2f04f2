#include <cctype>
#include <limits>
#include <stdexcept>
#include <string>

#include "model/Model.h"

namespace model {

namespace {

constexpr ResourceInstance kResources{42};
const std::string kReminderUrl = "krw:LaunchMEPlugin?context=ICT_SCHEDULER";

std::string TwoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

// A number at the start of a text, as the standard library's conversions read it: its sign and its size, which stops
// growing beyond what either conversion takes.
struct Number {
  bool negative = false;
  std::uint64_t magnitude = 0;
};

Number LeadingNumber(std::string_view text, const char* conversion) {
  std::size_t at = 0;
  while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0) ++at;
  Number number;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) number.negative = text[at++] == '-';
  const std::size_t first = at;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    if (number.magnitude <= std::numeric_limits<std::uint32_t>::max()) {
      number.magnitude = number.magnitude * 10 + static_cast<std::uint64_t>(text[at] - '0');
    }
  }
  if (at == first) throw std::invalid_argument(std::string("invalid ") + conversion + " argument");
  return number;
}

// The number in up to `width` characters from `start`.
int DateField(const std::string& text, std::size_t start, std::size_t width) {
  if (start != 0 && start >= text.size()) throw std::out_of_range("invalid string position");
  const Number number = LeadingNumber(std::string_view(text).substr(start, width), "stoi");
  const int magnitude = static_cast<int>(number.magnitude);
  return number.negative ? -magnitude : magnitude;
}

}  // namespace

std::uint32_t Model::RemoteNumber(std::string_view shortName, const char* key, std::uint32_t usual,
                                  const std::string& asking, const std::string& answered, const std::string& failed) {
  Gate(shortName, asking);
  try {
    std::string value;
    world_.GetValue2("MultiEntity", key, value);
    Trace(shortName, answered + value);
    if (value.empty()) return usual;
    const Number number = LeadingNumber(value, "stoul");
    if (number.magnitude > std::numeric_limits<std::uint32_t>::max()) {
      throw std::out_of_range("stoul argument out of range");
    }
    const auto magnitude = static_cast<std::uint32_t>(number.magnitude);
    return number.negative ? 0U - magnitude : magnitude;
  } catch (...) {
    Error(shortName, failed);
    return usual;
  }
}

std::uint32_t Model::GetDelayInSecondsFromDCE() {
  return RemoteNumber("MESchedulerUtil::GetDelayInSecondsFromDCE", "InitialDelayInSeconds", 900,
                      "MULTIENTITY::GetDelayInSecondsFromDCE: Getting initial delay for timer from DCE",
                      "MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: ",
                      "MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE");
}

std::uint32_t Model::GetHoursToLaunchFromDCE() {
  return RemoteNumber("MESchedulerUtil::GetHoursToLaunchFromDCE", "HoursToLaunchDay", 10,
                      "MULTIENTITY::GetHoursToLaunchFromDCE: Getting hours to launch for timer from DCE",
                      "MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from DCE: ",
                      "MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE");
}

DateType32 Model::SystemTimeToDate(SYSTEMTIME time) {
  DateType32 date;
  date.SetDay(time.wDay);
  date.SetMonth(time.wMonth);
  date.SetYear(time.wYear);
  return date;
}

DateType32 Model::Today() {
  return SystemTimeToDate(world_.GetLocalTime());
}

std::string Model::DateToString(DateType32 date) {
  return std::to_string(date.GetYear()) + TwoDigits(date.GetMonth()) + TwoDigits(date.GetDay());
}

DateType32 Model::StringToDate(std::string text) {
  DateType32 date;
  date.SetYear(DateField(text, 0, 4));
  date.SetMonth(DateField(text, 4, 2));
  date.SetDay(DateField(text, 6, 2));
  return date;
}

DateType32 Model::GetNextSchedulerTimeFromPrefDb() {
  const std::string name = "MESchedulerUtil::GetNextSchedulerTimeFromPrefDb";
  Trace(name, "MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db");
  if (DatabaseUsable()) {
    std::string stored;
    if (world_.GetCompanyDBPreference("MEPromptLaunchDate", stored).Succeeded()) return StringToDate(stored);
  }
  Trace(name, "MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Unable to fetch next launch date from pref db");
  return Today();
}

bool Model::IsTimerLaunchDateToday() {
  const SYSTEMTIME now = world_.GetLocalTime();
  if (!memory_.hourForToday.has_value()) memory_.hourForToday = GetHoursToLaunchFromDCE();
  return now.wHour < *memory_.hourForToday;
}

void Model::SetNextSchedulerTimeToPrefDb() {
  const std::string name = "MESchedulerUtil::SetNextSchedulerTimeToPrefDb";
  try {
    Trace(name, "MULTIENTITY::SetNextSchedulerTimeToPrefDb: Setting next launch date to pref db");
    const DateType32 today = Today();
    const DateType32 next = DateAdd(today, IsTimerLaunchDateToday() ? 0 : 1);
    if (!DatabaseUsable()) return;
    if (!world_.SetCompanyDBPreference("MEPromptLaunchDate", DateToString(next)).Succeeded()) {
      Error(name, "MULTIENTITY::SetNextSchedulerTimeToPrefDb: Unable to save next launch date to pref db");
    }
  } catch (...) {
    Error(name, "MULTIENTITY:: Exception occured in SetNextSchedulerTimeToPrefDb API");
  }
}

std::uint32_t Model::GetSchedulerLaunchDelayInSeconds() {
  const std::string name = "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds";
  if (!memory_.hourForDelay.has_value()) memory_.hourForDelay = GetHoursToLaunchFromDCE();
  const std::uint32_t hour = *memory_.hourForDelay;
  const DateType32 next = GetNextSchedulerTimeFromPrefDb();
  const SYSTEMTIME now = world_.GetLocalTime();
  const DateType32 today = SystemTimeToDate(now);
  std::uint32_t minutes = 0;
  if (today.Value() < next.Value()) {
    Trace(name, "MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date in future");
    const auto days = static_cast<std::uint32_t>(DateMinusDate(next, today));
    minutes = (days * 24U - now.wHour + hour) * 60U;
  } else {
    Trace(name, "MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today");
    if (hour <= now.wHour) return 0;
    minutes = (hour - now.wHour) * 60U;
  }
  return (minutes - now.wMinute) * 60U - now.wSecond;
}

bool Model::CanProcessSchedulerMsg() {
  if (!world_.IsServerMode(false) && world_.SystemIsOpen() && !world_.SystemIsClosing() && DatabaseUsable()) {
    return true;
  }
  Trace("MESchedulerUtil::CanProcessSchedulerMsg",
        "MULTIENTITY::System is closing or no active file manager and so skip DB operation");
  return false;
}

void Model::KillAnyExistingScheduler() {
  if (memory_.timer == 0) return;
  world_.KillTimer(memory_.timer);
  memory_.timer = 0;
}

void Model::StartScheduler() {
  const std::string name = "MESchedulerUtil::StartScheduler";
  try {
    Gate(name, "MULTIENTITY::StartTimer: Entering function");
    KillAnyExistingScheduler();
    if (!memory_.leastDelay.has_value()) memory_.leastDelay = GetDelayInSecondsFromDCE();
    std::uint32_t delay = GetSchedulerLaunchDelayInSeconds();
    if (delay < *memory_.leastDelay) delay = *memory_.leastDelay;
    Trace(name, "MULTIENTITY::StartScheduler: Starting Timer for " + std::to_string(delay) + " seconds");
    memory_.timer = static_cast<std::uint32_t>(world_.SetTimer(0, delay * 1000U));
    Gate(name, "MULTIENTITY::StartScheduler: Exiting function");
  } catch (...) {
    Error(name, "MULTIENTITY:: Exception occured in StartScheduler API");
  }
}

void Model::OnTimerElapsed() {
  Trace("MESchedulerUtil::OnTimerElapsed", "MULTIENTITY::OnTimerElapsed: Timer elapsed");
  world_.KillTimer(memory_.timer);
  memory_.timer = 0;
  world_.Enqueue(MessageKind::kPrompt);
}

void Model::MakeSchedulerMessage() {
  world_.Enqueue(MessageKind::kPrompt);
  world_.queue.back() = MessageKind::kScheduler;
}

void Model::ProcessSchedulerMessage() {
  const std::string name = "MultiEntityScheduler::ProcessMsg";
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY::MultiEntityScheduler: Feature not enabled");
    return;
  }
  if (!CanProcessSchedulerMsg()) return;
  if (world_.GetCurrentFileIsSample() || world_.GetIsAccntntCopy() != 0 || world_.GetUseMultiCurrency() ||
      !HasMEPermission(MEPermissionReceiveReminder, ProgramFeature{19})) {
    Trace(name, "MULTIENTITY::MultiEntityScheduler: ProcessMsg :: Skipping scheduler as not needed");
    return;
  }
  std::vector<DBMultiEntityRelation> rows;
  if (GetRelationsList(rows) != 1 || rows.empty()) return;
  Trace(name, "MULTIENTITY::MultiEntityScheduler: ProcessMsg ::scheduler trigger checks passed. Initiating timer");
  StartScheduler();
}

void Model::ProcessPrompt() {
  const std::string name = "MESchedulerUIPrompt::ProcessMsg";
  constexpr const char* kRoom = "Src/MultiEntityScheduler";
  if (!CanProcessSchedulerMsg()) return;
  if (!world_.LoadLibraryA("AddinBridge.DLL")) {
    Error(name, "MULTIENTITY::hBridgeDLL is null for NeedDataSyncUp");
    return;
  }
  std::int32_t attention = 4;
  try {
    if (world_.GetProcAddress("NeedDataSyncUp")) attention = world_.NeedDataSyncUp();
  } catch (...) {
    world_.FreeLibrary();
    throw;
  }
  world_.FreeLibrary();
  SetNextSchedulerTimeToPrefDb();
  StartScheduler();

  if (attention == 1 || attention == 3) {
    world_.GetKRWinInstance();
    const std::int32_t second = attention == 3 ? 2 : 3;
    const int answer = world_.YesNoInfoMsgO(kRoom, name.c_str(), kResources, 14715, 1, second, true, true);
    if (answer == 1) world_.ExecuteCommand(kReminderUrl);
  }
  if (attention == 2) {
    const std::string first = world_.GetIndStringC(world_.GetKRWinInstance(), 14715, 1);
    const std::string second = world_.GetIndStringC(world_.GetKRWinInstance(), 14715, 4);
    world_.KRWarnMsgWithTitle02(0, kRoom, name.c_str(), first.c_str(), second.c_str(), true);
  }
}

void Model::Attach() {
  world_.SubscribeCloseSystem();
}

void Model::Detach() {
  KillAnyExistingScheduler();
  world_.UnsubscribeCloseSystem();
}

void Model::NotifyClose() {
  KillAnyExistingScheduler();
}

void Model::FireTimer() {
  if (!world_.timers.empty()) OnTimerElapsed();
}

void Model::DeliverFirstMessage() {
  if (world_.queue.empty()) return;
  const MessageKind kind = world_.queue.front();
  world_.queue.erase(world_.queue.begin());
  if (kind == MessageKind::kScheduler) return ProcessSchedulerMessage();
  ProcessPrompt();
}

}  // namespace model
