#include "standalone/books/RejectedRequestTable.h"

#include <cstring>

#include "standalone/books/RowFields.h"

namespace standalone {

RejectedRequestTable::RejectedRequestTable(Database& database)
    : insert_(database, Writes::kBookings,
              "INSERT INTO me_rejected_transaction (request_id, txn_type, relation_id, amount, partner_txn_id) "
              "VALUES (?1, ?2, ?3, ?4, ?5)"),
      all_(database,
           "SELECT request_id, txn_type, relation_id, amount, partner_txn_id FROM me_rejected_transaction "
           "ORDER BY id"),
      byRequest_(database, "SELECT 1 FROM me_rejected_transaction WHERE request_id = ?1 LIMIT 1"),
      delete_(database, Writes::kBookings, "DELETE FROM me_rejected_transaction WHERE request_id = ?1") {}

void RejectedRequestTable::Add(const DBMultiEntityRejectedTxnReceiver& row) {
  insert_.Run(Field(row.requestId), row.txnType, row.relationId, Field(row.amount), Field(row.partnerTxnId));
}

void RejectedRequestTable::List(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  Rows found = all_.Query();
  rows.clear();
  while (found.Step()) {
    DBMultiEntityRejectedTxnReceiver& row = rows.emplace_back();
    std::memset(&row, 0, sizeof row);
    Fill(row.requestId, found.Text(0));
    row.txnType = found.Int32(1);
    row.relationId = found.Int32(2);
    Fill(row.amount, found.Text(3));
    Fill(row.partnerTxnId, found.Text(4));
  }
}

bool RejectedRequestTable::Has(std::string_view requestId) {
  return byRequest_.Query(requestId).Step();
}

bool RejectedRequestTable::Remove(std::string_view requestId) {
  return delete_.Run(requestId) != 0;
}

}  // namespace standalone
