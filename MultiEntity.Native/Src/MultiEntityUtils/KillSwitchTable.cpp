#include <array>
#include <cstddef>
#include <map>

#include "Frame/Operations.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

constexpr const char* kFeatureSection = "MultiEntityFeature";
constexpr const char* kAccountsSection = "MultiEntityAccounts";

struct Switch {
  MEKillSwitchKey key;
  const char* flag;
};

constexpr std::array kSwitches{
    Switch{MEKillSwitchGlobal, "ME_FOR_ALL"},
    Switch{MEKillSwitchBills, "ME_FOR_BILLS"},
    Switch{MEKillSwitchChecks, "ME_FOR_CHECKS"},
};

// Indexed by account type.
constexpr std::array kAccountTypeFlags{
    "Bank",
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
    "Non_Posting",
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
      KillSwitchTable()[remote.key] = Host().killSwitches.IsFeatureEnabled(kFeatureSection, remote.flag);
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
  if (index >= kAccountTypeFlags.size()) return false;
  return Host().killSwitches.IsFeatureEnabled(kAccountsSection, kAccountTypeFlags[index]);
}
