#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

#include "model/Model.h"

namespace model {

namespace {

std::string InBrackets(std::string_view text) {
  return "[" + std::string(text) + "]";
}

std::string InBrackets(std::int32_t number) {
  return "[" + std::to_string(number) + "]";
}

}  // namespace

// Fills a field that is `width` wide with its NUL and already zero. A text that does not fit leaves it so.
bool Model::BoundedCopy(char* field, std::size_t width, std::string_view text) {
  if (text.size() >= width) {
    world_.InvalidParameter();
    return false;
  }
  std::memcpy(field, text.data(), text.size());
  return true;
}

MEStatusCode Model::RecordGeneralJournalEntry(Util::TString partnerRealmId, MEAccountInfo expenseAccount,
                                              std::int32_t dueToAccountId, Util::TString amount,
                                              Util::TString requestId, MECNameInfo name, std::uint32_t& txnId) {
  const std::string operation = "MultiEntityDriver::RecordGeneralJournalEntry";
  try {
    return Book(partnerRealmId.view(), expenseAccount, dueToAccountId, amount.view(), requestId.view(), name, txnId);
  } catch (...) {
    Error(operation, "MULTIENTITY_ERROR:: exception occured during fetching data  " + operation);
    return MEStatusCode{14};
  }
}

MEStatusCode Model::Book(std::string_view realm, MEAccountInfo& expense, std::int32_t dueTo, std::string_view amount,
                         std::string_view requestId, MECNameInfo& name, std::uint32_t& txnId) {
  const std::string operation = "MultiEntityDriver::RecordGeneralJournalEntry";
  if (!HasMEPermission(MEPermissionCreateTransactions, ProgramFeature{19})) {
    Trace(operation, "MULTIENTITY: No permission to record GJE");
    return MEStatusCode{3};
  }

  if (expense.accountId == -1) {
    std::string text(expense.name.view());
    const int created = world_.CreateNewChartOfAccount(text.data(), expense.type, expense.accountId, false);
    if (created != 1) return created == 3 ? MEStatusCode{5} : MEStatusCode{6};
  }
  if (world_.GetAccountForRecnum(expense.accountId) != 1) {
    Error(operation, "MULTIENTITY_ERROR:: no matching Expense Accnt for id " + InBrackets(expense.accountId) + " in  " +
                         operation);
    return MEStatusCode{6};
  }

  DBMultiEntityRelation relation{};
  if (!world_.GetRelation(realm, relation).Succeeded() || relation.relationId < 1) {
    Error(operation,
          "MULTIENTITY_ERROR:: Relation fatching failed for realm " + InBrackets(realm) + " in " + operation);
    return MEStatusCode{12};
  }
  if (world_.GetAccountForRecnum(dueTo) != 1) {
    Error(operation, "MULTIENTITY_ERROR:: no matching Due to Accnt for id " + InBrackets(dueTo) + " in  " + operation);
    return MEStatusCode{6};
  }

  if (name.nameId == -1) {
    const int created = world_.CreateCName(name.name, kNameTypeVendor, name.nameId);
    if (created != 1) return created == 7 ? MEStatusCode{16} : MEStatusCode{17};
  }

  JournalEntryIds ids{};
  const int booked =
      world_.CreateGeneralJournalEntry(dueTo, expense.accountId, amount, ids, name.nameId, name.name.view());
  if (booked != 1) {
    Error(operation, "MULTIENTITY_ERROR:: Not able to create GJE in  " + operation);
    return MEStatusCode{0};
  }

  DBMultiEntityTransaction row{};
  row.txnId = static_cast<std::int32_t>(ids.first);
  row.relationId = relation.relationId;
  row.targetId = static_cast<std::int32_t>(ids.second);
  BoundedCopy(row.requestId, 37, requestId);
  row.txnType = 8;
  row.state = 3;
  txnId = ids.first;
  if (world_.SaveTransaction(row).Succeeded()) return MEStatusCode{1};

  Error(operation, "MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  " + operation);
  if (world_.DeleteGeneralJournalEntry(ids.first, memory_.removalUnderWay) == 1) return MEStatusCode{0};
  Error(operation, "MULTIENTITY_ERROR:: Not able to delete GJE in  " + operation);
  return MEStatusCode{18};
}

MEStatusCode Model::RemoveGeneralJournalEntry(std::uint32_t txnId) {
  const std::string operation = "MultiEntityDriver::RemoveGeneralJournalEntry";
  bool deleted = false;
  memory_.removalUnderWay = true;
  try {
    deleted = world_.DeleteGeneralJournalEntry(txnId, memory_.removalUnderWay) == 1;
  } catch (...) {
    deleted = false;
  }
  memory_.removalUnderWay = false;
  if (!deleted) {
    Error(operation, "MULTIENTITY_ERROR:: Not able to delete GJE in  " + operation);
    return MEStatusCode{18};
  }

  bool rowsDeleted = false;
  try {
    rowsDeleted = world_.DeleteTransaction(static_cast<std::int32_t>(txnId)).Succeeded();
  } catch (...) {
    rowsDeleted = false;
  }
  if (rowsDeleted) return MEStatusCode{1};
  Error(operation, "MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  " + operation);
  return MEStatusCode{19};
}

void Model::SetGJEDeletionDueToFDPFailure(bool deleting) {
  memory_.removalUnderWay = deleting;
}

bool Model::GetGJEDeletionDueToFDPFailure() {
  return memory_.removalUnderWay;
}

MEStatusCode Model::UpdateTransactionWithState(Util::TString partnerRealmId, Util::TString requestId, MEState state) {
  const std::string name = "MultiEntityDriver::UpdateTransactionWithState";
  Trace(name, "MULTIENTITY::Entering " + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: UpdateRelationsWithState :Feature is disabled");
    return MEStatusCode{2};
  }
  if (partnerRealmId.empty() || partnerRealmId.size() > 19) {
    Error(name, "MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm " +
                    InBrackets(partnerRealmId.view()));
    return MEStatusCode{12};
  }
  if (requestId.empty() || requestId.size() > 36) {
    Error(name, "MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for requestId " +
                    InBrackets(requestId.view()));
    return MEStatusCode{12};
  }
  DBMultiEntityRelation relation{};
  if (!world_.GetRelation(partnerRealmId.view(), relation).Succeeded() || relation.relationId == 0) {
    Error(name, "MULTIENTITY_ERROR:: not able to update as relation is not part of table realm " +
                    InBrackets(partnerRealmId.view()));
    return MEStatusCode{12};
  }
  DBMultiEntityTransaction row{};
  if (!world_.GetTransactionWithRequestId(relation.relationId, requestId.view(), row).Succeeded()) {
    Warning(name, "MULTIENTITY_WARNING:: not able to update as transaction is not part of table realm " +
                      InBrackets(partnerRealmId.view()));
    return MEStatusCode{12};
  }
  row.state = static_cast<std::int16_t>(state);
  if (!MayHandle(3, row.txnType)) {
    Trace(name, "MULTIENTITY_ERROR: No permission to update " + std::string(*KindOf(row.txnType)));
    return MEStatusCode{3};
  }
  world_.TargExists(row.targetId, 0);
  if (row.txnType == 0) {
    Error(name, "MULTIENTITY_ERROR:: Not able to fetch data for targetId " + InBrackets(row.targetId) + " in " + name);
    return MEStatusCode{12};
  }
  if (state == 3 && world_.UpdateMETransaction(row.txnId, row.txnType) != 1) {
    Error(name, "MULTIENTITY_ERROR:: Not able to delete GJE in  " + name);
    return MEStatusCode{19};
  }
  if (world_.UpdateTransaction(row).Succeeded()) {
    Trace(name, "MULTIENTITY::Existing " + name);
    return MEStatusCode{1};
  }
  Error(name, "MULTIENTITY_ERROR:: Not able to update transaction data with id " + InBrackets(row.txnId) +
                  " from transaction table " + name);
  return MEStatusCode{8};
}

MEStatusCode Model::UpdateTransactionWithState(std::int32_t txnId, std::int32_t targetId, MEState state) {
  const std::string name = "MultiEntityDriver::UpdateTransactionWithState";
  DBMultiEntityTransaction row{};
  if (!world_.GetTransaction(txnId, targetId, row).Succeeded()) {
    Error(name, "MULTIENTITY_ERROR::GetTransaction failed for txnId " + InBrackets(txnId) + " , targetId " +
                    InBrackets(targetId) + ",  " + name);
    return MEStatusCode{12};
  }
  const std::int32_t permission = row.state == 0 ? 2 : row.state == 2 ? 3 : 4;
  row.state = static_cast<std::int16_t>(state);
  if (!MayHandle(permission, row.txnType)) {
    Trace(name, "MULTIENTITY: No permission to update " + std::string(*KindOf(row.txnType)));
    return MEStatusCode{3};
  }
  if (world_.UpdateTransaction(row).Succeeded()) return MEStatusCode{1};
  Error(name, "MULTIENTITY_ERROR:not able to UpdateTransaction for txnid " + InBrackets(row.txnId) + " and targetId " +
                  InBrackets(row.targetId));
  return MEStatusCode{10};
}

MEStatusCode Model::DoesTransactionExist(Util::TString partnerRealmId, Util::TString requestId) {
  const std::string name = "MultiEntityDriver::DoesTransactionExist";
  const std::string found =
      " found for partner realm " + InBrackets(partnerRealmId.view()) + ", request id " + InBrackets(requestId.view());
  try {
    DBMultiEntityRelation relation{};
    if (!world_.GetRelation(partnerRealmId.view(), relation).Succeeded() || relation.relationId == 0) {
      return MEStatusCode{0};
    }
    if (world_.HasAnyMatchingTransaction(requestId.view(), relation.relationId)) {
      Trace(name, "MULTIENTITY:: Matching Transaction" + found);
      return MEStatusCode{1};
    }
    if (world_.HasAnyMatchingRejectedTransaction(requestId.view())) {
      Trace(name, "MULTIENTITY:: Matching Rejected Transaction" + found);
      return MEStatusCode{1};
    }
    return MEStatusCode{0};
  } catch (...) {
    Error(name, "MULTIENTITY_ERROR:: exception occured during fetching data  " + name);
    return MEStatusCode{14};
  }
}

MEStatusCode Model::SaveRejectedTransaction(Util::TString requestId, std::int16_t txnType, Util::TString partnerRealmId,
                                            Util::TString amount, Util::TString partnerTxnId) {
  const std::string name = "MultiEntityDriver::SaveRejectedTransaction";
  try {
    const std::int32_t feature = txnType == 9 ? 20 : txnType == 3 ? 16 : 0;
    if (!HasMEPermission(MEPermissionViewTransactions, static_cast<ProgramFeature>(feature))) {
      Trace(name, "MULTIENTITY: No permission to record txn");
      return MEStatusCode{3};
    }
    DBMultiEntityRelation relation{};
    if (!world_.GetRelation(partnerRealmId.view(), relation).Succeeded() || relation.relationId < 1) {
      Error(name, "MULTIENTITY_ERROR:: Relation fatching failed for realm " + InBrackets(partnerRealmId.view()) +
                      " in " + name);
      return MEStatusCode{12};
    }
    DBMultiEntityRejectedTxnReceiver row{};
    BoundedCopy(row.requestId, 37, requestId.view());
    row.txnType = txnType;
    row.relationId = relation.relationId;
    BoundedCopy(row.amount, 23, amount.view());
    BoundedCopy(row.partnerTxnId, 37, partnerTxnId.view());
    if (world_.SaveRejectedTransaction(row).Succeeded()) return MEStatusCode{1};
    Error(name, "MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in Rejected Txn table in  " + name);
    return MEStatusCode{0};
  } catch (...) {
    Error(name, "MULTIENTITY_ERROR:: exception occured during fetching data  " + name);
    return MEStatusCode{14};
  }
}

MEStatusCode Model::GetAllRejectedTransaction(std::vector<MERejectedTxnInfo>& list) {
  const std::string name = "MultiEntityDriver::GetAllRejectedTransaction";
  Trace(name, "MULTIENTITY::Entering " + name);
  if (!IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    Trace(name, "MULTIENTITY: GetAllRejectedTransaction :Feature is disabled");
    return MEStatusCode{2};
  }
  std::vector<DBMultiEntityRejectedTxnReceiver> rows;
  if (!world_.GetAllRejectedTransaction(rows).Succeeded()) {
    Error(name, "MULTIENTITY_ERROR:: GetAllRejectedTransaction :Not able to fetch data from rejected txn table");
    return MEStatusCode{8};
  }
  for (const DBMultiEntityRejectedTxnReceiver& row : rows) {
    const bool asked = row.txnType == 9 || row.txnType == 3;
    if (asked && !MayHandle(4, row.txnType)) {
      Trace(name, "MULTIENTITY: No permission to update " + std::string(*KindOf(row.txnType)) +
                      " for Request Id: " + row.requestId);
      continue;
    }
    DBMultiEntityRelation relation{};
    if (!world_.GetRelationById(row.relationId, relation).Succeeded()) {
      Error(name, "MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId " + InBrackets(row.relationId) +
                      "  " + name + " ");
      return MEStatusCode{8};
    }
    const std::string_view whole(row.amount, sizeof row.amount);
    MERejectedTxnInfo entry;
    entry.txnType = static_cast<std::int16_t>(row.txnType);
    entry.state = 4;
    entry.realmId = Util::TString(relation.realmId);
    entry.partnerName = Util::TString(relation.partnerName);
    entry.requestId = Util::TString(row.requestId);
    entry.currencyCode = Util::TString(HomeCurrencyCode());
    std::int64_t minorUnits = 0;
    world_.String2Dollar(minorUnits, whole.substr(0, whole.find('\0')));
    entry.amount = Util::TString(DisplayAmount(minorUnits));
    entry.partnerTxnId = Util::TString(row.partnerTxnId);
    list.push_back(entry);
  }
  return MEStatusCode{1};
}

MEStatusCode Model::DeleteRejectedTransaction(Util::TString requestId) {
  const std::string name = "MultiEntityDriver::DeleteRejectedTransaction";
  if (world_.DeleteRejectedTransaction(requestId.view()).Succeeded()) return MEStatusCode{1};
  Error(name, "MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in ME Txn table in  " + name);
  return MEStatusCode{0};
}

}  // namespace model
