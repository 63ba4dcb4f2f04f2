#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/TransactionTypes.h"

namespace {

bool IsRequestIdValid(const Util::TString& requestId) noexcept {
  return !requestId.empty() && requestId.size() <= kRequestIdLength;
}

// Rows of a type that no right guards may be updated by anyone.
bool MayUpdate(std::int16_t txnType, MEPermissionType permission) {
  const ProgramFeature feature = FeatureOfTxnType(txnType);
  return feature == kFeatureNone || MultiEntityDriver::HasMEPermission(permission, feature);
}

MEPermissionType PermissionToLeave(std::int16_t state) noexcept {
  switch (state) {
    case 0:
      return MEPermissionCreateTransactions;
    case 2:
      return MEPermissionModifyTransactions;
    default:
      return MEPermissionViewTransactions;
  }
}

// The two forms of the update write different words on purpose.
void NoteRefusedUpdateByRequest(const OperationLog& log, std::int16_t txnType) {
  switch (txnType) {
    case kTxnTypeBill:
      log.Note("MULTIENTITY_ERROR: No permission to update Bills");
      break;
    case kTxnTypeCheck:
      log.Note("MULTIENTITY_ERROR: No permission to update Checks");
      break;
    default:
      log.Note("MULTIENTITY_ERROR: No permission to update GJE");
      break;
  }
}

void NoteRefusedUpdateByLine(const OperationLog& log, std::int16_t txnType) {
  switch (txnType) {
    case kTxnTypeBill:
      log.Note("MULTIENTITY: No permission to update Bills");
      break;
    case kTxnTypeCheck:
      log.Note("MULTIENTITY: No permission to update Checks");
      break;
    default:
      log.Note("MULTIENTITY: No permission to update GJE");
      break;
  }
}

}  // namespace

// The log knows this form as UpdateRelationsWithState in its first refusals, and its readers search for that name.
MEStatusCode MultiEntityDriver::UpdateTransactionWithState(Util::TString partnerRealmId, Util::TString requestId,
                                                           MEState state) {
  const OperationLog log{operations::UpdateTransactionWithStateByRequest};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: UpdateRelationsWithState :Feature is disabled")) {
    return MEStatusFeatureDisabled;
  }

  if (!IsRealmIdValid(partnerRealmId)) {
    log.Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm [%s]",
              partnerRealmId.c_str());
    return MEStatusInvalidData;
  }
  if (!IsRequestIdValid(requestId)) {
    log.Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for requestId [%s]",
              requestId.c_str());
    return MEStatusInvalidData;
  }

  DBMultiEntityRelation relation{};
  if (Host().multiEntity.GetRelation(partnerRealmId, relation).Failed() || relation.relationId == 0) {
    log.Error("MULTIENTITY_ERROR:: not able to update as relation is not part of table realm [%s]",
              partnerRealmId.c_str());
    return MEStatusInvalidData;
  }
  DBMultiEntityTransaction row{};
  if (Host().multiEntity.GetTransactionWithRequestId(relation.relationId, requestId, row).Failed()) {
    log.Warning("MULTIENTITY_WARNING:: not able to update as transaction is not part of table realm [%s]",
                partnerRealmId.c_str());
    return MEStatusInvalidData;
  }
  row.state = static_cast<std::int16_t>(state);

  if (!MayUpdate(row.txnType, MEPermissionModifyTransactions)) {
    NoteRefusedUpdateByRequest(log, row.txnType);
    return MEStatusPermissionDenied;
  }

  // The host is asked for the line, but whether there is data is told by the row alone.
  static_cast<void>(Host().lines.TargExists(row.targetId, kViewAny));
  if (row.txnType == kTxnTypeNone) {
    log.Error("MULTIENTITY_ERROR:: Not able to fetch data for targetId [%d] in %s", row.targetId, log.Name());
    return MEStatusInvalidData;
  }

  if (state == MEStateEstablished && Host().journal.UpdateMETransaction(row.txnId, row.txnType) != kEdListSuccess) {
    log.Error("MULTIENTITY_ERROR:: Not able to delete GJE in  %s", log.Name());
    return MEStatusRowsNotRemoved;
  }
  if (Host().multiEntity.UpdateTransaction(row).Failed()) {
    log.Error("MULTIENTITY_ERROR:: Not able to update transaction data with id [%d] from transaction table %s",
              row.txnId, log.Name());
    return MEStatusReadFailed;
  }
  log.Note("MULTIENTITY::Existing %s", log.Name());
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::UpdateTransactionWithState(std::int32_t txnId, std::int32_t targetId, MEState state) {
  const OperationLog log{operations::UpdateTransactionWithStateByLine};
  DBMultiEntityTransaction row{};
  if (Host().multiEntity.GetTransaction(txnId, targetId, row).Failed()) {
    log.Error("MULTIENTITY_ERROR::GetTransaction failed for txnId [%d] , targetId [%d],  %s", txnId, targetId,
              log.Name());
    return MEStatusInvalidData;
  }

  const MEPermissionType permission = PermissionToLeave(row.state);
  row.state = static_cast<std::int16_t>(state);
  if (!MayUpdate(row.txnType, permission)) {
    NoteRefusedUpdateByLine(log, row.txnType);
    return MEStatusPermissionDenied;
  }

  if (Host().multiEntity.UpdateTransaction(row).Failed()) {
    log.Error("MULTIENTITY_ERROR:not able to UpdateTransaction for txnid [%d] and targetId [%d]", row.txnId,
              row.targetId);
    return MEStatusWriteFailed;
  }
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::DoesTransactionExist(Util::TString partnerRealmId, Util::TString requestId) {
  const OperationLog log{operations::DoesTransactionExist};
  try {
    MultiEntityDBManager& store = Host().multiEntity;
    DBMultiEntityRelation relation{};
    if (store.GetRelation(partnerRealmId, relation).Failed() || relation.relationId == 0) return MEStatusDeclined;

    if (store.HasAnyMatchingTransaction(requestId, relation.relationId)) {
      log.Note("MULTIENTITY:: Matching Transaction found for partner realm [%s], request id [%s]",
               partnerRealmId.c_str(), requestId.c_str());
      return MEStatusSuccess;
    }
    // A rejected request is known by its id alone, whichever partner sent it.
    if (store.HasAnyMatchingRejectedTransaction(requestId)) {
      log.Note("MULTIENTITY:: Matching Rejected Transaction found for partner realm [%s], request id [%s]",
               partnerRealmId.c_str(), requestId.c_str());
      return MEStatusSuccess;
    }
    return MEStatusDeclined;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:: exception occured during fetching data  %s", log.Name());
    return MEStatusException;
  }
}
