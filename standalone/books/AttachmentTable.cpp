#include "standalone/books/AttachmentTable.h"

namespace standalone {

AttachmentTable::AttachmentTable(Database& database)
    : insert_(database, Writes::kBookings, "INSERT INTO txn_attachment (txn_id, reference) VALUES (?1, ?2)"),
      remove_(database, Writes::kBookings, "DELETE FROM txn_attachment WHERE txn_id = ?1 AND reference = ?2"),
      of_(database, "SELECT reference FROM txn_attachment WHERE txn_id = ?1 ORDER BY id") {}

void AttachmentTable::Add(std::int32_t txnId, std::string_view reference) {
  insert_.Run(txnId, reference);
}

void AttachmentTable::Remove(std::int32_t txnId, std::string_view reference) {
  remove_.Run(txnId, reference);
}

std::vector<std::string> AttachmentTable::Of(std::int32_t txnId) {
  std::vector<std::string> references;
  for (Rows rows = of_.Query(txnId); rows.Step();) references.emplace_back(rows.Text(0));
  return references;
}

}  // namespace standalone
