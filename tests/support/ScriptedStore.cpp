#include "support/ScriptedStore.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <span>

#include "MultiEntityHost/Enumerations.h"

namespace {

const Util::Status kDone{Util::Status::kSuccess};
const Util::Status kDeclined{-1};

Util::Status Failed(const ScriptedFailure& failure) {
  return Util::Status(failure.code.value_or(-1));
}

// What was to be filled is unspecified after a failure, so that nobody can rely on it.
template <class Row>
Util::Status Spoiled(Row& row, Util::Status status) {
  std::memset(&row, 'Z', sizeof row);
  return status;
}

template <class Row>
Util::Status Spoiled(std::vector<Row>& rows, Util::Status status) {
  return Spoiled(rows.emplace_back(), status);
}

template <class Row, class Test>
Util::Status CopyFirst(const std::vector<Row>& rows, Row& out, Test test) {
  const auto found = std::ranges::find_if(rows, test);
  if (found == rows.end()) return Spoiled(out, kDeclined);
  out = *found;
  return kDone;
}

template <class Row, class Test>
bool EraseAny(std::vector<Row>& rows, Test test) {
  return std::erase_if(rows, test) != 0;
}

bool SameIgnoringCase(std::string_view left, std::string_view right) {
  const auto fold = [](unsigned char character) {
    return std::tolower(character);
  };
  return std::ranges::equal(left, right, {}, fold, fold);
}

auto OfLine(std::int32_t txnId, std::int32_t targetId) {
  return [=](const DBMultiEntityTransaction& row) {
    return row.txnId == txnId && row.targetId == targetId;
  };
}

auto OfRequest(const Util::TString& requestId, std::int32_t relationId) {
  return [request = requestId.view(), relationId](const DBMultiEntityTransaction& row) {
    return row.relationId == relationId && row.requestId == request;
  };
}

auto OfRejectedRequest(const Util::TString& requestId) {
  return [request = requestId.view()](const DBMultiEntityRejectedTxnReceiver& row) {
    return row.requestId == request;
  };
}

// An account id of 0 is none, and matches no other.
bool UsesOneOf(const DBMultiEntityRelation& row, long account1, long account2) {
  const auto uses = [&](long account) {
    return account != 0 && (row.dueFromAccountId == account || row.dueToAccountId == account);
  };
  return uses(account1) || uses(account2);
}

void CopyText(std::span<char> field, std::string_view text) {
  std::ranges::copy(text.substr(0, field.size()), field.begin());
}

}  // namespace

std::function<bool(const DBMultiEntityRelation&)> ScriptedStore::OfRealm(Util::TString realmId) const {
  if (!realmIdsIgnoreCase)
    return [realmId](const auto& row) {
      return row.realmId == realmId.view();
    };
  return [realmId](const auto& row) {
    return SameIgnoringCase(row.realmId, realmId.view());
  };
}

bool ScriptedStore::IsReferredTo(long relationId) const {
  return std::ranges::any_of(transactions, [=](const auto& row) { return row.relationId == relationId; });
}

Util::Status ScriptedStore::GetRelation(Util::TString realmId, DBMultiEntityRelation& row) {
  if (const auto failure = script_.Call("GetRelation", realmId)) return Spoiled(row, Failed(*failure));
  return CopyFirst(relations, row, OfRealm(realmId));
}

Util::Status ScriptedStore::GetRelationById(long relationId, DBMultiEntityRelation& row) {
  if (const auto failure = script_.Call("GetRelationById", relationId)) return Spoiled(row, Failed(*failure));
  return CopyFirst(relations, row, [=](const auto& candidate) { return candidate.relationId == relationId; });
}

Util::Status ScriptedStore::GetAllRelations(std::vector<DBMultiEntityRelation>& rows) {
  if (const auto failure = script_.Call("GetAllRelations")) return Spoiled(rows, Failed(*failure));
  rows = relations;
  return kDone;
}

Util::Status ScriptedStore::SaveRelation(DBMultiEntityRelation& row) {
  relationsHandedIn.push_back(row);
  if (const auto failure = script_.Call("SaveRelation", row)) return Failed(*failure);
  if (std::ranges::any_of(relations, OfRealm(row.realmId))) return kDeclined;

  const auto largest = std::ranges::max_element(relations, {}, &DBMultiEntityRelation::relationId);
  const std::int32_t taken = largest == relations.end() ? 0 : largest->relationId;
  lastRelationId_ = std::max(lastRelationId_, taken) + 1;
  row.relationId = lastRelationId_;
  row.revision = 1;
  row.createdAt = row.changedAt = now;
  relations.push_back(row);
  return kDone;
}

Util::Status ScriptedStore::UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString realm) {
  relationsHandedIn.push_back(row);
  if (const auto failure = script_.Call("UpdateRelationForRealm", row, realm)) return Failed(*failure);
  const auto stored = std::ranges::find_if(relations, OfRealm(row.realmId));
  if (stored == relations.end()) return kDeclined;

  row.relationId = stored->relationId;
  row.revision = stored->revision + 1;
  row.createdAt = stored->createdAt;
  row.changedAt = now;
  *stored = row;
  return kDone;
}

Util::Status ScriptedStore::DeleteRelation(Util::TString realmId) {
  if (const auto failure = script_.Call("DeleteRelation", realmId)) return Failed(*failure);
  const auto stored = std::ranges::find_if(relations, OfRealm(realmId));
  if (stored == relations.end() || IsReferredTo(stored->relationId)) return kDeclined;
  relations.erase(stored);
  return kDone;
}

bool ScriptedStore::HasAnyMatchingRecord(Util::TString realmId, long account1, long account2) {
  if (script_.Call("HasAnyMatchingRecord", realmId, account1, account2)) return false;
  return std::ranges::any_of(relations, [&](const auto& row) { return UsesOneOf(row, account1, account2); });
}

bool ScriptedStore::HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) {
  if (script_.Call("HasAnyMatchingAccRecordExclRealm", realmId, account1, account2)) return false;
  return std::ranges::any_of(
      relations, [&](const auto& row) { return !OfRealm(realmId)(row) && UsesOneOf(row, account1, account2); });
}

bool ScriptedStore::HasAnyMatchingTransaction(long relationId) {
  if (script_.Call("HasAnyMatchingTransaction", relationId)) return false;
  return IsReferredTo(relationId);
}

Util::Status ScriptedStore::SaveTransaction(DBMultiEntityTransaction& row) {
  transactionsHandedIn.push_back(row);
  if (const auto failure = script_.Call("SaveTransaction", row)) return Failed(*failure);
  const bool lineTaken =
      std::ranges::any_of(transactions, [&](const auto& other) { return other.targetId == row.targetId; });
  const bool requestTaken = std::ranges::any_of(transactions, [&](const auto& other) {
    return other.txnType == kTxnTypeJournalEntry && OfRequest(row.requestId, row.relationId)(other);
  });
  const bool isJournalRequest = row.txnType == kTxnTypeJournalEntry && row.requestId[0] != '\0';
  const bool hasRelation =
      std::ranges::any_of(relations, [&](const auto& other) { return other.relationId == row.relationId; });
  if (!hasRelation || lineTaken || (isJournalRequest && requestTaken)) return kDeclined;
  transactions.push_back(row);
  return kDone;
}

Util::Status ScriptedStore::GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) {
  if (const auto failure = script_.Call("GetTransaction", txnId, targetId)) return Spoiled(row, Failed(*failure));
  return CopyFirst(transactions, row, OfLine(txnId, targetId));
}

Util::Status ScriptedStore::GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                                        DBMultiEntityTransaction& row) {
  const auto failure = script_.Call("GetTransactionWithRequestId", relationId, requestId);
  if (failure) return Spoiled(row, Failed(*failure));
  return CopyFirst(transactions, row, OfRequest(requestId, relationId));
}

Util::Status ScriptedStore::UpdateTransaction(DBMultiEntityTransaction& row) {
  transactionsHandedIn.push_back(row);
  if (const auto failure = script_.Call("UpdateTransaction", row)) return Failed(*failure);
  const auto stored = std::ranges::find_if(transactions, OfLine(row.txnId, row.targetId));
  if (stored == transactions.end()) return kDeclined;
  *stored = row;
  return kDone;
}

Util::Status ScriptedStore::DeleteTransaction(std::int32_t txnId) {
  if (const auto failure = script_.Call("DeleteTransaction", txnId)) return Failed(*failure);
  EraseAny(transactions, [=](const auto& row) { return row.txnId == txnId; });
  return kDone;
}

Util::Status ScriptedStore::GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) {
  if (const auto failure = script_.Call("GetTransactionWithTargets", txnId)) return Spoiled(rows, Failed(*failure));
  rows.clear();
  std::ranges::copy_if(transactions, std::back_inserter(rows), [=](const auto& row) { return row.txnId == txnId; });
  std::ranges::stable_sort(rows, {}, &DBMultiEntityTransaction::targetId);
  return kDone;
}

Util::Status ScriptedStore::GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) {
  if (const auto failure = script_.Call("GetAllTransactionWithTargets")) return Spoiled(rows, Failed(*failure));
  rows = transactions;
  return kDone;
}

bool ScriptedStore::HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) {
  if (script_.Call("HasAnyMatchingTransaction", requestId, relationId)) return false;
  return std::ranges::any_of(transactions, OfRequest(requestId, relationId));
}

Util::Status ScriptedStore::SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) {
  rejectedHandedIn.push_back(row);
  if (const auto failure = script_.Call("SaveRejectedTransaction", row)) return Failed(*failure);
  rejected.push_back(row);
  return kDone;
}

Util::Status ScriptedStore::GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  if (const auto failure = script_.Call("GetAllRejectedTransaction")) return Spoiled(rows, Failed(*failure));
  rows = rejected;
  return kDone;
}

Util::Status ScriptedStore::DeleteRejectedTransaction(Util::TString requestId) {
  if (const auto failure = script_.Call("DeleteRejectedTransaction", requestId)) return Failed(*failure);
  return EraseAny(rejected, OfRejectedRequest(requestId)) ? kDone : kDeclined;
}

bool ScriptedStore::HasAnyMatchingRejectedTransaction(Util::TString requestId) {
  if (script_.Call("HasAnyMatchingRejectedTransaction", requestId)) return false;
  return std::ranges::any_of(rejected, OfRejectedRequest(requestId));
}

DBMultiEntityRelation RelationRow(const RelationFields& fields) {
  DBMultiEntityRelation row{};
  row.relationId = fields.relationId;
  CopyText(row.realmId, fields.realmId);
  CopyText(row.partnerName, fields.partnerName);
  row.relationType = fields.relationType;
  row.state = fields.state;
  row.dueFromAccountId = fields.dueFromAccountId;
  row.dueToAccountId = fields.dueToAccountId;
  return row;
}

DBMultiEntityTransaction TransactionRow(const TransactionFields& fields) {
  DBMultiEntityTransaction row{};
  row.txnId = fields.txnId;
  row.relationId = fields.relationId;
  row.targetId = fields.targetId;
  CopyText(row.requestId, fields.requestId);
  row.txnType = fields.txnType;
  row.state = fields.state;
  return row;
}

DBMultiEntityRejectedTxnReceiver RejectedRow(const RejectedFields& fields) {
  DBMultiEntityRejectedTxnReceiver row{};
  CopyText(row.requestId, fields.requestId);
  row.txnType = fields.txnType;
  row.relationId = fields.relationId;
  CopyText(row.amount, fields.amount);
  CopyText(row.partnerTxnId, fields.partnerTxnId);
  return row;
}
