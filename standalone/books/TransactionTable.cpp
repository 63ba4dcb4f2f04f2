#include "standalone/books/TransactionTable.h"

#include "standalone/values/Unicode.h"

namespace standalone {

void ReadLine(const Rows& rows, int first, LineView& line) {
  line.txnType = rows.Int16(first);
  line.date = DateOf(rows.Int64(first + 1));
  line.nameId = rows.Int32(first + 2);
  line.accountId = rows.Int32(first + 3);
  line.amount = rows.Int64(first + 4);
}

namespace {

// Blank without a row.
LineView ReadWithMemo(Rows rows) {
  LineView line;
  if (!rows.Step()) return line;
  ReadLine(rows, /*first=*/0, line);
  line.hasMemo = true;
  line.memo = rows.Text(5);
  return line;
}

}  // namespace

TransactionTable::TransactionTable(Database& database)
    : database_(database),
      insertHeader_(database, Writes::kBookings,
                    "INSERT INTO txn (type, date, name_id, memo, document_number) "
                    "VALUES (?1, ?2, nullif(?3, 0), ?4, ?5)"),
      insertLine_(database, Writes::kBookings,
                  "INSERT INTO txn_line (txn_id, account_id, amount, memo) VALUES (?1, ?2, ?3, ?4)"),
      post_(database, Writes::kBookings, "UPDATE txn SET posted = 1 WHERE id = ?1"),
      nextId_(database, "SELECT ifnull(max(id), 0) + 1 FROM txn"),
      header_(database, "SELECT id, type, date, name_id, posted, memo, document_number FROM txn WHERE id = ?1"),
      document_(database,
                "SELECT id, document_number FROM txn WHERE type = ?1 AND name_id IS nullif(?2, 0) AND "
                "(document_number = ?3 COLLATE NOCASE OR document_number GLOB '*[^ -~]*') "
                "AND posted = 1 AND NOT EXISTS "
                "(SELECT 1 FROM txn_link WHERE txn_id = txn.id AND kind = 'reverses') AND NOT EXISTS "
                "(SELECT 1 FROM txn_link AS reversal WHERE earlier_txn_id = txn.id AND kind = 'reverses' "
                "AND NOT EXISTS (SELECT 1 FROM txn_link WHERE earlier_txn_id = reversal.txn_id AND kind = 'reverses')) "
                "ORDER BY id"),
      linesOf_(database, "SELECT id, account_id, amount, memo FROM txn_line WHERE txn_id = ?1 ORDER BY id"),
      anyLine_(database, "SELECT 1 FROM txn_line WHERE id = ?1"),
      anyLineAtAll_(database, "SELECT 1 FROM txn_line LIMIT 1"),
      lineType_(database,
                "SELECT 1 FROM txn_line JOIN txn ON txn.id = txn_id WHERE txn_line.id = ?1 "
                "AND txn.type = ?2"),
      line_(database,
            "SELECT txn.type, date, name_id, account_id, amount, txn_line.memo "
            "FROM txn_line JOIN txn ON txn.id = txn_id "
            "WHERE txn_line.id = ?1 AND (?2 = 0 OR txn.type = ?2)"),
      lineOf_(database,
              "SELECT txn.type, date, name_id, account_id, amount, txn_line.memo FROM txn_line "
              "JOIN txn ON txn.id = txn_id WHERE txn_line.id = ?1 AND txn_id = ?2"),
      memo_(database, "SELECT memo FROM txn_line WHERE id = ?1"),
      posted_(database, "SELECT id FROM txn WHERE posted = 1 AND date BETWEEN ?1 AND ?2 ORDER BY id"),
      postedOfType_(database,
                    "SELECT id FROM txn WHERE type = ?3 AND posted = 1 AND date BETWEEN ?1 AND ?2 ORDER BY id"),
      remove_(database, Writes::kBookings, "DELETE FROM txn WHERE id = ?1"),
      confirm_(database, Writes::kBookings, "UPDATE txn SET partner_confirmed = 1 WHERE id = ?1 AND type = ?2") {}

std::int32_t TransactionTable::AddHeader(const NewTransaction& transaction) {
  insertHeader_.Run(transaction.type, transaction.date.Value(), transaction.nameId, transaction.memo,
                    transaction.documentNumber);
  return static_cast<std::int32_t>(database_.LastInsertedId());
}

std::int32_t TransactionTable::AddLine(std::int32_t txnId, const NewLine& line) {
  insertLine_.Run(txnId, line.accountId, line.amount, line.memo);
  return static_cast<std::int32_t>(database_.LastInsertedId());
}

void TransactionTable::Post(std::int32_t txnId) {
  post_.Run(txnId);
}

std::int32_t TransactionTable::NextId() {
  Rows rows = nextId_.Query();
  rows.Step();
  return rows.Int32(0);
}

std::optional<TransactionHeader> TransactionTable::FindHeader(std::int32_t txnId) {
  Rows rows = header_.Query(txnId);
  if (!rows.Step()) return std::nullopt;
  TransactionHeader header;
  header.id = rows.Int32(0);
  header.type = rows.Int16(1);
  header.date = DateOf(rows.Int64(2));
  header.nameId = rows.Int32(3);
  header.posted = rows.Bool(4);
  header.memo = rows.Text(5);
  header.documentNumber = rows.Text(6);
  return header;
}

std::optional<KnownDocument> TransactionTable::FindDocument(std::int16_t type, std::int32_t nameId,
                                                            std::string_view documentNumber) {
  const std::string form = FoldedForm(documentNumber);
  for (Rows rows = document_.Query(type, nameId, form); rows.Step();) {
    if (FoldedForm(rows.Text(1)) == form)
      return KnownDocument{.txnId = rows.Int32(0), .number = std::string(rows.Text(1))};
  }
  return std::nullopt;
}

std::vector<PostedLine> TransactionTable::LinesOf(std::int32_t txnId) {
  std::vector<PostedLine> lines;
  for (Rows rows = linesOf_.Query(txnId); rows.Step();) {
    lines.push_back(
        {.id = rows.Int32(0), .accountId = rows.Int32(1), .amount = rows.Int64(2), .memo = std::string(rows.Text(3))});
  }
  return lines;
}

bool TransactionTable::LineExists(std::int32_t lineId, std::int32_t view) {
  return view == 0 ? anyLine_.Query(lineId).Step() : lineType_.Query(lineId, view).Step();
}

bool TransactionTable::HasLines() {
  return anyLineAtAll_.Query().Step();
}

LineView TransactionTable::FindLine(std::int32_t lineId, std::int32_t view) {
  return ReadWithMemo(line_.Query(lineId, view));
}

LineView TransactionTable::FindLineOf(std::int32_t txnId, std::int32_t lineId) {
  return ReadWithMemo(lineOf_.Query(lineId, txnId));
}

Util::TString TransactionTable::MemoOf(std::int32_t lineId) {
  Rows rows = memo_.Query(lineId);
  return rows.Step() ? Util::TString(rows.Text(0)) : Util::TString();
}

void TransactionTable::ForEachPosted(std::int64_t type, std::uint32_t from, std::uint32_t to,
                                     const std::function<void(std::int32_t txnId)>& take) {
  Rows rows = type == 0 ? posted_.Query(from, to) : postedOfType_.Query(from, to, type);
  while (rows.Step()) take(rows.Int32(0));
}

bool TransactionTable::Delete(std::int32_t txnId) {
  return remove_.Run(txnId) != 0;
}

bool TransactionTable::ConfirmByPartner(std::int32_t txnId, std::int32_t type) {
  return confirm_.Run(txnId, type) != 0;
}

}  // namespace standalone
