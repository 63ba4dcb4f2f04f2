#include "standalone/books/RejectedRequestTable.h"

#include "standalone/books/RowFields.h"

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
