#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/BoundedCopy.h"
#include "MultiEntityDriver/Eligibility.h"

namespace {

constexpr std::size_t kAccountsOfARelation = 2;
constexpr std::int32_t kRefreshWholeList = 1;

bool IsPartnerNameValid(const Util::TString& name) noexcept {
  return !name.empty() && name.size() <= kPartnerNameLength;
}

// A request left pending or without accounts is taken up again: the partner's name and the relation's type stay, and
// neither the number of accounts nor their other uses are looked at.
MEStatusCode ReuseRelation(const OperationLog& log, DBMultiEntityRelation& row, const Util::TString& realmId,
                           MEState state, std::vector<MEAccountInfo> accounts) {
  if (row.state != MEStateWithoutAccounts && row.state != MEStatePending) {
    log.Warning("MULTIENTITY_WARNING:: record already part of table realm [%s]", realmId.c_str());
    return MEStatusConflict;
  }
  const MEStatusCode populated = MultiEntityDriver::PopulateCOAInRelation(row, std::move(accounts));
  if (populated != MEStatusSuccess) return populated;

  row.state = static_cast<std::int16_t>(state);
  if (Host().multiEntity.UpdateRelationForRealm(row, {}).Failed()) {
    log.Error("MULTIENTITY_ERROR:: not able to update relation, realm [%s]", realmId.c_str());
    return MEStatusWriteFailed;
  }
  log.Exiting();
  return MEStatusSuccess;
}

}  // namespace

MEStatusCode MultiEntityDriver::CreateRelation(Util::TString realmId, Util::TString partnerName,
                                               MERelationType relationType, MEState state,
                                               std::vector<MEAccountInfo> accounts) {
  const OperationLog log{operations::CreateRelation};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: CreateRelation :Feature is disabled")) return MEStatusFeatureDisabled;
  if (!MayManageRelations(log, "MULTIENTITY: No permission to create relation")) return MEStatusPermissionDenied;

  if (!IsPartnerNameValid(partnerName) || !IsRealmIdValid(realmId)) {
    log.Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for realm [%s]", realmId.c_str());
    return MEStatusInvalidData;
  }

  DBMultiEntityRelation row{};
  if (Host().multiEntity.GetRelation(realmId, row).Succeeded()) {
    return ReuseRelation(log, row, realmId, state, std::move(accounts));
  }

  row = {};
  if (state != MEStateWithoutAccounts) {
    if (accounts.size() != kAccountsOfARelation) {
      log.Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for realm [%s]", realmId.c_str());
      return MEStatusInvalidData;
    }
    if (Host().multiEntity.HasAnyMatchingRecord(realmId, accounts[0].accountId, accounts[1].accountId)) {
      log.Warning("MULTIENTITY_WARNING:: record already part of table realm [%s], accnt1 [%d], accnt2 [%d]",
                  realmId.c_str(), accounts[0].accountId, accounts[1].accountId);
      return MEStatusConflict;
    }
    const MEStatusCode populated = PopulateCOAInRelation(row, std::move(accounts));
    if (populated != MEStatusSuccess) return populated;
  }
  BoundedCopy(row.realmId, realmId);
  BoundedCopy(row.partnerName, partnerName);
  row.relationType = static_cast<std::int16_t>(relationType);
  row.state = static_cast<std::int16_t>(state);

  if (Host().multiEntity.SaveRelation(row).Failed()) {
    log.Error(
        "MULTIENTITY_ERROR:: Relation creation failed for realm [%s], due_from_accnt_id [%d], due_to_accnt_id [%d]",
        realmId.c_str(), row.dueFromAccountId, row.dueToAccountId);
    return MEStatusWriteFailed;
  }
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::PopulateCOAInRelation(DBMultiEntityRelation& row, std::vector<MEAccountInfo> accounts) {
  const OperationLog log{operations::PopulateCOAInRelation};
  ChartOfAccounts& chart = Host().accounts;
  chart.EdListRefreshList(chart.GetAccntListPtr(), kRefreshWholeList);

  for (const MEAccountInfo& info : accounts) {
    CAccnt account(chart, kFeatureTypeStandard);
    if (chart.GetAccountForRecnum(info.accountId, account) != kEdListSuccess) {
      log.Error("MULTIENTITY_ERROR:: no matching Accnt for id [%d] in  %s", info.accountId, log.Name());
      return MEStatusAccountUnusable;
    }
    if (account.GetDeleted()) {
      log.Error("MULTIENTITY_ERROR:: Accnt for id [%d] is marked deleted in  %s", info.accountId, log.Name());
      return MEStatusAccountUnusable;
    }
    if (!IsEligible(account)) {
      log.Error("MULTIENTITY_ERROR:: Can not use Accnt for MultiEntity for id [%d] in  %s", info.accountId, log.Name());
      return MEStatusAccountUnusable;
    }
    if (info.role == MEAccountRoleDueFrom) row.dueFromAccountId = info.accountId;
    if (info.role == MEAccountRoleDueTo) row.dueToAccountId = info.accountId;
  }
  return MEStatusSuccess;
}

// Two texts of this operation call it UpdateRelationsWithState; readers of the log search for that name.
MEStatusCode MultiEntityDriver::UpdateRelation(MERelationInfo info) {
  const OperationLog log{operations::UpdateRelation};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: UpdateRelationsWithState :Feature is disabled")) {
    return MEStatusFeatureDisabled;
  }
  if (!info.skipPermissionCheck && !MayManageRelations(log, "MULTIENTITY: No permission to update relation")) {
    return MEStatusPermissionDenied;
  }

  if (!IsRealmIdValid(info.realmId)) {
    log.Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm [%s]",
              info.realmId.c_str());
    return MEStatusInvalidData;
  }

  DBMultiEntityRelation row{};
  if (Host().multiEntity.GetRelation(info.realmId, row).Failed()) {
    log.Error("MULTIENTITY_ERROR:: not able to update as relation is not part of table realm [%s]",
              info.realmId.c_str());
    return MEStatusInvalidData;
  }

  if (info.state != MEStateKeepStored) row.state = static_cast<std::int16_t>(info.state);

  if (!info.accounts.empty()) {
    if (info.accounts.size() < kAccountsOfARelation) {
      log.Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm [%s]",
                info.realmId.c_str());
      return MEStatusInvalidData;
    }
    const std::int32_t account1 = info.accounts[0].accountId;
    const std::int32_t account2 = info.accounts[1].accountId;
    if (Host().multiEntity.HasAnyMatchingAccRecordExclRealm(info.realmId, account1, account2)) {
      log.Warning("MULTIENTITY_WARNING::  accnt1 [%d], accnt2 [%d] are already used by another realm", account1,
                  account2);
      return MEStatusConflict;
    }
    const MEStatusCode populated = PopulateCOAInRelation(row, std::move(info.accounts));
    if (populated != MEStatusSuccess) return populated;
  }

  if (Host().multiEntity.UpdateRelationForRealm(row, info.updateRealm).Failed()) {
    log.Error("MULTIENTITY_ERROR:: not able to update relation, realm [%s]", info.realmId.c_str());
    return MEStatusWriteFailed;
  }
  log.Note("MULTIENTITY::Existing %s", log.Name());
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::DeleteRelation(Util::TString realmId, bool force) {
  const OperationLog log{operations::DeleteRelation};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: DeleteRelation :Feature is disabled")) return MEStatusFeatureDisabled;
  if (!MayManageRelations(log, "MULTIENTITY: No permission to delete relation")) return MEStatusPermissionDenied;

  if (!IsRealmIdValid(realmId)) {
    log.Error("MULTIENTITY_ERROR::DeleteRelation failed as Invalid data for realm [%s]", realmId.c_str());
    return MEStatusInvalidData;
  }

  DBMultiEntityRelation row{};
  if (Host().multiEntity.GetRelation(realmId, row).Failed()) {
    log.Error("MULTIENTITY_ERROR:: not able to delete as relation is not part of table realm [%s]", realmId.c_str());
    return MEStatusInvalidData;
  }
  if (!force && row.state == MEStatePending) {
    log.Note("MULTIENTITY:: do not delete relation as pending, realm [%s]", realmId.c_str());
    return MEStatusRelationPending;
  }

  if (Host().multiEntity.HasAnyMatchingTransaction(row.relationId)) {
    row.state = MEStateDeactivated;
    if (Host().multiEntity.UpdateRelationForRealm(row, {}).Failed()) {
      log.Error("MULTIENTITY_ERROR:: not able to deactivate relation, realm [%s]", realmId.c_str());
      return MEStatusWriteFailed;
    }
  } else if (Host().multiEntity.DeleteRelation(FieldText(row.realmId)).Failed()) {
    log.Error("MULTIENTITY_ERROR:: not able to delete relation from DB, realm [%s]", realmId.c_str());
    return MEStatusDeleteFailed;
  }
  log.Note("MULTIENTITY::Existing %s", log.Name());
  return MEStatusSuccess;
}
