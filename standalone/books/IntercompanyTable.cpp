#include "standalone/books/IntercompanyTable.h"

#include <cstring>
#include <limits>
#include <utility>

#include "standalone/books/RowFields.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

void Read(const Rows& rows, DBMultiEntityTransaction& row) {
  std::memset(&row, 0, sizeof row);
  row.txnId = rows.Int32(0);
  row.relationId = rows.Int32(1);
  row.targetId = rows.Int32(2);
  Fill(row.requestId, rows.Text(3));
  row.txnType = rows.Int16(4);
  row.state = rows.Int16(5);
}

bool ReadOne(Rows found, DBMultiEntityTransaction& row) {
  if (!found.Step()) return false;
  Read(found, row);
  return true;
}

BookedRow ReadBooked(const Rows& rows) {
  BookedRow booked;
  Read(rows, booked.row);
  booked.ofBefore = rows.Bool(6);
  if (rows.Int64(7) == 0) return booked;
  ReadLine(rows, /*first=*/7, booked.line);
  booked.line.hasMemo = true;
  booked.line.memo = rows.Text(12);
  booked.otherAccountId = rows.Int32(13);
  booked.entryMemo = rows.Text(14);
  return booked;
}

}  // namespace

IntercompanyTable::IntercompanyTable(Database& database, LinesAhead& lines)
    : lines_(lines),
      targetsOfBefore_(database, Writes::kBookings),
      insert_(database, Writes::kBookings,
              "INSERT INTO me_transaction (txn_id, relation_id, target_id, request_id, txn_type, state) "
              "VALUES (?1, ?2, ?3, ?4, ?5, ?6)"),
      byTarget_(database,
                "SELECT txn_id, relation_id, target_id, request_id, txn_type, state FROM me_transaction "
                "WHERE txn_id = ?1 AND target_id = ?2"),
      byRequest_(database,
                 "SELECT txn_id, relation_id, target_id, request_id, txn_type, state "
                 "FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2 ORDER BY id LIMIT 1"),
      byRequestButForBlanks_(database,
                             "SELECT request_id FROM me_transaction WHERE relation_id = ?1 "
                             "AND request_id >= ?2 AND request_id < ?2 || '!' AND trim(request_id) = ?2 "
                             "UNION ALL SELECT request_id FROM me_transaction WHERE relation_id = ?1 "
                             "AND request_id >= ' ' AND request_id < '!' AND trim(request_id) = ?2 LIMIT 1"),
      byRequestButForCase_(database,
                           "SELECT request_id FROM me_transaction WHERE relation_id = ?1 "
                           "AND request_id IN (lower(?2), upper(?2)) AND request_id <> ?2 LIMIT 1"),
      updateState_(database, Writes::kBookings,
                   "UPDATE me_transaction SET state = ?6 WHERE txn_id = ?1 AND relation_id = ?2 AND target_id = ?3 "
                   "AND request_id = ?4 AND txn_type = ?5"),
      update_(database, Writes::kBookings,
              "UPDATE me_transaction SET relation_id = ?2, request_id = ?4, txn_type = ?5, state = ?6 "
              "WHERE txn_id = ?1 AND target_id = ?3"),
      delete_(database, Writes::kBookings, "DELETE FROM me_transaction WHERE txn_id = ?1"),
      ofTransaction_(database,
                     "SELECT txn_id, relation_id, target_id, request_id, txn_type, state FROM me_transaction "
                     "WHERE txn_id = ?1 ORDER BY target_id"),
      entered_(database,
               "SELECT txn_id, relation_id, target_id, request_id, txn_type, state FROM me_transaction "
               "WHERE relation_id = ?1 AND state = 0 AND of_before = 0 ORDER BY id"),
      enteredBehind_(database,
                     "SELECT txn_id, relation_id, target_id, request_id, txn_type, state, id FROM me_transaction "
                     "WHERE relation_id = ?1 AND state = 0 AND of_before = 0 AND id > ?2 ORDER BY id LIMIT ?3"),
      ofLine_(database,
              "SELECT txn_id, relation_id, target_id, request_id, txn_type, state FROM me_transaction "
              "WHERE target_id = ?1"),
      booked_(database,
              "SELECT booked.txn_id, relation_id, booked.target_id, request_id, txn_type, state, of_before, "
              "txn.type, txn.date, txn.name_id, line.account_id, line.amount, line.memo, "
              "(SELECT account_id FROM txn_line AS other WHERE other.id = line.id + 1 AND other.txn_id = line.txn_id "
              "AND txn.type = 8 AND NOT EXISTS (SELECT 1 FROM me_own_request WHERE target_id = line.id)), txn.memo "
              "FROM me_transaction AS booked "
              "LEFT JOIN txn_line AS line ON line.id = booked.target_id AND line.txn_id = booked.txn_id "
              "LEFT JOIN txn ON txn.id = line.txn_id "
              "WHERE booked.txn_id = ?1 AND booked.target_id BETWEEN ?2 AND ?3 ORDER BY booked.target_id"),
      count_(database, "SELECT count(*) FROM me_transaction"),
      all_(database,
           "SELECT txn_id, relation_id, target_id, request_id, txn_type, state, of_before FROM me_transaction "
           "ORDER BY id"),
      withRelation_(database, "SELECT 1 FROM me_transaction WHERE relation_id = ?1 LIMIT 1"),
      firstOn_(database,
               "SELECT txn_id FROM txn_line WHERE account_id = ?2 AND EXISTS (SELECT 1 FROM me_transaction "
               "WHERE me_transaction.txn_id = txn_line.txn_id AND relation_id = ?1) ORDER BY id LIMIT 1"),
      withRequest_(database, "SELECT 1 FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2 LIMIT 1"),
      countWithRequest_(database, "SELECT count(*) FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2"),
      anyOfTransaction_(database, "SELECT 1 FROM me_transaction WHERE txn_id = ?1"),
      countOpen_(database, "SELECT count(*) FROM me_transaction WHERE txn_id = ?1 AND state <> 3"),
      states_(database, "SELECT state, of_before, count(*) FROM me_transaction GROUP BY state, of_before"),
      ofBefore_(database, "SELECT of_before FROM me_transaction WHERE txn_id = ?1 AND target_id = ?2") {}

void IntercompanyTable::Add(const DBMultiEntityTransaction& row) {
  insert_.Run(row.txnId, row.relationId, row.targetId, Field(row.requestId), row.txnType, row.state);
}

bool IntercompanyTable::Find(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) {
  return ReadOne(byTarget_.Query(txnId, targetId), row);
}

bool IntercompanyTable::FindRequest(std::int64_t relationId, std::string_view requestId,
                                    DBMultiEntityTransaction& row) {
  return ReadOne(byRequest_.Query(relationId, requestId), row);
}

// Those that begin with the text or with a blank are what the index finds; '!' follows the blank.
std::optional<std::string> IntercompanyTable::FindRequestButForBlanks(std::int64_t relationId,
                                                                      std::string_view requestId) {
  const std::string_view bare = Trimmed(requestId);
  Rows found = byRequestButForBlanks_.Query(relationId, bare);
  if (!found.Step()) return std::nullopt;
  return std::string(found.Text(0));
}

std::optional<std::string> IntercompanyTable::FindRequestButForCase(std::int64_t relationId,
                                                                    std::string_view requestId) {
  Rows found = byRequestButForCase_.Query(relationId, requestId);
  if (!found.Step()) return std::nullopt;
  return std::string(found.Text(0));
}

// Mostly the state alone has changed, which no index holds.
bool IntercompanyTable::Change(const DBMultiEntityTransaction& row) {
  const std::string_view requestId = Field(row.requestId);
  return updateState_.Run(row.txnId, row.relationId, row.targetId, requestId, row.txnType, row.state) != 0 ||
         update_.Run(row.txnId, row.relationId, row.targetId, requestId, row.txnType, row.state) != 0;
}

void IntercompanyTable::RemoveAllOf(std::int32_t txnId) {
  delete_.Run(txnId);
}

void IntercompanyTable::ListOf(std::int64_t txnId, std::vector<DBMultiEntityTransaction>& rows) {
  Rows found = ofTransaction_.Query(txnId);
  rows.clear();
  while (found.Step()) Read(found, rows.emplace_back());
}

std::vector<DBMultiEntityTransaction> IntercompanyTable::ListEntered(std::int64_t relationId) {
  std::vector<DBMultiEntityTransaction> entered;
  for (Rows rows = entered_.Query(relationId); rows.Step();) Read(rows, entered.emplace_back());
  return entered;
}

EnteredRows IntercompanyTable::ListEnteredBehind(std::int64_t relationId, std::int64_t number, std::int64_t most) {
  EnteredRows entered{.rows = {}, .lastNumber = number};
  for (Rows rows = enteredBehind_.Query(relationId, number, most); rows.Step();) {
    Read(rows, entered.rows.emplace_back());
    entered.lastNumber = rows.Int64(6);
  }
  return entered;
}

bool IntercompanyTable::FindLine(std::int32_t targetId, DBMultiEntityTransaction& row) {
  return ReadOne(ofLine_.Query(targetId), row);
}

std::optional<std::string> IntercompanyTable::RequestOfLine(std::int32_t targetId) {
  DBMultiEntityTransaction row{};
  if (!FindLine(targetId, row)) return std::nullopt;
  return std::string(Field(row.requestId));
}

void IntercompanyTable::List(std::vector<DBMultiEntityTransaction>& rows) {
  rows.clear();
  {
    Rows count = count_.Query();
    if (count.Step()) rows.reserve(static_cast<std::size_t>(count.Int64(0)));
  }
  std::unordered_set<std::int32_t> targetsOfBefore;
  Rows found = all_.Query();
  while (found.Step()) {
    DBMultiEntityTransaction& row = rows.emplace_back();
    Read(found, row);
    if (found.Bool(6)) targetsOfBefore.insert(row.targetId);
  }
  targetsOfBefore_.Hold(std::move(targetsOfBefore));
  lines_.Expect();
}

std::vector<BookedRow> IntercompanyTable::BookedOf(std::int32_t txnId) {
  using Limits = std::numeric_limits<std::int32_t>;
  std::vector<BookedRow> booked;
  for (Rows rows = booked_.Query(txnId, Limits::min(), Limits::max()); rows.Step();) {
    booked.push_back(ReadBooked(rows));
  }
  return booked;
}

std::optional<BookedRow> IntercompanyTable::FindBooked(std::int32_t txnId, std::int32_t targetId) {
  Rows rows = booked_.Query(txnId, targetId, targetId);
  if (!rows.Step()) return std::nullopt;
  return ReadBooked(rows);
}

bool IntercompanyTable::HasAnyOf(std::int32_t txnId) {
  return anyOfTransaction_.Query(txnId).Step();
}

std::int64_t IntercompanyTable::CountOpenOf(std::int32_t txnId) {
  Rows rows = countOpen_.Query(txnId);
  return rows.Step() ? rows.Int64(0) : 0;
}

bool IntercompanyTable::HasAnyWith(std::int64_t relationId) {
  return withRelation_.Query(relationId).Step();
}

std::optional<std::int32_t> IntercompanyTable::FirstOn(std::int64_t relationId, std::int32_t accountId) {
  Rows rows = firstOn_.Query(relationId, accountId);
  if (!rows.Step()) return std::nullopt;
  return rows.Int32(0);
}

std::int64_t IntercompanyTable::CountWithRequest(std::int64_t relationId, std::string_view requestId) {
  Rows rows = countWithRequest_.Query(relationId, requestId);
  rows.Step();
  return rows.Int64(0);
}

bool IntercompanyTable::HasRequest(std::int64_t relationId, std::string_view requestId) {
  return withRequest_.Query(relationId, requestId).Step();
}

void IntercompanyTable::ForEachState(const std::function<void(BookedState state, std::int64_t count)>& take) {
  for (Rows rows = states_.Query(); rows.Step();) {
    take({TransactionState{rows.Int16(0)}, rows.Bool(1)}, rows.Int64(2));
  }
}

bool IntercompanyTable::IsOfBefore(std::int32_t txnId, std::int32_t targetId) {
  if (const std::unordered_set<std::int32_t>* const listed = targetsOfBefore_.Held()) return listed->contains(targetId);
  Rows rows = ofBefore_.Query(txnId, targetId);
  return rows.Step() && rows.Bool(0);
}

}  // namespace standalone
