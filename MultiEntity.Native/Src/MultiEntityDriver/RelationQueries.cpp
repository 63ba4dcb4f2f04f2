#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/BoundedCopy.h"

// Which lines an operation writes differs from one to the other, and the readers of the log rely on it: only
// GetRelation has an exit line, and a missing relation is a warning there.

MEStatusCode MultiEntityDriver::GetRelation(Util::TString realmId, DBMultiEntityRelation& out) {
  const OperationLog log{operations::GetRelation};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetRelation :Feature is disabled")) return MEStatusFeatureDisabled;
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);

  if (!IsRealmIdValid(realmId)) {
    log.Error("MULTIENTITY_ERROR::GetRelation failed as Invalid data for realm [%s]", realmId.c_str());
    return MEStatusInvalidData;
  }
  if (Host().multiEntity.GetRelation(realmId, out).Failed()) {
    log.Warning("MULTIENTITY_WARNING:: not able to get the relation as it is not part of table realm [%s]",
                realmId.c_str());
    return MEStatusInvalidData;
  }
  log.Exiting();
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::GetRelationById(long relationId, DBMultiEntityRelation& out) {
  const OperationLog log{operations::GetRelationById};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetRelationById :Feature is disabled")) return MEStatusFeatureDisabled;
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);

  if (Host().multiEntity.GetRelationById(relationId, out).Failed()) {
    log.Error("MULTIENTITY_ERROR:: GetRelationById :Not able to fetch data from relation table");
    return MEStatusReadFailed;
  }
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::GetRelationsList(std::vector<DBMultiEntityRelation>& out) {
  const OperationLog log{operations::GetRelationsList};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetAllRelations :Feature is disabled")) return MEStatusFeatureDisabled;
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);

  if (Host().multiEntity.GetAllRelations(out).Failed()) {
    log.Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table");
    return MEStatusReadFailed;
  }
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::GetRelationRealmIdList(std::vector<std::string>& out, bool skipWithoutAccounts) {
  const OperationLog log{operations::GetRelationRealmIdList};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetRelationRealmIdList :Feature is disabled")) {
    return MEStatusFeatureDisabled;
  }
  HasMEPermission(MEPermissionViewRelations, kFeatureNone);

  std::vector<DBMultiEntityRelation> relations;
  if (Host().multiEntity.GetAllRelations(relations).Failed()) {
    log.Error("MULTIENTITY_ERROR:: GetRelationRealmIdList :Not able to fetch data from relation table");
    return MEStatusReadFailed;
  }
  for (const DBMultiEntityRelation& relation : relations) {
    if (skipWithoutAccounts && relation.state == MEStateWithoutAccounts) continue;
    out.emplace_back(FieldText(relation.realmId));
  }
  return MEStatusSuccess;
}
