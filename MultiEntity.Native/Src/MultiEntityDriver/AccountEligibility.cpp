#include <stdexcept>

#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/BoundedCopy.h"
#include "MultiEntityDriver/Eligibility.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

using AccountMap = std::unordered_map<long, std::pair<std::string, std::string>>;

constexpr bool IsTypeEverEligible(KrEnumerations::AccntTypeType type) noexcept {
  return type != KrEnumerations::kAccountsReceivable && type != KrEnumerations::kAccountsPayable &&
         type != KrEnumerations::kNonPosting;
}

bool IsRelationFilter(MEAccountFilter filter) noexcept {
  return filter == MEAccountFilterUnused || filter == MEAccountFilterUnusedOrOwn;
}

void RemoveUsedAccounts(AccountMap& accounts, const std::vector<DBMultiEntityRelation>& relations,
                        MEAccountFilter filter, const std::string& ownRealmId) {
  for (const DBMultiEntityRelation& relation : relations) {
    if (filter == MEAccountFilterUnusedOrOwn && FieldText(relation.realmId) == ownRealmId) continue;
    accounts.erase(relation.dueFromAccountId);
    accounts.erase(relation.dueToAccountId);
  }
}

void RemoveIneligibleAccounts(AccountMap& accounts) {
  std::vector<long> ineligible;
  for (const auto& [recnum, texts] : accounts) {
    const CAccnt account(Host().accounts, recnum, kFeatureTypeStandard);
    if (!IsEligible(account)) ineligible.push_back(recnum);
  }
  for (const long recnum : ineligible) accounts.erase(recnum);
}

}  // namespace

bool IsEligible(const CAccnt& account) {
  const KrEnumerations::AccntTypeType type = account.GetType();
  return !account.GetIsSubAccnt() && IsTypeEverEligible(type) &&
         !account.IsSpecial(KrEnumerations::kSpecialNotForMultiEntity) && MultiEntityUtils::IsAccountTypeEnabled(type);
}

bool MultiEntityDriver::IsCOAValidForMultiEntity(CAccnt* account) {
  try {
    return account != nullptr && IsEligible(*account);
  } catch (...) {
    return false;
  }
}

// The texts of this operation name others, GetAllUnusedAccounts and GetAllRelations; readers of the log search for
// them.
MEStatusCode MultiEntityDriver::GetAccountsList(AccountMap& accounts, MEAccountFilter filter, std::string realmId) {
  const OperationLog log{operations::GetAccountsList};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetAllUnusedAccounts :Feature is disabled")) return MEStatusFeatureDisabled;
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);

  AccountMap working;
  try {
    working = Host().accounts.GetAllAccounts();
    if (IsRelationFilter(filter)) {
      std::vector<DBMultiEntityRelation> relations;
      if (Host().multiEntity.GetAllRelations(relations).Failed()) {
        log.Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table");
        return MEStatusReadFailed;
      }
      RemoveUsedAccounts(working, relations, filter, realmId);
    }
    RemoveIneligibleAccounts(working);
  } catch (const std::out_of_range& exception) {
    log.Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Exception as out of range %s", exception.what());
    return MEStatusException;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Unknown Exception ");
    return MEStatusException;
  }
  accounts = std::move(working);
  log.Exiting();
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::GetAccountListByType(short type, std::vector<std::pair<std::string, long>>& accounts) {
  const OperationLog log{operations::GetAccountListByType};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetAccountList :Feature is disabled")) return MEStatusFeatureDisabled;

  accounts = Host().accounts.GetListOfAccounts(type);
  log.Exiting();
  return MEStatusSuccess;
}
