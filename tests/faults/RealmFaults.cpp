#include "faults/Scenario.h"
#include "support/MultiEntityPrivateAccess.h"

namespace faults {

namespace {

std::string GenericException(const std::string& operation) {
  return Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::" + operation + ", due to generic exception");
}

std::string Remembered(Company& company) {
  bool ok = false;
  char* block = MultiEntityDriver::GetMECacheRealmId("9131", ok);
  const std::string text = block == nullptr ? "nothing" : block;
  if (block != nullptr) company.host.platform.LocalFree(block);
  return text + (ok ? "" : ", not ok");
}

void Forget(Company& company) {
  company.host.databasePreferences.values.erase("MERealmId");
}

void SayYes(Company& company) {
  company.host.messages.answer = kAnswerYes;
}

// How an operation that needs the remembered id ends when it is not to be had.
Table RememberedId(const std::string& answer) {
  const Handling caught = Ends(answer, {GenericException("GetMECacheRealmId")});
  return {
      {"GetActiveFileMgr", Ends(answer), caught},
      {"GetFileState", Ends(answer), caught},
      {"GetCompanyDBPreference",
       WhenFailing(Ends(answer, {Error("MULTIENTITY_ERROR::In MultiEntityDriver::GetMECacheRealmId, Unable to read CDB "
                                       "Preferences")}))
           .Or(Util::Status::kPreferenceMissing, Ends(answer)
                                                     .AfterAsking({"SetCompanyDBPreference(MERealmId, 9131)"})
                                                     .WithRow("MERealmId 9130", "MERealmId 9131")),
       caught},
      {"LocalAlloc", caught, caught}};
}

}  // namespace

std::vector<Scenario> RealmScenarios() {
  const Handling cacheCaught = Ends("nothing", {GenericException("GetMECacheRealmId")});
  const Handling setCaught = Ends("false", {GenericException("SetMECacheRealmId")});
  const Handling guardCaught = Ends("false", {GenericException("BlockUserIfRealmReset")});
  const Handling navigationCaught = Ends("true", {GenericException("CheckForPluginNavigation")});
  const Handling personaCaught = Ends("0", {GenericException("SybaseRelationsUserPersonaForRole")});
  const Table navigation =
      Table{{"IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
             Ends("true", {Trace("MULTIENTITY:: Global feature Off"),
                           Notice("MULTIENTITY::Exiting MultiEntityDriver::IsFeatureEnabled, key 0, value 0 "),
                           Trace("MULTIENTITY: GetAllRelations :Feature is disabled"),
                           Trace("MULTIENTITY::Exiting MultiEntityDriver::CheckForPluginNavigation, due to Error 2")})
                 .AfterAsking({"IsFeatureEnabled", "IsFeatureEnabled"})
                 .ForGood(),
             GoesOn({Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")})}} +
      FeatureGate("", "") +
      Table{{"GetAllRelations",
             Ends("true", {Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table"),
                           Trace("MULTIENTITY::Exiting MultiEntityDriver::CheckForPluginNavigation, due to Error 8")}),
             navigationCaught}};
  const std::string unread =
      Error("MULTIENTITY_ERROR::In MultiEntityDriver::GetMECacheRealmId, Unable to read CDB Preferences");
  const auto persona = [](int role) {
    return [=](Company& /*company*/) {
      return std::to_string(static_cast<int>(MultiEntityDriver::SybaseRelationsUserPersonaForRole(role)));
    };
  };

  return {
      {"ReadingTheRememberedRealm", "MultiEntityDriver::GetMECacheRealmId", Nothing, Remembered,
       Table{{"GetCompanyDBPreference",
              WhenFailing(Ends("nothing, not ok", {unread}))
                  .Or(Util::Status::kPreferenceMissing, Ends("nothing")
                                                            .AfterAsking({"SetCompanyDBPreference(MERealmId, 9131)"})
                                                            .WithRow("MERealmId 9130", "MERealmId 9131")),
              cacheCaught}} +
           RememberedId("nothing")},
      {"RememberingTheFirstRealm", "MultiEntityDriver::GetMECacheRealmId", Forget, Remembered,
       Table{
           {"GetCompanyDBPreference",
            WhenFailing(Ends("nothing, not ok", {unread})).Or(Util::Status::kPreferenceMissing, GoesOn()), cacheCaught},
           {"SetCompanyDBPreference", Ends("nothing, not ok"), cacheCaught}} +
           RememberedId("nothing")},
      {"RememberingAnotherRealm",
       "MultiEntityDriver::SetMECacheRealmId",
       Nothing,
       [](Company& /*company*/) {
         std::string realm = "9131";
         return Text(MultiEntityDriver::SetMECacheRealmId(realm.data()));
       },
       {{"GetActiveFileMgr", Ends("false"), setCaught},
        {"GetFileState", Ends("false"), setCaught},
        {"SetCompanyDBPreference", Ends("false"), setCaught}}},
      {"ComparingTheRealm", "MultiEntityDriver::IsRealmReset", Nothing,
       [](Company& /*company*/) { return Text(MultiEntityPrivateAccess::IsRealmReset("9131")); },
       RememberedId("false")},
      {"BlockingAUserWithoutARealm",
       "MultiEntityDriver::BlockUserIfRealmReset",
       Nothing,
       [](Company& /*company*/) { return Text(MultiEntityDriver::BlockUserIfRealmReset("")); },
       {{"GetKRWinInstance", NoSuchFailure(), guardCaught},
        {"GetIndStringC", NoSuchFailure(), guardCaught},
        {"KRMSG_MessageO", GoesOn(), guardCaught}}},
      {"BlockingAUserAfterARealmReset", "MultiEntityDriver::BlockUserIfRealmReset", SayYes,
       [](Company& /*company*/) { return Text(MultiEntityDriver::BlockUserIfRealmReset("9131")); },
       RememberedId("false") +
           Table{{"GetValue2", GoesOn(), GoesOn({Error("DCE check failed for NeedToCheckForMERealmReset")})},
                 {"GetKRWinInstance", NoSuchFailure(), guardCaught},
                 {"YesNoInfoMsgO", GoesOn().Without("ExecuteCommand("), guardCaught},
                 {"ExecuteCommand", NoSuchFailure(), guardCaught}}},
      {"BlockingAUserWhoDeclinesThePlugin", "MultiEntityDriver::BlockUserIfRealmReset", Nothing,
       [](Company& /*company*/) { return Text(MultiEntityDriver::BlockUserIfRealmReset("9131")); },
       RememberedId("false") +
           Table{{"GetValue2", GoesOn(), GoesOn({Error("DCE check failed for NeedToCheckForMERealmReset")})},
                 {"GetKRWinInstance", NoSuchFailure(), guardCaught},
                 {"YesNoInfoMsgO", GoesOn(), guardCaught}}},
      {"LettingTheFirstRealmPass", "MultiEntityDriver::BlockUserIfRealmReset", Forget,
       [](Company& /*company*/) { return Text(MultiEntityDriver::BlockUserIfRealmReset("9131")); },
       Table{{"GetCompanyDBPreference",
              WhenFailing(Ends("false", {unread})).Or(Util::Status::kPreferenceMissing, GoesOn()),
              Ends("false", {GenericException("GetMECacheRealmId")})},
             {"SetCompanyDBPreference", Ends("false"), Ends("false", {GenericException("GetMECacheRealmId")})}} +
           RememberedId("false") +
           Table{{"GetValue2", GoesOn(), GoesOn({Error("DCE check failed for NeedToCheckForMERealmReset")})}}},
      {"GoingOnWithAnEstablishedRelation", "MultiEntityDriver::CheckForPluginNavigation", Nothing,
       [](Company& /*company*/) { return Text(MultiEntityDriver::CheckForPluginNavigation()); }, navigation},
      {"OpeningThePluginForWantOfRelations", "MultiEntityDriver::CheckForPluginNavigation",
       [](Company& company) { company.host.store.relations[0].state = 1; },
       [](Company& /*company*/) { return Text(MultiEntityDriver::CheckForPluginNavigation()); },
       navigation + Table{{"KRMSG_MessageO", Ends("true"), navigationCaught},
                          {"ExecuteCommand", NoSuchFailure(), navigationCaught}}},
      {"FindingThePersonaOfRole1",
       "MultiEntityDriver::SybaseRelationsUserPersonaForRole",
       Nothing,
       persona(1),
       {{"OpenAccount", NoSuchFailure(), personaCaught},
        {"ListPermissionAvailable", Ends("2").AfterAsking({"ListPermissionAvailable"}), personaCaught}}},
      {"FindingThePersonaOfRole1WhoMayOnlyView",
       "MultiEntityDriver::SybaseRelationsUserPersonaForRole",
       [](Company& company) {
         company.host.permissions.administrator = false;
         company.host.permissions.lists = {{kListAccounts, kActionView}};
       },
       persona(1),
       {{"OpenAccount", NoSuchFailure(), personaCaught},
        {"ListPermissionAvailable#1", GoesOn(), personaCaught},
        {"ListPermissionAvailable#2", Ends("0"), personaCaught}}},
      {"FindingThePersonaOfRole7",
       "MultiEntityDriver::SybaseRelationsUserPersonaForRole",
       Nothing,
       persona(7),
       {{"OpenAccount", NoSuchFailure(), personaCaught}, {"ListPermissionAvailable", Ends("0"), personaCaught}}},
  };
}

}  // namespace faults
