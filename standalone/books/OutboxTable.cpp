#include "standalone/books/OutboxTable.h"

namespace standalone {

namespace {

OutboxRow ReadOutbox(const Rows& rows) {
  const std::int32_t targetId = rows.Int32(3);
  return {.pairing = rows.Int32(0),
          .requestId = std::string(rows.Text(1)),
          .proposal = std::string(rows.Bytes(2)),
          .targetId = targetId == 0 ? std::nullopt : std::optional(targetId),
          .mark = std::string(rows.Text(4))};
}

std::optional<OutboxRow> ReadOneOfOutbox(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  return ReadOutbox(rows);
}

}  // namespace

OutboxTable::OutboxTable(Database& database)
    : set_(database, Writes::kBookings,
           "INSERT INTO exchange_outbox (pairing_id, request_id, proposal, target_id, mark) "
           "VALUES (?1, ?2, ?3, nullif(?4, 0), ?5) ON CONFLICT (pairing_id, request_id) "
           "DO UPDATE SET proposal = ?3, target_id = nullif(?4, 0), mark = ?5"),
      one_(database,
           "SELECT pairing_id, request_id, proposal, target_id, mark FROM exchange_outbox "
           "WHERE pairing_id = ?1 AND request_id = ?2"),
      byLine_(database,
              "SELECT pairing_id, request_id, proposal, target_id, mark FROM exchange_outbox WHERE target_id = ?1 "
              "ORDER BY pairing_id DESC LIMIT 1"),
      all_(database,
           "SELECT pairing_id, request_id, proposal, target_id, mark FROM exchange_outbox WHERE pairing_id = ?1 "
           "ORDER BY request_id"),
      lost_(database,
            "SELECT pairing_id, request_id, proposal, target_id, mark FROM exchange_outbox WHERE target_id IS NULL "
            "ORDER BY pairing_id, request_id") {}

void OutboxTable::Set(const OutboxRow& row) {
  set_.Run(row.pairing, row.requestId, Blob{row.proposal}, row.targetId.value_or(0), row.mark);
}

std::optional<OutboxRow> OutboxTable::Find(std::int32_t pairing, std::string_view requestId) {
  return ReadOneOfOutbox(one_.Query(pairing, requestId));
}

std::optional<OutboxRow> OutboxTable::FindByLine(std::int32_t targetId) {
  return ReadOneOfOutbox(byLine_.Query(targetId));
}

void OutboxTable::ForEach(std::int32_t pairing, const std::function<void(const OutboxRow& row)>& take) {
  for (Rows rows = all_.Query(pairing); rows.Step();) take(ReadOutbox(rows));
}

void OutboxTable::ForEachLost(const std::function<void(const OutboxRow& row)>& take) {
  for (Rows rows = lost_.Query(); rows.Step();) take(ReadOutbox(rows));
}

}  // namespace standalone
