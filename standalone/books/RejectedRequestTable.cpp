#include "standalone/books/RejectedRequestTable.h"

#include "standalone/books/RowFields.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

DBMultiEntityRejectedTxnReceiver RowOf(const Rows& found) {
  DBMultiEntityRejectedTxnReceiver row{};
  Fill(row.requestId, found.Text(0));
  row.txnType = found.Int32(1);
  row.relationId = found.Int32(2);
  Fill(row.amount, found.Text(3));
  Fill(row.partnerTxnId, found.Text(4));
  return row;
}

}  // namespace

RejectedRequestTable::RejectedRequestTable(Database& database)
    : insert_(database, Writes::kBookings,
              "INSERT INTO me_rejected_transaction (request_id, txn_type, relation_id, amount, partner_txn_id) "
              "VALUES (?1, ?2, ?3, ?4, ?5)"),
      all_(database,
           "SELECT request_id, txn_type, relation_id, amount, partner_txn_id FROM me_rejected_transaction "
           "ORDER BY id"),
      byRequest_(database, "SELECT 1 FROM me_rejected_transaction WHERE request_id = ?1 LIMIT 1"),
      ofRelation_(database,
                  "SELECT request_id, txn_type, relation_id, amount, partner_txn_id FROM me_rejected_transaction "
                  "WHERE request_id = ?1 AND relation_id = ?2 ORDER BY id LIMIT 1"),
      ofRelationButForBlanks_(database,
                              "SELECT request_id FROM me_rejected_transaction WHERE relation_id = ?1 "
                              "AND request_id >= ?2 AND request_id < ?2 || '!' AND trim(request_id) = ?2 "
                              "UNION ALL SELECT request_id FROM me_rejected_transaction WHERE relation_id = ?1 "
                              "AND request_id >= ' ' AND request_id < '!' AND trim(request_id) = ?2 LIMIT 1"),
      ofRelationButForCase_(database,
                            "SELECT request_id FROM me_rejected_transaction WHERE relation_id = ?1 "
                            "AND request_id IN (lower(?2), upper(?2)) AND request_id <> ?2 LIMIT 1"),
      delete_(database, Writes::kBookings, "DELETE FROM me_rejected_transaction WHERE request_id = ?1"),
      deleteOfRelation_(database, Writes::kBookings,
                        "DELETE FROM me_rejected_transaction WHERE request_id = ?1 AND relation_id = ?2") {}

void RejectedRequestTable::Add(const DBMultiEntityRejectedTxnReceiver& row) {
  insert_.Run(Field(row.requestId), row.txnType, row.relationId, Field(row.amount), Field(row.partnerTxnId));
}

void RejectedRequestTable::List(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  Rows found = all_.Query();
  rows.clear();
  while (found.Step()) rows.push_back(RowOf(found));
}

DBMultiEntityRejectedTxnReceiver RejectedRequestTable::Find(std::int32_t relationId, std::string_view requestId) {
  Rows found = ofRelation_.Query(requestId, relationId);
  return found.Step() ? RowOf(found) : DBMultiEntityRejectedTxnReceiver{};
}

// Those that begin with the text or with a blank are what the index finds; '!' follows the blank.
std::optional<std::string> RejectedRequestTable::FindButForBlanks(std::int32_t relationId, std::string_view requestId) {
  const std::string_view bare = Trimmed(requestId);
  Rows found = ofRelationButForBlanks_.Query(relationId, bare);
  if (!found.Step()) return std::nullopt;
  return std::string(found.Text(0));
}

std::optional<std::string> RejectedRequestTable::FindButForCase(std::int32_t relationId, std::string_view requestId) {
  Rows found = ofRelationButForCase_.Query(relationId, requestId);
  if (!found.Step()) return std::nullopt;
  return std::string(found.Text(0));
}

bool RejectedRequestTable::Has(std::string_view requestId) {
  return byRequest_.Query(requestId).Step();
}

bool RejectedRequestTable::Remove(std::string_view requestId) {
  return delete_.Run(requestId) != 0;
}

bool RejectedRequestTable::Remove(std::int32_t relationId, std::string_view requestId) {
  return deleteOfRelation_.Run(requestId, relationId) != 0;
}

}  // namespace standalone
