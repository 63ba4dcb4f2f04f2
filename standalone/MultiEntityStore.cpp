#include "standalone/MultiEntityStore.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string_view>

#include "standalone/Guard.h"

namespace standalone {

namespace {

constexpr std::size_t kMostRelationsHeld = 4096;

// A field of a row, which may be filled to its last character.
template <std::size_t kSize>
std::string_view Field(const char (&field)[kSize]) {
  return {field, static_cast<std::size_t>(std::find(field, field + kSize, '\0') - field)};
}

// Into the field of a row that is all zeros. The file holds no text that is too long; see the checks of its tables.
template <std::size_t kSize>
void Fill(char (&field)[kSize], std::string_view text) {
  std::copy_n(text.begin(), std::min(text.size(), kSize), field);
}

std::int64_t MillisecondsNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void ReadRelation(const Rows& rows, DBMultiEntityRelation& row) {
  std::memset(&row, 0, sizeof row);
  row.relationId = rows.Int32(0);
  Fill(row.realmId, rows.Text(1));
  Fill(row.partnerName, rows.Text(2));
  row.relationType = rows.Int16(3);
  row.state = rows.Int16(4);
  row.createdAt = rows.Int64(5);
  row.changedAt = rows.Int64(6);
  row.revision = rows.Int32(7);
  row.dueFromAccountId = rows.Int32(8);
  row.dueToAccountId = rows.Int32(9);
}

void ReadTransaction(const Rows& rows, DBMultiEntityTransaction& row) {
  std::memset(&row, 0, sizeof row);
  row.txnId = rows.Int32(0);
  row.relationId = rows.Int32(1);
  row.targetId = rows.Int32(2);
  Fill(row.requestId, rows.Text(3));
  row.txnType = rows.Int16(4);
  row.state = rows.Int16(5);
}

void ReadRejected(const Rows& rows, DBMultiEntityRejectedTxnReceiver& row) {
  std::memset(&row, 0, sizeof row);
  Fill(row.requestId, rows.Text(0));
  row.txnType = rows.Int32(1);
  row.relationId = rows.Int32(2);
  Fill(row.amount, rows.Text(3));
  Fill(row.partnerTxnId, rows.Text(4));
}

// Where a row's target and its line stand among the columns of both.
enum LineColumn : int { kTarget = 2, kLine = 6, kFirstOfLine = 7, kMemo = 12 };

template <typename Row>
long ReadOne(Rows rows, Row& row, void (*read)(const Rows&, Row&)) {
  if (!rows.Step()) return kStatusNotFound;
  read(rows, row);
  return Util::Status::kSuccess;
}

template <typename Row>
long ReadAll(Rows rows, std::vector<Row>& all, void (*read)(const Rows&, Row&)) {
  all.clear();
  while (rows.Step()) read(rows, all.emplace_back());
  return Util::Status::kSuccess;
}

long FoundAny(std::int64_t changedRows) {
  return changedRows != 0 ? Util::Status::kSuccess : kStatusNotFound;
}

std::int64_t Wide(long number) {
  return number;
}

}  // namespace

MultiEntityStore::MultiEntityStore(Database& database, LinesAhead& lines)
    : database_(database),
      lines_(lines),
      relationsByRealm_(database),
      relation_(database,
                "SELECT id, realm_id, partner_name, relation_type, state, created_at, changed_at, revision, "
                "due_from_account_id, due_to_account_id FROM me_relation WHERE realm_id = ?1"),
      relationById_(database,
                    "SELECT id, realm_id, partner_name, relation_type, state, created_at, changed_at, revision, "
                    "due_from_account_id, due_to_account_id FROM me_relation WHERE id = ?1"),
      relations_(database,
                 "SELECT id, realm_id, partner_name, relation_type, state, created_at, changed_at, revision, "
                 "due_from_account_id, due_to_account_id FROM me_relation ORDER BY id"),
      insertRelation_(database,
                      "INSERT INTO me_relation (realm_id, partner_name, relation_type, state, created_at, changed_at, "
                      "revision, due_from_account_id, due_to_account_id) VALUES (?1, ?2, ?3, ?4, ?5, ?5, 1, ?6, ?7)"),
      updateRelation_(database,
                      "UPDATE me_relation SET partner_name = ?2, relation_type = ?3, state = ?4, "
                      "due_from_account_id = ?5, due_to_account_id = ?6, changed_at = ?7, revision = revision + 1 "
                      "WHERE realm_id = ?1 RETURNING created_at, changed_at, revision"),
      deleteRelation_(database, "DELETE FROM me_relation WHERE realm_id = ?1"),
      usesAccounts_(database,
                    "SELECT 1 FROM me_relation WHERE due_from_account_id IN (nullif(?1, 0), nullif(?2, 0)) "
                    "OR due_to_account_id IN (nullif(?1, 0), nullif(?2, 0)) LIMIT 1"),
      otherUsesAccounts_(database,
                         "SELECT 1 FROM me_relation WHERE (due_from_account_id IN (nullif(?1, 0), nullif(?2, 0)) "
                         "OR due_to_account_id IN (nullif(?1, 0), nullif(?2, 0))) AND realm_id <> ?3 LIMIT 1"),
      relationInUse_(database, "SELECT 1 FROM me_transaction WHERE relation_id = ?1 LIMIT 1"),
      insertTransaction_(database,
                         "INSERT INTO me_transaction (txn_id, relation_id, target_id, request_id, txn_type, state) "
                         "VALUES (?1, ?2, ?3, ?4, ?5, ?6)"),
      transaction_(database,
                   "SELECT txn_id, relation_id, target_id, request_id, txn_type, state, id FROM me_transaction "
                   "WHERE txn_id = ?1 AND target_id = ?2"),
      transactionOfRequest_(database,
                            "SELECT txn_id, relation_id, target_id, request_id, txn_type, state, id "
                            "FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2 ORDER BY id LIMIT 1"),
      updateState_(database,
                   "UPDATE me_transaction SET state = ?6 WHERE id = ?7 AND txn_id = ?1 AND target_id = ?2 "
                   "AND relation_id = ?3 AND request_id = ?4 AND txn_type = ?5"),
      updateTransaction_(database,
                         "UPDATE me_transaction SET relation_id = ?3, request_id = ?4, txn_type = ?5, state = ?6 "
                         "WHERE txn_id = ?1 AND target_id = ?2"),
      deleteTransaction_(database, "DELETE FROM me_transaction WHERE txn_id = ?1"),
      transactionLines_(database,
                        "SELECT txn_id, relation_id, target_id, request_id, txn_type, state FROM me_transaction "
                        "WHERE txn_id = ?1 ORDER BY target_id"),
      transactionCount_(database, "SELECT count(*) FROM me_transaction"),
      transactions_(database,
                    "SELECT m.txn_id, m.relation_id, m.target_id, m.request_id, m.txn_type, m.state, l.id, t.type, "
                    "t.date, t.name_id, l.account_id, l.amount, l.memo FROM me_transaction m "
                    "LEFT JOIN txn_line l ON l.id BETWEEN m.target_id AND m.target_id + (m.txn_type = 8) "
                    "LEFT JOIN txn t ON t.id = l.txn_id ORDER BY m.id, l.id"),
      hasRequest_(database, "SELECT 1 FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2 LIMIT 1"),
      insertRejected_(database,
                      "INSERT INTO me_rejected_transaction (request_id, txn_type, relation_id, amount, partner_txn_id) "
                      "VALUES (?1, ?2, ?3, ?4, ?5)"),
      rejected_(database,
                "SELECT request_id, txn_type, relation_id, amount, partner_txn_id FROM me_rejected_transaction "
                "ORDER BY id"),
      deleteRejected_(database, "DELETE FROM me_rejected_transaction WHERE request_id = ?1"),
      isRejected_(database, "SELECT 1 FROM me_rejected_transaction WHERE request_id = ?1 LIMIT 1") {}

// A partner's messages ask for the same relation again and again.
Util::Status MultiEntityStore::GetRelation(Util::TString realmId, DBMultiEntityRelation& row) {
  return AsStatus([&] {
    RelationsByRealm& held = relationsByRealm_.Get([](RelationsByRealm&) {});
    if (const auto found = held.find(realmId.view()); found != held.end()) {
      row = found->second;
      return Util::Status::kSuccess;
    }
    const long status = ReadOne(relation_.Query(realmId.view()), row, ReadRelation);
    if (status != Util::Status::kSuccess) return status;
    if (held.size() == kMostRelationsHeld) held.clear();
    held.emplace(realmId.view(), row);
    return status;
  });
}

Util::Status MultiEntityStore::GetRelationById(long relationId, DBMultiEntityRelation& row) {
  return AsStatus([&] { return ReadOne(relationById_.Query(Wide(relationId)), row, ReadRelation); });
}

Util::Status MultiEntityStore::GetAllRelations(std::vector<DBMultiEntityRelation>& rows) {
  return AsStatus([&] { return ReadAll(relations_.Query(), rows, ReadRelation); });
}

Util::Status MultiEntityStore::SaveRelation(DBMultiEntityRelation& row) {
  return AsStatus([&] {
    const std::int64_t now = MillisecondsNow();
    insertRelation_.Run(Field(row.realmId), Field(row.partnerName), row.relationType, row.state, now,
                        row.dueFromAccountId, row.dueToAccountId);
    row.relationId = static_cast<std::int32_t>(database_.LastInsertedId());
    row.createdAt = now;
    row.changedAt = now;
    row.revision = 1;
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString /*realm*/) {
  return AsStatus([&] {
    const std::string_view realmId = Field(row.realmId);
    const std::string_view partnerName = Field(row.partnerName);
    Rows rows = updateRelation_.Query(realmId, partnerName, row.relationType, row.state, row.dueFromAccountId,
                                      row.dueToAccountId, MillisecondsNow());
    if (!rows.Step()) return kStatusNotFound;
    row.createdAt = rows.Int64(0);
    row.changedAt = rows.Int64(1);
    row.revision = rows.Int32(2);
    rows.Step();
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::DeleteRelation(Util::TString realmId) {
  return AsStatus([&] { return FoundAny(deleteRelation_.Run(realmId.view())); });
}

// The partner does not matter: an account that any relation uses is taken.
bool MultiEntityStore::HasAnyMatchingRecord(Util::TString /*realmId*/, long account1, long account2) {
  return usesAccounts_.Query(Wide(account1), Wide(account2)).Step();
}

bool MultiEntityStore::HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) {
  return otherUsesAccounts_.Query(Wide(account1), Wide(account2), realmId.view()).Step();
}

bool MultiEntityStore::HasAnyMatchingTransaction(long relationId) {
  return relationInUse_.Query(Wide(relationId)).Step();
}

Util::Status MultiEntityStore::SaveTransaction(DBMultiEntityTransaction& row) {
  return AsStatus([&] {
    insertTransaction_.Run(row.txnId, row.relationId, row.targetId, Field(row.requestId), row.txnType, row.state);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetTransaction(std::int32_t txnId, std::int32_t targetId,
                                              DBMultiEntityTransaction& row) {
  return AsStatus([&] { return ReadForUpdate(transaction_.Query(txnId, targetId), row); });
}

Util::Status MultiEntityStore::GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                                           DBMultiEntityTransaction& row) {
  return AsStatus([&] { return ReadForUpdate(transactionOfRequest_.Query(relationId, requestId.view()), row); });
}

// Mostly it is the row that was read last, and the state alone has changed, which no index holds.
Util::Status MultiEntityStore::UpdateTransaction(DBMultiEntityTransaction& row) {
  return AsStatus([&] {
    const std::string_view requestId = Field(row.requestId);
    if (updateState_.Run(row.txnId, row.targetId, row.relationId, requestId, row.txnType, row.state, lastReadRow_) !=
        0) {
      return Util::Status::kSuccess;
    }
    return FoundAny(updateTransaction_.Run(row.txnId, row.targetId, row.relationId, requestId, row.txnType, row.state));
  });
}

long MultiEntityStore::ReadForUpdate(Rows rows, DBMultiEntityTransaction& row) {
  if (!rows.Step()) return kStatusNotFound;
  ReadTransaction(rows, row);
  lastReadRow_ = rows.Int64(6);
  return Util::Status::kSuccess;
}

Util::Status MultiEntityStore::DeleteTransaction(std::int32_t txnId) {
  return AsStatus([&] {
    deleteTransaction_.Run(txnId);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) {
  return AsStatus([&] { return ReadAll(transactionLines_.Query(Wide(txnId)), rows, ReadTransaction); });
}

Util::Status MultiEntityStore::GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) {
  return AsStatus([&] {
    rows.clear();
    {
      Rows count = transactionCount_.Query();
      if (count.Step()) rows.reserve(static_cast<std::size_t>(count.Int64(0)));
    }
    ReadWithLines(transactions_.Query(), rows);
    return Util::Status::kSuccess;
  });
}

// A row comes once for each of its lines that is there, its target line first, and once without any.
void MultiEntityStore::ReadWithLines(Rows found, std::vector<DBMultiEntityTransaction>& rows) {
  lines_.Drop();
  LinesAhead::Lines lines;
  while (found.Step()) {
    const std::int32_t targetId = found.Int32(kTarget);
    const std::int32_t lineId = found.Int32(kLine);
    const bool isTarget = lineId == targetId;
    if (isTarget || lineId == 0 || rows.empty() || rows.back().targetId != targetId) {
      ReadTransaction(found, rows.emplace_back());
      if (!isTarget) lines.Add().id = targetId;
    }
    if (lineId == 0) continue;
    LinesAhead::Line& line = lines.Add();
    line.id = lineId;
    ReadLine(found, kFirstOfLine, line.view);
    // Journal entries alone are called by the memo, that of their target line.
    line.view.hasMemo = isTarget && line.view.txnType == kTxnTypeJournalEntry;
    if (line.view.hasMemo) line.view.memo = found.Text(kMemo);
  }
  lines_.Hold(std::move(lines));
}

bool MultiEntityStore::HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) {
  return hasRequest_.Query(relationId, requestId.view()).Step();
}

Util::Status MultiEntityStore::SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) {
  return AsStatus([&] {
    insertRejected_.Run(Field(row.requestId), row.txnType, row.relationId, Field(row.amount), Field(row.partnerTxnId));
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  return AsStatus([&] { return ReadAll(rejected_.Query(), rows, ReadRejected); });
}

Util::Status MultiEntityStore::DeleteRejectedTransaction(Util::TString requestId) {
  return AsStatus([&] { return FoundAny(deleteRejected_.Run(requestId.view())); });
}

bool MultiEntityStore::HasAnyMatchingRejectedTransaction(Util::TString requestId) {
  return isRejected_.Query(requestId.view()).Step();
}

}  // namespace standalone
