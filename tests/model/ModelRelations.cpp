#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

#include "model/Model.h"

namespace model {

namespace {

const std::string kEntering = "MULTIENTITY::Entering ";
const std::string kExiting = "MULTIENTITY::Exiting ";
const std::string kExisting = "MULTIENTITY::Existing ";

bool HasLength(const Util::TString& text, std::size_t longest) {
  return text.size() >= 1 && text.size() <= longest;
}

std::string InBrackets(const Util::TString& text) {
  return "[" + std::string(text.view()) + "]";
}

std::string InBrackets(std::int32_t number) {
  return "[" + std::to_string(number) + "]";
}

std::string InvalidData(const std::string& operation, const Util::TString& realmId) {
  return "MULTIENTITY_ERROR::" + operation + " failed as Invalid data for realm " + InBrackets(realmId);
}

}  // namespace

MEStatusCode Model::CreateRelation(Util::TString realmId, Util::TString partnerName, MERelationType relationType,
                                   MEState state, std::vector<MEAccountInfo> accounts) {
  const std::string name = "MultiEntityDriver::CreateRelation";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: CreateRelation :Feature is disabled");
    return MEStatusCode{2};
  }
  if (!MayManageRelations()) {
    Trace(name, "MULTIENTITY: No permission to create relation");
    return MEStatusCode{3};
  }
  if (!HasLength(partnerName, 59) || !HasLength(realmId, 19)) {
    Error(name, InvalidData("CreateRelation", realmId));
    return MEStatusCode{12};
  }

  DBMultiEntityRelation row{};
  if (world_.GetRelation(realmId.view(), row).Succeeded()) {
    if (row.state != 4 && row.state != 1) {
      Warning(name, "MULTIENTITY_WARNING:: record already part of table realm " + InBrackets(realmId));
      return MEStatusCode{13};
    }
    const MEStatusCode filled = PopulateCOAInRelation(row, accounts);
    if (filled != 1) return filled;
    row.state = static_cast<std::int16_t>(state);
    if (world_.UpdateRelationForRealm(row, "").Succeeded()) {
      Trace(name, kExiting + name);
      return MEStatusCode{1};
    }
    Error(name, "MULTIENTITY_ERROR:: not able to update relation, realm " + InBrackets(realmId));
    return MEStatusCode{10};
  }

  row = {};
  if (state != 4) {
    if (accounts.size() != 2) {
      Error(name, InvalidData("CreateRelation", realmId));
      return MEStatusCode{12};
    }
    if (world_.HasAnyMatchingRecord(realmId.view(), accounts[0].accountId, accounts[1].accountId)) {
      Warning(name, "MULTIENTITY_WARNING:: record already part of table realm " + InBrackets(realmId) + ", accnt1 " +
                        InBrackets(accounts[0].accountId) + ", accnt2 " + InBrackets(accounts[1].accountId));
      return MEStatusCode{13};
    }
    const MEStatusCode filled = PopulateCOAInRelation(row, accounts);
    if (filled != 1) return filled;
  }
  std::memcpy(row.realmId, realmId.c_str(), realmId.size());
  std::memcpy(row.partnerName, partnerName.c_str(), partnerName.size());
  row.relationType = static_cast<std::int16_t>(relationType);
  row.state = static_cast<std::int16_t>(state);
  const std::string accountsOfRow =
      "due_from_accnt_id " + InBrackets(row.dueFromAccountId) + ", due_to_accnt_id " + InBrackets(row.dueToAccountId);
  if (world_.SaveRelation(row).Succeeded()) return MEStatusCode{1};
  Error(name, "MULTIENTITY_ERROR:: Relation creation failed for realm " + InBrackets(realmId) + ", " + accountsOfRow);
  return MEStatusCode{10};
}

MEStatusCode Model::PopulateCOAInRelation(DBMultiEntityRelation& row, std::vector<MEAccountInfo> accounts) {
  const std::string name = "MultiEntityDriver::PopulateCOAInRelation";
  world_.EdListRefreshList(world_.GetAccntListPtr(), 1);
  for (const MEAccountInfo& account : accounts) {
    const std::string id = "id " + InBrackets(account.accountId);
    if (world_.GetAccountForRecnum(account.accountId) != 1) {
      Error(name, "MULTIENTITY_ERROR:: no matching Accnt for " + id + " in  " + name);
      return MEStatusCode{28};
    }
    if (world_.GetDeleted(account.accountId)) {
      Error(name, "MULTIENTITY_ERROR:: Accnt for " + id + " is marked deleted in  " + name);
      return MEStatusCode{28};
    }
    if (!EligibleOnceRead(account.accountId)) {
      Error(name, "MULTIENTITY_ERROR:: Can not use Accnt for MultiEntity for " + id + " in  " + name);
      return MEStatusCode{28};
    }
    if (account.role == 0) row.dueFromAccountId = account.accountId;
    if (account.role == 1) row.dueToAccountId = account.accountId;
  }
  return MEStatusCode{1};
}

MEStatusCode Model::UpdateRelation(MERelationInfo info) {
  const std::string name = "MultiEntityDriver::UpdateRelation";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: UpdateRelationsWithState :Feature is disabled");
    return MEStatusCode{2};
  }
  if (!info.skipPermissionCheck && !MayManageRelations()) {
    Trace(name, "MULTIENTITY: No permission to update relation");
    return MEStatusCode{3};
  }
  if (!HasLength(info.realmId, 19)) {
    Error(name, InvalidData("UpdateRelationsWithState", info.realmId));
    return MEStatusCode{12};
  }
  DBMultiEntityRelation row{};
  if (!world_.GetRelation(info.realmId.view(), row).Succeeded()) {
    Error(name,
          "MULTIENTITY_ERROR:: not able to update as relation is not part of table realm " + InBrackets(info.realmId));
    return MEStatusCode{12};
  }
  if (info.state != 6) row.state = static_cast<std::int16_t>(info.state);
  if (info.accounts.size() == 1) {
    Error(name, InvalidData("UpdateRelationsWithState", info.realmId));
    return MEStatusCode{12};
  }
  if (!info.accounts.empty()) {
    const std::int32_t first = info.accounts[0].accountId;
    const std::int32_t second = info.accounts[1].accountId;
    if (world_.HasAnyMatchingAccRecordExclRealm(info.realmId.view(), first, second)) {
      Warning(name, "MULTIENTITY_WARNING::  accnt1 " + InBrackets(first) + ", accnt2 " + InBrackets(second) +
                        " are already used by another realm");
      return MEStatusCode{13};
    }
    const MEStatusCode filled = PopulateCOAInRelation(row, info.accounts);
    if (filled != 1) return filled;
  }
  if (world_.UpdateRelationForRealm(row, info.updateRealm.view()).Succeeded()) {
    Trace(name, kExisting + name);
    return MEStatusCode{1};
  }
  Error(name, "MULTIENTITY_ERROR:: not able to update relation, realm " + InBrackets(info.realmId));
  return MEStatusCode{10};
}

MEStatusCode Model::DeleteRelation(Util::TString realmId, bool force) {
  const std::string name = "MultiEntityDriver::DeleteRelation";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: DeleteRelation :Feature is disabled");
    return MEStatusCode{2};
  }
  if (!MayManageRelations()) {
    Trace(name, "MULTIENTITY: No permission to delete relation");
    return MEStatusCode{3};
  }
  if (!HasLength(realmId, 19)) {
    Error(name, InvalidData("DeleteRelation", realmId));
    return MEStatusCode{12};
  }
  DBMultiEntityRelation row{};
  if (!world_.GetRelation(realmId.view(), row).Succeeded()) {
    Error(name, "MULTIENTITY_ERROR:: not able to delete as relation is not part of table realm " + InBrackets(realmId));
    return MEStatusCode{12};
  }
  if (!force && row.state == 1) {
    Trace(name, "MULTIENTITY:: do not delete relation as pending, realm " + InBrackets(realmId));
    return MEStatusCode{9};
  }
  if (world_.HasAnyMatchingTransaction(row.relationId)) {
    row.state = 5;
    if (!world_.UpdateRelationForRealm(row, "").Succeeded()) {
      Error(name, "MULTIENTITY_ERROR:: not able to deactivate relation, realm " + InBrackets(realmId));
      return MEStatusCode{10};
    }
  } else if (!world_.DeleteRelation(row.realmId).Succeeded()) {
    Error(name, "MULTIENTITY_ERROR:: not able to delete relation from DB, realm " + InBrackets(realmId));
    return MEStatusCode{11};
  }
  Trace(name, kExisting + name);
  return MEStatusCode{1};
}

MEStatusCode Model::GetRelation(Util::TString realmId, DBMultiEntityRelation& out) {
  const std::string name = "MultiEntityDriver::GetRelation";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetRelation :Feature is disabled");
    return MEStatusCode{2};
  }
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);
  if (!HasLength(realmId, 19)) {
    Error(name, InvalidData("GetRelation", realmId));
    return MEStatusCode{12};
  }
  if (!world_.GetRelation(realmId.view(), out).Succeeded()) {
    Warning(name, "MULTIENTITY_WARNING:: not able to get the relation as it is not part of table realm " +
                      InBrackets(realmId));
    return MEStatusCode{12};
  }
  Trace(name, kExiting + name);
  return MEStatusCode{1};
}

MEStatusCode Model::GetRelationById(long relationId, DBMultiEntityRelation& out) {
  const std::string name = "MultiEntityDriver::GetRelationById";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetRelationById :Feature is disabled");
    return MEStatusCode{2};
  }
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);
  if (world_.GetRelationById(relationId, out).Succeeded()) return MEStatusCode{1};
  Error(name, "MULTIENTITY_ERROR:: GetRelationById :Not able to fetch data from relation table");
  return MEStatusCode{8};
}

MEStatusCode Model::GetRelationsList(std::vector<DBMultiEntityRelation>& out) {
  const std::string name = "MultiEntityDriver::GetRelationsList";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetAllRelations :Feature is disabled");
    return MEStatusCode{2};
  }
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);
  if (world_.GetAllRelations(out).Succeeded()) return MEStatusCode{1};
  Error(name, "MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table");
  return MEStatusCode{8};
}

MEStatusCode Model::GetRelationRealmIdList(std::vector<std::string>& out, bool skipWithoutAccounts) {
  const std::string name = "MultiEntityDriver::GetRelationRealmIdList";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetRelationRealmIdList :Feature is disabled");
    return MEStatusCode{2};
  }
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);
  std::vector<DBMultiEntityRelation> rows;
  if (!world_.GetAllRelations(rows).Succeeded()) {
    Error(name, "MULTIENTITY_ERROR:: GetRelationRealmIdList :Not able to fetch data from relation table");
    return MEStatusCode{8};
  }
  for (const DBMultiEntityRelation& row : rows) {
    if (!skipWithoutAccounts || row.state != 4) out.emplace_back(row.realmId);
  }
  return MEStatusCode{1};
}

bool Model::EligibleOnceRead(long recnum) {
  const KrEnumerations::AccntTypeType type = world_.GetType(recnum);
  if (world_.GetIsSubAccnt(recnum)) return false;
  if (type == 1 || type == 5 || type == 15) return false;
  if (world_.IsSpecial(recnum, static_cast<KrEnumerations::SpecialAccountTypeType>(5))) return false;
  return AccountTypeSwitchedOn(type);
}

bool Model::IsCOAValidForMultiEntity(std::optional<long> recnum) {
  try {
    return recnum.has_value() && EligibleOnceRead(*recnum);
  } catch (...) {
    return false;
  }
}

MEStatusCode Model::GetAccountsList(std::unordered_map<long, std::pair<std::string, std::string>>& accounts,
                                    MEAccountFilter filter, std::string realmId) {
  const std::string name = "MultiEntityDriver::GetAccountsList";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetAllUnusedAccounts :Feature is disabled");
    return MEStatusCode{2};
  }
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);
  try {
    auto left = world_.GetAllAccounts();
    if (filter == 1 || filter == 2) {
      std::vector<DBMultiEntityRelation> rows;
      if (!world_.GetAllRelations(rows).Succeeded()) {
        Error(name, "MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table");
        return MEStatusCode{8};
      }
      for (const DBMultiEntityRelation& row : rows) {
        if (filter == 2 && realmId == row.realmId) continue;
        left.erase(row.dueFromAccountId);
        left.erase(row.dueToAccountId);
      }
    }
    std::vector<long> failing;
    for (const auto& entry : left) {
      world_.OpenAccount(entry.first, kFeatureTypeStandard);
      if (!EligibleOnceRead(entry.first)) failing.push_back(entry.first);
    }
    for (const long recnum : failing) left.erase(recnum);
    accounts = left;
  } catch (const std::out_of_range& exception) {
    Error(name, "MULTIENTITY_ERROR:: GetAllUnusedAccounts: Exception as out of range " + std::string(exception.what()));
    return MEStatusCode{14};
  } catch (...) {
    Error(name, "MULTIENTITY_ERROR:: GetAllUnusedAccounts: Unknown Exception ");
    return MEStatusCode{14};
  }
  Trace(name, kExiting + name);
  return MEStatusCode{1};
}

MEStatusCode Model::GetAccountListByType(short type, std::vector<std::pair<std::string, long>>& accounts) {
  const std::string name = "MultiEntityDriver::GetAccountListByType";
  Trace(name, kEntering + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetAccountList :Feature is disabled");
    return MEStatusCode{2};
  }
  accounts = world_.GetListOfAccounts(type);
  Trace(name, kExiting + name);
  return MEStatusCode{1};
}

}  // namespace model
