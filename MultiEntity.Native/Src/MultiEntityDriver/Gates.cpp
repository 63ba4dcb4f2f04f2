#include "Frame/BridgeLibrary.h"
#include "Frame/Operations.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

// Every key is supported; the answer is worked out once per process.
bool IsSupported(MESupportCheckKey /*key*/) {
  static const bool supported = true;
  return supported;
}

bool IsAccountantUser() {
  // The entry answers in the low byte of its result.
  using IsSybaseAccountant = unsigned char (*)();

  const BridgeLibrary bridge;
  if (!bridge.IsLoaded()) return false;
  const auto ask = bridge.Entry<IsSybaseAccountant>(kBridgeIsAccountant);
  return ask != nullptr && ask() != 0;
}

bool IsAccountantOrAdministrator() {
  return IsAccountantUser() || Host().permissions.CurrentUserIsAdminUser();
}

bool IsActionGranted(ProgramFeature feature, UserAction action) {
  return Host().permissions.FeaturePermissionAvailable(feature, action, 0);
}

bool Decide(const OperationLog& log, MEPermissionType permission, ProgramFeature feature) {
  switch (permission) {
    case MEPermissionManageRelations:
      return IsAccountantOrAdministrator();
    case MEPermissionViewRelations:
    case MEPermissionAlwaysGranted:
      return true;
    case MEPermissionCreateTransactions:
      return feature != kFeatureNone && IsActionGranted(feature, kActionCreate);
    case MEPermissionModifyTransactions:
      return feature != kFeatureNone && IsActionGranted(feature, kActionModify);
    case MEPermissionViewTransactions:
      return feature != kFeatureNone && IsActionGranted(feature, kActionView);
    case MEPermissionReceiveReminder:
      // Unlike the transaction rights, this one asks the host also without a feature.
      return IsAccountantOrAdministrator() || IsActionGranted(feature, kActionCreate);
    default:
      log.Error("MULTIENTITY: Invalid option for permission");
      return false;
  }
}

// A right for which the host cannot answer is refused.
bool IsGranted(const OperationLog& log, MEPermissionType permission, ProgramFeature feature) noexcept {
  try {
    return Decide(log, permission, feature);
  } catch (...) {
    return false;
  }
}

}  // namespace

bool MultiEntityDriver::IsFeatureEnabled(MESupportCheckKey supportKey, MEKillSwitchKey killKey) {
  const OperationLog log{operations::IsFeatureEnabled};
  log.Notice("MULTIENTITY::Entering %s", log.Name());
  if (!MultiEntityUtils::IsFeatureEnabled(killKey)) {
    log.Notice("MULTIENTITY::Exiting %s, key %d, value %d ", log.Name(), static_cast<std::int32_t>(killKey), 0);
    return false;
  }
  return IsSupported(supportKey);
}

bool MultiEntityDriver::HasMEPermission(MEPermissionType permission, ProgramFeature feature) {
  const OperationLog log{operations::HasMEPermission};
  log.Notice("MULTIENTITY::Entering %s", log.Name());
  const bool granted = IsGranted(log, permission, feature);
  log.Notice("MULTIENTITY::Exiting %s", log.Name());
  return granted;
}

bool MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::AccntTypeType type) {
  try {
    return MultiEntityUtils::IsAccountTypeEnabled(type);
  } catch (...) {
    return false;
  }
}
