#include "standalone/books/RemarkTable.h"

namespace standalone {

RemarkTable::RemarkTable(Database& database)
    : insert_(database, Writes::kBookings,
              "INSERT INTO exchange_remark (pairing_id, hash, request_id, asked_by_us) VALUES (?1, ?2, ?3, ?4) "
              "ON CONFLICT (pairing_id, hash) DO NOTHING"),
      about_(database,
             "SELECT hash FROM exchange_remark WHERE pairing_id = ?1 AND request_id = ?2 AND asked_by_us = ?3 "
             "ORDER BY id") {}

bool RemarkTable::Add(const RemarkRow& row) {
  return insert_.Run(row.pairing, Blob{row.hash}, row.requestId, row.askedByUs) == 1;
}

std::vector<std::string> RemarkTable::About(std::int32_t pairing, std::string_view requestId, bool askedByUs) {
  std::vector<std::string> hashes;
  for (Rows rows = about_.Query(pairing, requestId, askedByUs); rows.Step();) hashes.emplace_back(rows.Bytes(0));
  return hashes;
}

}  // namespace standalone
