#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "faults/Scenario.h"
#include "support/MultiEntityPrivateAccess.h"

namespace faults {

namespace {

const std::string kDateAsked =
    Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Getting next launch date from pref db");
const std::string kDateNotFetched =
    Trace("MULTIENTITY::GetNextSchedulerTimeFromPrefDb: Unable to fetch next launch date from pref db");
const std::string kStarting = Notice("MULTIENTITY::StartTimer: Entering function");

void RememberToday(Company& company) {
  company.host.databasePreferences.values["MEPromptLaunchDate"] = "20240303";
}

std::function<void(Company&)> QueueAPromptOf(std::int32_t syncNeed) {
  return [=](Company& company) {
    company.syncNeed = syncNeed;
    company.host.messages.answer = kAnswerYes;
    MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0);
  };
}

std::string DeliverThePrompt(Company& company) {
  company.host.application.DeliverMessages();
  return "done";
}

std::function<std::string(Company&)> Do(void (*operation)()) {
  return [=](Company& /*company*/) {
    operation();
    return "done";
  };
}

std::string Of(DateType32 date) {
  return call_text::Of(date);
}

// An empty value, which is a failed answer's, means the default; so does one that cannot be read.
Table RemoteHour() {
  return {
      {"GetValue2(MultiEntity, HoursToLaunchDay)",
       GoesOn({Trace("MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from DCE: ")})
           .InsteadOf(1),
       GoesOn({Error("MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE")}).InsteadOf(1)}};
}

Table RemoteDelay() {
  return {
      {"GetValue2(MultiEntity, InitialDelayInSeconds)",
       GoesOn({Trace("MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: ")})
           .InsteadOf(1),
       GoesOn({Error("MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE")}).InsteadOf(1)}};
}

// The remembered day is today, which is also the day that is taken when it cannot be read. `nth` tells this use of the
// database from earlier ones of the same message.
Table RememberedDate(const std::string& nth, const Handling& thrown) {
  return {{"GetActiveFileMgr" + nth, GoesOn({kDateNotFetched}), thrown},
          {"GetFileState" + nth, GoesOn({kDateNotFetched}), thrown},
          {"GetCompanyDBPreference", GoesOn({kDateNotFetched}), thrown},
          {"GetLocalTime" + nth, NoSuchFailure(), thrown}};
}

// A day that cannot be read counts as today, whose hour is two hours ahead.
Table ComputingADelayUntilTomorrow() {
  const Handling untilToday =
      Ends("7200", {kDateNotFetched, Trace("MULTIENTITY::GetNextLaunchDelayInSeconds: Launch date today")})
          .AfterAsking({"GetLocalTime", "GetLocalTime"});
  return Table{{"GetActiveFileMgr", untilToday, Passes()},
               {"GetFileState", untilToday, Passes()},
               {"GetCompanyDBPreference", untilToday, Passes()},
               {"GetLocalTime", NoSuchFailure(), Passes()}} +
         RemoteHour();
}

Table ArmingTheTimer(const std::string& nth) {
  const Handling caught =
      GoesOn({Error("MULTIENTITY:: Exception occured in StartScheduler API")}).InsteadOfTheRest().Without("timer ");
  return RememberedDate(nth, caught) + RemoteHour() + RemoteDelay() +
         Table{{"SetTimer", GoesOn().Without("timer "), caught}};
}

// When the next day is not stored, there is none to be read right after.
Table RememberingTheDate(const std::string& fileNth) {
  const std::string exception = Error("MULTIENTITY:: Exception occured in SetNextSchedulerTimeToPrefDb API");
  const auto notStored = [](Texts lines) {
    lines.insert(lines.end(), {kStarting, kDateAsked, kDateNotFetched});
    return GoesOn(lines).InsteadOf(2).Without("preference MEPromptLaunchDate");
  };
  return Table{{"GetLocalTime#1", NoSuchFailure(), notStored({exception})},
               {"GetLocalTime#2", NoSuchFailure(), notStored({exception})},
               {"GetActiveFileMgr" + fileNth, notStored({}), notStored({exception})},
               {"GetFileState" + fileNth, notStored({}), notStored({exception})},
               {"SetCompanyDBPreference",
                notStored({Error("MULTIENTITY::SetNextSchedulerTimeToPrefDb: Unable to save next launch date to pref "
                                 "db")}),
                notStored({exception})}} +
         RemoteHour();
}

Table StateOfTheHost(const std::string& refusal) {
  const Handling skipped =
      Ends(refusal, {Trace("MULTIENTITY::System is closing or no active file manager and so skip DB operation")});
  return {{"IsServerMode", GoesOn(), Passes()},
          {"SystemIsOpen", skipped, Passes()},
          {"SystemIsClosing", GoesOn(), Passes()},
          {"GetActiveFileMgr#1", skipped, Passes()},
          {"GetFileState#1", skipped, Passes()}};
}

Table Prompt(const std::vector<std::string>& shown) {
  Handling nothingShown = GoesOn();
  for (const std::string& call : shown) nothingShown.missing.push_back(call);
  return StateOfTheHost("done") + RememberingTheDate("#2") + ArmingTheTimer("#3") +
         Table{{"LoadLibraryA", Ends("done", {Error("MULTIENTITY::hBridgeDLL is null for NeedDataSyncUp")}), Passes()},
               {"GetProcAddress", nothingShown, Passes()},
               {"NeedDataSyncUp", nothingShown, Passes()},
               {"GetKRWinInstance", NoSuchFailure(), Passes()},
               {"GetIndStringC", NoSuchFailure(), Passes()},
               {"YesNoInfoMsgO", GoesOn().Without("ExecuteCommand("), Passes()},
               {"KRWarnMsgWithTitle02", NoSuchFailure(), Passes()},
               {"ExecuteCommand", NoSuchFailure(), Passes()}};
}

}  // namespace

std::vector<Scenario> SchedulerScenarios() {
  const std::string notNeeded =
      Trace("MULTIENTITY::MultiEntityScheduler: ProcessMsg :: Skipping scheduler as not needed");
  const Handling noRight = Ends("done", {Notice("MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission"), notNeeded});
  const Handling featureOff =
      Ends("done", {Trace("MULTIENTITY:: Global feature Off"),
                    Notice("MULTIENTITY::Exiting MultiEntityDriver::IsFeatureEnabled, key 0, value 0 "),
                    Trace("MULTIENTITY::MultiEntityScheduler: Feature not enabled")})
          .AfterAsking({"IsFeatureEnabled", "IsFeatureEnabled"})
          .ForGood();
  const Table bridge{{"LoadLibraryA", GoesOn(), noRight},
                     {"GetProcAddress", GoesOn(), noRight},
                     {"IsSybaseAccountant", GoesOn(), noRight}};
  // Answers to whether no reminder is needed fail as no.
  const Table needed{{"GetCurrentFileIsSample", GoesOn(), Passes()},
                     {"GetIsAccntntCopy", NoSuchFailure(), Passes()},
                     {"GetUseMultiCurrency", GoesOn(), Passes()}};
  const Table relations{
      {"GetAllRelations",
       Ends("done", {Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table")}),
       Passes()}};
  const auto processScheduler = [](Company& /*company*/) {
    MultiEntityScheduler message;
    message.ProcessMsg();
    return "done";
  };

  return {
      {"ReadingTheLeastDelay", "MESchedulerUtil::GetDelayInSecondsFromDCE", Nothing,
       [](Company& /*company*/) { return std::to_string(MESchedulerUtil::GetDelayInSecondsFromDCE()); }, RemoteDelay()},
      {"ReadingTheLaunchHour", "MESchedulerUtil::GetHoursToLaunchFromDCE", Nothing,
       [](Company& /*company*/) { return std::to_string(MESchedulerUtil::GetHoursToLaunchFromDCE()); }, RemoteHour()},
      {"ReadingTheLaunchDate", "MESchedulerUtil::GetNextSchedulerTimeFromPrefDb", RememberToday,
       [](Company& /*company*/) { return Of(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb()); },
       RememberedDate("", Passes())},
      {"ReadingALaunchDateThatIsNotRemembered", "MESchedulerUtil::GetNextSchedulerTimeFromPrefDb", Nothing,
       [](Company& /*company*/) { return Of(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb()); },
       Table{{"GetActiveFileMgr", GoesOn(), Passes()},
             {"GetFileState", GoesOn(), Passes()},
             {"GetCompanyDBPreference", GoesOn(), Passes()},
             {"GetLocalTime", NoSuchFailure(), Passes()}}},
      {"StoringTheLaunchDate", "MESchedulerUtil::SetNextSchedulerTimeToPrefDb", Nothing,
       Do(MESchedulerUtil::SetNextSchedulerTimeToPrefDb),
       [] {
         const Handling caught = Ends("done", {Error("MULTIENTITY:: Exception occured in SetNextSchedulerTimeToPrefDb "
                                                     "API")});
         return Table{{"GetLocalTime", NoSuchFailure(), caught},
                      {"GetActiveFileMgr", Ends("done"), caught},
                      {"GetFileState", Ends("done"), caught},
                      {"SetCompanyDBPreference",
                       Ends("done", {Error("MULTIENTITY::SetNextSchedulerTimeToPrefDb: Unable to save next launch date "
                                           "to pref db")}),
                       caught}} +
                RemoteHour();
       }()},
      {"ComputingTheLaunchDelay", "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds", RememberToday,
       [](Company& /*company*/) { return std::to_string(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds()); },
       RememberedDate("", Passes()) + RemoteHour()},
      {"ComputingTheLaunchDelayUntilTomorrow", "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds",
       [](Company& company) { company.host.databasePreferences.values["MEPromptLaunchDate"] = "20240304"; },
       [](Company& /*company*/) { return std::to_string(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds()); },
       ComputingADelayUntilTomorrow()},
      {"ComputingTheLaunchDelayWithoutARememberedDay", "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds", Nothing,
       [](Company& /*company*/) { return std::to_string(MESchedulerUtil::GetSchedulerLaunchDelayInSeconds()); },
       Table{{"GetActiveFileMgr", GoesOn(), Passes()},
             {"GetFileState", GoesOn(), Passes()},
             {"GetCompanyDBPreference", GoesOn(), Passes()},
             {"GetLocalTime", NoSuchFailure(), Passes()}} +
           RemoteHour()},
      {"AskingWhetherTheHourIsAhead", "MESchedulerUtil::IsTimerLaunchDateToday", Nothing,
       [](Company& /*company*/) { return Text(MultiEntityPrivateAccess::IsTimerLaunchDateToday()); },
       Table{{"GetLocalTime", NoSuchFailure(), Passes()}} + RemoteHour()},
      {"AskingForTheStateOfTheHost", "MESchedulerUtil::CanProcessSchedulerMsg", Nothing,
       [](Company& /*company*/) { return Text(MESchedulerUtil::CanProcessSchedulerMsg()); }, StateOfTheHost("false")},
      {"ArmingTheTimer", "MESchedulerUtil::StartScheduler", RememberToday, Do(MESchedulerUtil::StartScheduler),
       ArmingTheTimer("")},
      {"ArmingTheTimerAnew", "MESchedulerUtil::StartScheduler",
       [](Company& company) {
         RememberToday(company);
         MESchedulerUtil::StartScheduler();
       },
       Do(MESchedulerUtil::StartScheduler), ArmingTheTimer("")},
      {"DisarmingTheTimer",
       "MESchedulerUtil::KillAnyExistingScheduler",
       [](Company& company) {
         RememberToday(company);
         MESchedulerUtil::StartScheduler();
       },
       Do(MESchedulerUtil::KillAnyExistingScheduler),
       {}},
      {"ClosingTheSystem",
       "AttachHost",
       [](Company& company) {
         RememberToday(company);
         MESchedulerUtil::StartScheduler();
       },
       [](Company& company) {
         company.host.application.NotifyClose();
         return "done";
       },
       {}},
      {"ElapsingOfTheTimer",
       "MESchedulerUtil::OnTimerElapsed",
       Nothing,
       [](Company& /*company*/) {
         MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0);
         return "done";
       },
       {}},
      {"StartingTheReminderAsAdministrator", "MultiEntityScheduler::ProcessMsg", RememberToday, processScheduler,
       Table{{"IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)", featureOff,
              GoesOn({Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")})}} +
           FeatureGate("", "") + StateOfTheHost("done") + needed + bridge +
           Table{{"CurrentUserIsAdminUser", GoesOn(), noRight}} + relations + ArmingTheTimer("")},
      {"StartingTheReminderAsUser", "MultiEntityScheduler::ProcessMsg",
       [](Company& company) {
         RememberToday(company);
         company.host.permissions.administrator = false;
         company.host.permissions.Grant(kFeatureJournalEntries, kActionCreate);
       },
       processScheduler,
       Table{{"IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)", featureOff,
              GoesOn({Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")})}} +
           FeatureGate("", "") + StateOfTheHost("done") + needed + bridge +
           Table{{"CurrentUserIsAdminUser", GoesOn(), noRight}, {"FeaturePermissionAvailable", noRight, noRight}} +
           relations + ArmingTheTimer("")},
      {"PromptingWithTheFirstReminder", "MESchedulerUtil::OnTimerElapsed", QueueAPromptOf(1), DeliverThePrompt,
       Prompt({"YesNoInfoMsgO(", "ExecuteCommand("})},
      {"PromptingWithTheSecondReminder", "MESchedulerUtil::OnTimerElapsed", QueueAPromptOf(3), DeliverThePrompt,
       Prompt({"YesNoInfoMsgO(", "ExecuteCommand("})},
      {"PromptingWithTheWarning", "MESchedulerUtil::OnTimerElapsed", QueueAPromptOf(2), DeliverThePrompt,
       Prompt({"KRWarnMsgWithTitle02("})},
      {"PromptingWithNothing", "MESchedulerUtil::OnTimerElapsed", QueueAPromptOf(0), DeliverThePrompt, Prompt({})},
  };
}

}  // namespace faults
