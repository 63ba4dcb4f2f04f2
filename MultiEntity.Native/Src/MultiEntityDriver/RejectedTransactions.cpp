#include <cstddef>

#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/BoundedCopy.h"
#include "MultiEntityDriver/MoneyText.h"
#include "MultiEntityDriver/TransactionTypes.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

// The state that the screens show a rejected transaction in.
constexpr std::int16_t kStateOfARejectedTxn = 4;

// Partners reject bills and checks only.
constexpr ProgramFeature FeatureOfRejectedTxn(std::int16_t txnType) noexcept {
  return txnType == kTxnTypeJournalEntry ? kFeatureNone : FeatureOfTxnType(txnType);
}

// The amount is cleared and copied as if its field were one character wider: its NUL may fall on the first character of
// the partner's id, which is written right after it. So an amount may fill its field and then has no NUL of its own.
void CopyAmount(DBMultiEntityRejectedTxnReceiver& row, const Util::TString& amount) {
  auto* bytes = reinterpret_cast<char*>(&row);
  BoundedCopy(bytes + offsetof(DBMultiEntityRejectedTxnReceiver, amount), kRejectedAmountLength + 1, amount);
}

BalType AmountOf(const DBMultiEntityRejectedTxnReceiver& row) {
  BalType amount;
  Host().money.String2Dollar(amount, Util::TString(FieldText(row.amount)).c_str());
  return amount;
}

MERejectedTxnInfo Describe(const DBMultiEntityRejectedTxnReceiver& row, const DBMultiEntityRelation& relation) {
  MERejectedTxnInfo info;
  info.txnType = static_cast<std::int16_t>(row.txnType);
  info.state = kStateOfARejectedTxn;
  info.realmId = FieldText(relation.realmId);
  info.partnerName = FieldText(relation.partnerName);
  info.requestId = FieldText(row.requestId);
  info.currencyCode = MultiEntityUtils::GetHomeCurrencyCode();
  info.amount = MoneyText(AmountOf(row));
  info.partnerTxnId = FieldText(row.partnerTxnId);
  return info;
}

// Whether the user may see a row; one that is left out leaves its line.
bool MaySee(const OperationLog& log, const DBMultiEntityRejectedTxnReceiver& row) {
  const auto requestId = Util::TString(FieldText(row.requestId));
  if (row.txnType == kTxnTypeBill && !MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureBills)) {
    log.Note("MULTIENTITY: No permission to update Bills for Request Id: %s", requestId.c_str());
    return false;
  }
  if (row.txnType == kTxnTypeCheck &&
      !MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureChecks)) {
    log.Note("MULTIENTITY: No permission to update Checks for Request Id: %s", requestId.c_str());
    return false;
  }
  return true;
}

}  // namespace

MEStatusCode MultiEntityDriver::SaveRejectedTransaction(Util::TString requestId, std::int16_t txnType,
                                                        Util::TString partnerRealmId, Util::TString amount,
                                                        Util::TString partnerTxnId) {
  const OperationLog log{operations::SaveRejectedTransaction};
  try {
    if (!HasMEPermission(MEPermissionViewTransactions, FeatureOfRejectedTxn(txnType))) {
      log.Note("MULTIENTITY: No permission to record txn");
      return MEStatusPermissionDenied;
    }
    DBMultiEntityRelation relation{};
    if (Host().multiEntity.GetRelation(partnerRealmId, relation).Failed() || relation.relationId < 1) {
      log.Error("MULTIENTITY_ERROR:: Relation fatching failed for realm [%s] in %s", partnerRealmId.c_str(),
                log.Name());
      return MEStatusInvalidData;
    }

    DBMultiEntityRejectedTxnReceiver row{};
    BoundedCopy(row.requestId, requestId);
    row.txnType = txnType;
    row.relationId = relation.relationId;
    CopyAmount(row, amount);
    BoundedCopy(row.partnerTxnId, partnerTxnId);

    if (Host().multiEntity.SaveRejectedTransaction(row).Failed()) {
      log.Error("MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in Rejected Txn table in  %s",
                log.Name());
      return MEStatusDeclined;
    }
    return MEStatusSuccess;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:: exception occured during fetching data  %s", log.Name());
    return MEStatusException;
  }
}

MEStatusCode MultiEntityDriver::GetAllRejectedTransaction(std::vector<MERejectedTxnInfo>& list) {
  const OperationLog log{operations::GetAllRejectedTransaction};
  log.Entering();
  if (!PassesFeatureGate(log, "MULTIENTITY: GetAllRejectedTransaction :Feature is disabled")) {
    return MEStatusFeatureDisabled;
  }

  std::vector<DBMultiEntityRejectedTxnReceiver> rows;
  if (Host().multiEntity.GetAllRejectedTransaction(rows).Failed()) {
    log.Error("MULTIENTITY_ERROR:: GetAllRejectedTransaction :Not able to fetch data from rejected txn table");
    return MEStatusReadFailed;
  }
  for (const DBMultiEntityRejectedTxnReceiver& row : rows) {
    if (!MaySee(log, row)) continue;

    DBMultiEntityRelation relation{};
    if (Host().multiEntity.GetRelationById(row.relationId, relation).Failed()) {
      log.Error("MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId [%d]  %s ", row.relationId,
                log.Name());
      return MEStatusReadFailed;
    }
    list.push_back(Describe(row, relation));
  }
  return MEStatusSuccess;
}

MEStatusCode MultiEntityDriver::DeleteRejectedTransaction(Util::TString requestId) {
  const OperationLog log{operations::DeleteRejectedTransaction};
  if (Host().multiEntity.DeleteRejectedTransaction(requestId).Failed()) {
    // A failed deletion is told with the words of a failed save, on purpose.
    log.Error("MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in ME Txn table in  %s", log.Name());
    return MEStatusDeclined;
  }
  return MEStatusSuccess;
}
