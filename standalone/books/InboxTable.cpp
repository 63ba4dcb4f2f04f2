#include "standalone/books/InboxTable.h"

#include "standalone/values/Errors.h"

namespace standalone {

namespace {

InboxState StateOfRequest(std::string_view stored) {
  if (const std::optional<InboxState> state = InboxStateOf(stored)) return *state;
  throw CompanyFileError("The company file is damaged: it has a partner's request in an unknown state.");
}

InboxRow ReadInbox(const Rows& rows) {
  const std::int32_t txnId = rows.Int32(5);
  return {.pairing = rows.Int32(0),
          .requestId = std::string(rows.Text(1)),
          .proposal = std::string(rows.Bytes(2)),
          .state = StateOfRequest(rows.Text(3)),
          .mark = std::string(rows.Text(4)),
          .txnId = txnId == 0 ? std::nullopt : std::optional(txnId)};
}

std::optional<InboxRow> ReadOneOfInbox(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  return ReadInbox(rows);
}

}  // namespace

InboxTable::InboxTable(Database& database)
    : set_(database, Writes::kBookings,
           "INSERT INTO exchange_inbox (pairing_id, request_id, proposal, state, mark, txn_id) "
           "VALUES (?1, ?2, ?3, ?4, ?5, nullif(?6, 0)) ON CONFLICT (pairing_id, request_id) "
           "DO UPDATE SET proposal = ?3, state = ?4, mark = ?5, txn_id = nullif(?6, 0)"),
      one_(database,
           "SELECT pairing_id, request_id, proposal, state, mark, txn_id FROM exchange_inbox "
           "WHERE pairing_id = ?1 AND request_id = ?2"),
      ofRelation_(database,
                  "SELECT pairing_id, request_id, proposal, state, mark, txn_id FROM exchange_inbox "
                  "WHERE pairing_id IN (SELECT id FROM exchange_pairing WHERE relation_id = ?1) AND request_id = ?2 "
                  "ORDER BY pairing_id DESC LIMIT 1"),
      byEntry_(database,
               "SELECT pairing_id, request_id, proposal, state, mark, txn_id FROM exchange_inbox WHERE txn_id = ?1 "
               "ORDER BY id DESC LIMIT 1"),
      waiting_(database,
               "SELECT pairing_id, request_id, proposal, state, mark, txn_id FROM exchange_inbox "
               "WHERE pairing_id = ?1 AND state IN ('new', 'held', 'to-book-again') ORDER BY id"),
      all_(database,
           "SELECT pairing_id, request_id, proposal, state, mark, txn_id FROM exchange_inbox "
           "WHERE pairing_id = ?1 ORDER BY id"),
      toAnswer_(database,
                "SELECT count(*) FROM exchange_inbox AS inbox JOIN exchange_pairing ON exchange_pairing.id = "
                "inbox.pairing_id "
                "WHERE inbox.state IN ('new', 'held', 'to-book-again') AND inbox.state <> 'held' "
                "AND exchange_pairing.state <> 'removed'") {}

void InboxTable::Set(const InboxRow& row) {
  set_.Run(row.pairing, row.requestId, Blob{row.proposal}, NameOf(row.state), row.mark, row.txnId.value_or(0));
}

std::optional<InboxRow> InboxTable::Find(std::int32_t pairing, std::string_view requestId) {
  return ReadOneOfInbox(one_.Query(pairing, requestId));
}

std::optional<InboxRow> InboxTable::FindOfRelation(std::int32_t relationId, std::string_view requestId) {
  return ReadOneOfInbox(ofRelation_.Query(relationId, requestId));
}

std::optional<InboxRow> InboxTable::FindByEntry(std::int32_t txnId) {
  return ReadOneOfInbox(byEntry_.Query(txnId));
}

void InboxTable::ForEach(std::int32_t pairing, bool decided, const std::function<void(const InboxRow& row)>& take) {
  for (Rows rows = decided ? all_.Query(pairing) : waiting_.Query(pairing); rows.Step();) take(ReadInbox(rows));
}

std::int64_t InboxTable::CountToAnswer() {
  Rows rows = toAnswer_.Query();
  rows.Step();
  return rows.Int64(0);
}

}  // namespace standalone
