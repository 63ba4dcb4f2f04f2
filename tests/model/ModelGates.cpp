#include <array>
#include <string>

#include "model/Model.h"

namespace model {

void Model::Line(std::int32_t level, std::int32_t eventType, std::string_view shortName, std::string_view message) {
  const bool driver = shortName.starts_with("MultiEntityDriver::");
  const bool utils = shortName.starts_with("MultiEntityUtils::");
  const char* room = driver ? "Src/MultiEntityDriver" : utils ? "Src/MultiEntityUtils" : "Src/MultiEntityScheduler";
  world_.Log(level, eventType, room, shortName, message);
}

void Model::Trace(std::string_view shortName, std::string_view message) {
  Line(0, 6, shortName, message);
}

void Model::Gate(std::string_view shortName, std::string_view message) {
  Line(1, 5, shortName, message);
}

void Model::Warning(std::string_view shortName, std::string_view message) {
  Line(3, 5, shortName, message);
}

void Model::Error(std::string_view shortName, std::string_view message) {
  Line(4, 5, shortName, message);
}

bool Model::ReadSwitches() {
  static constexpr std::array<const char*, 3> kFlags{"ME_FOR_ALL", "ME_FOR_BILLS", "ME_FOR_CHECKS"};
  try {
    for (std::int32_t key = 0; key < 3; ++key) {
      memory_.switches[key] = world_.IsFeatureEnabled("MultiEntityFeature", kFlags.at(static_cast<std::size_t>(key)));
    }
    return true;
  } catch (...) {
    Error("MultiEntityUtils::InitializeMEKillSwitchLookUpTable",
          "MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag");
    return false;
  }
}

bool Model::SwitchedOn(std::int32_t key) {
  if (!memory_.switchTableReady.has_value()) memory_.switchTableReady = ReadSwitches();
  if (!*memory_.switchTableReady) return true;
  if (!memory_.switches.at(0)) {
    Trace("MultiEntityUtils::IsFeatureEnabled", "MULTIENTITY:: Global feature Off");
    return false;
  }
  const auto found = memory_.switches.find(key);
  return key == 0 || found == memory_.switches.end() || found->second;
}

bool Model::IsFeatureEnabled(MESupportCheckKey /*supportKey*/, MEKillSwitchKey killKey) {
  const std::string name = "MultiEntityDriver::IsFeatureEnabled";
  Gate(name, "MULTIENTITY::Entering " + name);
  if (SwitchedOn(killKey)) return true;
  Gate(name, "MULTIENTITY::Exiting " + name + ", key " + std::to_string(killKey) + ", value 0 ");
  return false;
}

bool Model::IsAccountant() {
  if (!world_.LoadLibraryA("AddinBridge.DLL")) return false;
  bool accountant = false;
  try {
    accountant = world_.GetProcAddress("IsSybaseAccountant") && world_.IsSybaseAccountant();
  } catch (...) {
    world_.FreeLibrary();
    throw;
  }
  world_.FreeLibrary();
  return accountant;
}

bool Model::Granted(std::int32_t permission, std::int32_t feature) {
  switch (permission) {
    case 0:
      return IsAccountant() || world_.CurrentUserIsAdminUser();
    case 1:
    case 5:
      return true;
    case 2:
      return feature != 0 && world_.FeaturePermissionAvailable(feature, 1, 0);
    case 3:
      return feature != 0 && world_.FeaturePermissionAvailable(feature, 5, 0);
    case 4:
      return feature != 0 && world_.FeaturePermissionAvailable(feature, 2, 0);
    case 6:
      return IsAccountant() || world_.CurrentUserIsAdminUser() || world_.FeaturePermissionAvailable(feature, 1, 0);
    default:
      Error("MultiEntityDriver::HasMEPermission", "MULTIENTITY: Invalid option for permission");
      return false;
  }
}

bool Model::HasMEPermission(MEPermissionType permission, ProgramFeature feature) {
  const std::string name = "MultiEntityDriver::HasMEPermission";
  Gate(name, "MULTIENTITY::Entering " + name);
  bool granted = false;
  try {
    granted = Granted(permission, feature);
  } catch (...) {
    granted = false;
  }
  Gate(name, "MULTIENTITY::Exiting " + name);
  return granted;
}

// The switch itself, which gate and eligibility both ask; only the gate answers for a host that cannot.
bool Model::AccountTypeSwitchedOn(KrEnumerations::AccntTypeType type) {
  static constexpr std::array<const char*, 16> kFlags{"Bank",
                                                      "Accounts_Receivable",
                                                      "Other_Current_Asset",
                                                      "Fixed_Asset",
                                                      "Other_Asset",
                                                      "Accounts_Payable",
                                                      "Credit_Card",
                                                      "Other_Current_Liability",
                                                      "Long_Term_Liability",
                                                      "Equity",
                                                      "Income",
                                                      "Cost_of_Goods_Sold",
                                                      "Expense",
                                                      "Other_Income",
                                                      "Other_Expense",
                                                      "Non_Posting"};
  const int number = type;
  if (number < 0 || number > 15) return false;
  return world_.IsFeatureEnabled("MultiEntityAccounts", kFlags.at(static_cast<std::size_t>(number)));
}

bool Model::IsAccountTypeEnabledForME(KrEnumerations::AccntTypeType type) {
  try {
    return AccountTypeSwitchedOn(type);
  } catch (...) {
    return false;
  }
}

bool Model::MayManageRelations() {
  return HasMEPermission(MEPermissionManageRelations, kFeatureNone);
}

std::optional<std::string_view> Model::KindOf(std::int32_t txnType) {
  if (txnType == 9) return "Bills";
  if (txnType == 3) return "Checks";
  if (txnType == 8) return "GJE";
  return {};
}

// Whether the user has a right for transactions of that type; types that are no intercompany kind need none.
bool Model::MayHandle(std::int32_t permission, std::int32_t txnType) {
  static const std::map<std::int32_t, std::int32_t> kFeatures{{9, 20}, {3, 16}, {8, 19}};
  const auto feature = kFeatures.find(txnType);
  return feature == kFeatures.end() ||
         HasMEPermission(static_cast<MEPermissionType>(permission), static_cast<ProgramFeature>(feature->second));
}

}  // namespace model
