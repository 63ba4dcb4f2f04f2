#include <array>
#include <cstddef>
#include <map>

#include "Frame/Operations.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

struct Switch {
  MEKillSwitchKey key;
  const char* flag;
};

constexpr std::array kSwitches{
    Switch{MEKillSwitchGlobal, kSwitchForAll},
    Switch{MEKillSwitchBills, kSwitchForBills},
    Switch{MEKillSwitchChecks, kSwitchForChecks},
};

std::map<int, bool>& KillSwitchTable() {
  static std::map<int, bool> table;
  return table;
}

}  // namespace

bool MultiEntityUtils::InitializeMEKillSwitchLookUpTable() {
  const OperationLog log{operations::InitializeMEKillSwitchLookUpTable};
  try {
    for (const Switch& remote : kSwitches) {
      KillSwitchTable()[remote.key] = Host().killSwitches.IsFeatureEnabled(kFeatureSwitches, remote.flag);
    }
    return true;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag");
    return false;
  }
}

bool MultiEntityUtils::IsFeatureEnabled(MEKillSwitchKey key) {
  // A table read without a host would stay closed for the life of the process.
  if (!IsHostAttached()) return false;

  static const bool tableReady = InitializeMEKillSwitchLookUpTable();
  // Switches that cannot be read leave the feature on.
  if (!tableReady) return true;

  const std::map<int, bool>& table = KillSwitchTable();
  if (!table.at(MEKillSwitchGlobal)) {
    const OperationLog log{operations::IsKillSwitchEnabled};
    log.Note("MULTIENTITY:: Global feature Off");
    return false;
  }
  const auto row = table.find(key);
  return row == table.end() || row->second;
}

bool MultiEntityUtils::IsAccountTypeEnabled(KrEnumerations::AccntTypeType type) {
  const auto index = static_cast<std::size_t>(type);
  if (index >= kAccountTypeSwitches.size()) return false;
  return Host().killSwitches.IsFeatureEnabled(kAccountSwitches, kAccountTypeSwitches[index]);
}
