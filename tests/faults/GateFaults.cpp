#include "faults/Scenario.h"

// A right or a type for which the host cannot answer is refused; switches that cannot be read leave the feature on.

namespace faults {

namespace {

std::function<std::string(Company&)> Ask(MEPermissionType permission, ProgramFeature feature) {
  return [=](Company& /*company*/) {
    return Text(MultiEntityDriver::HasMEPermission(permission, feature));
  };
}

void AsAccountant(Company& company) {
  company.accountant = 1;
  company.host.permissions.administrator = false;
}

void AsUserWith(Company& company, ProgramFeature feature, UserAction action) {
  company.host.permissions.administrator = false;
  company.host.permissions.Grant(feature, action);
}

const Handling kRefused = Ends("false", {kRightAnswered});
const Handling kSwitchesUnread =
    GoesOn({Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")});

}  // namespace

Table FeatureGate(const std::string& answer, const std::string& disabledNote) {
  Texts disabled{Trace("MULTIENTITY:: Global feature Off"),
                 Notice("MULTIENTITY::Exiting MultiEntityDriver::IsFeatureEnabled, key 0, value 0 ")};
  if (!disabledNote.empty()) disabled.push_back(Trace(disabledNote));
  return {{"IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
           Ends(answer, disabled)
               .AfterAsking({"IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
                             "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)"})
               .ForGood(),
           kSwitchesUnread},
          {"IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)", GoesOn(), kSwitchesUnread},
          {"IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)", GoesOn(), kSwitchesUnread}};
}

Table Right(const std::string& answer, const std::string& refusedNote) {
  const Handling refused = Ends(answer, {kRightAnswered, Trace(refusedNote)});
  return {{"FeaturePermissionAvailable", refused, refused}};
}

// A bridge that cannot be asked counts as one that says no; then the administrator is asked.
Table RightToManageRelations(const std::string& refusedNote) {
  const Handling refused = Ends("3", {kRightAnswered, Trace(refusedNote)});
  return {{"LoadLibraryA(AddinBridge.DLL)", GoesOn(), refused},
          {"GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)", GoesOn(), refused},
          {"IsSybaseAccountant", GoesOn(), refused},
          {"CurrentUserIsAdminUser", refused, refused}};
}

std::vector<Scenario> GateScenarios() {
  const Table bridgeThenAdministrator{{"LoadLibraryA(AddinBridge.DLL)", GoesOn(), kRefused},
                                      {"GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)", GoesOn(), kRefused},
                                      {"IsSybaseAccountant", GoesOn(), kRefused}};
  const Handling refusedByTheAdministratorToo =
      Ends("false", {kRightAnswered}).AfterAsking({"CurrentUserIsAdminUser()"});
  return {
      {"AskingForTheFeature", "MultiEntityDriver::IsFeatureEnabled", Nothing,
       [](Company& /*company*/) {
         return Text(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal));
       },
       FeatureGate("false", "")},
      {"AskingForTheRightToManageRelationsAsAdministrator", "MultiEntityDriver::HasMEPermission", Nothing,
       Ask(MEPermissionManageRelations, kFeatureNone),
       bridgeThenAdministrator + Table{{"CurrentUserIsAdminUser", kRefused, kRefused}}},
      {"AskingForTheRightToManageRelationsAsAccountant",
       "MultiEntityDriver::HasMEPermission",
       AsAccountant,
       Ask(MEPermissionManageRelations, kFeatureNone),
       {{"LoadLibraryA(AddinBridge.DLL)", refusedByTheAdministratorToo, kRefused},
        {"GetProcAddress(AddinBridge.DLL, IsSybaseAccountant)", refusedByTheAdministratorToo, kRefused},
        {"IsSybaseAccountant", refusedByTheAdministratorToo, kRefused}}},
      {"AskingForTheRightToCreateTransactions",
       "MultiEntityDriver::HasMEPermission",
       [](Company& company) { AsUserWith(company, kFeatureJournalEntries, kActionCreate); },
       Ask(MEPermissionCreateTransactions, kFeatureJournalEntries),
       {{"FeaturePermissionAvailable(19, 1, 0)", kRefused, kRefused}}},
      {"AskingForTheRightToModifyTransactions",
       "MultiEntityDriver::HasMEPermission",
       [](Company& company) { AsUserWith(company, kFeatureBills, kActionModify); },
       Ask(MEPermissionModifyTransactions, kFeatureBills),
       {{"FeaturePermissionAvailable(20, 5, 0)", kRefused, kRefused}}},
      {"AskingForTheRightToViewTransactions",
       "MultiEntityDriver::HasMEPermission",
       [](Company& company) { AsUserWith(company, kFeatureChecks, kActionView); },
       Ask(MEPermissionViewTransactions, kFeatureChecks),
       {{"FeaturePermissionAvailable(16, 2, 0)", kRefused, kRefused}}},
      {"AskingForTheRightToTheReminder", "MultiEntityDriver::HasMEPermission",
       [](Company& company) { AsUserWith(company, kFeatureJournalEntries, kActionCreate); },
       Ask(MEPermissionReceiveReminder, kFeatureJournalEntries),
       bridgeThenAdministrator + Table{{"CurrentUserIsAdminUser", GoesOn(), kRefused},
                                       {"FeaturePermissionAvailable(19, 1, 0)", kRefused, kRefused}}},
      {"AskingForARightThatThereIsNot",
       "MultiEntityDriver::HasMEPermission",
       Nothing,
       Ask(static_cast<MEPermissionType>(7), kFeatureBills),
       {}},
      {"AskingForAnAccountType",
       "MultiEntityDriver::IsAccountTypeEnabledForME",
       Nothing,
       [](Company& /*company*/) { return Text(MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::kBank)); },
       {{"IsFeatureEnabled(MultiEntityAccounts, Bank)", Ends("false"), Ends("false")}}},
  };
}

}  // namespace faults
