#include "standalone/books/PostedLines.h"

#include <initializer_list>
#include <limits>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/TransactionTable.h"

namespace standalone {

namespace {

constexpr const char* kLinesOfType =
    "SELECT txn.date, txn.id, line.id, txn.type, txn.document_number, name.full_name, txn.memo, "
    "(SELECT earlier_txn_id FROM txn_link WHERE txn_id = txn.id AND kind = 'reverses'), "
    "(SELECT earlier_txn_id FROM txn_link WHERE txn_id = txn.id AND kind = 'corrects'), "
    "(SELECT earlier_txn_id FROM txn_link WHERE txn_id = txn.id AND kind = 'moves'), "
    "line.account_id, line.amount, line.memo, "
    "own.id, me_relation.partner_name, me_relation.realm_id, own.request_id, own.state, own.of_before "
    "FROM txn JOIN txn_line AS line ON line.txn_id = txn.id LEFT JOIN name ON name.id = txn.name_id "
    "LEFT JOIN me_transaction AS own ON own.txn_id = txn.id AND own.target_id = line.id "
    "LEFT JOIN me_relation ON me_relation.id = own.relation_id "
    "WHERE txn.posted = 1 AND txn.date BETWEEN ?1 AND ?2 AND txn.type = ";

// The dates of each type are in the order of an index, so that merging the types sorts nothing.
std::string LinesByDate() {
  std::string sql;
  for (const std::int16_t type : {kTxnTypeCheck, kTxnTypeJournalEntry, kTxnTypeBill}) {
    sql.append(sql.empty() ? "" : " UNION ALL ").append(kLinesOfType).append(std::to_string(type));
  }
  return sql + " ORDER BY 1, 2, 3";
}

PostedLineView ViewOf(const Rows& rows) {
  PostedLineView line{.txnId = rows.Int32(1),
                      .txnType = rows.Int16(3),
                      .date = DateOf(rows.Int64(0)),
                      .documentNumber = rows.Text(4),
                      .name = rows.Text(5),
                      .txnMemo = rows.Text(6),
                      .reverses = rows.Int32(7),
                      .corrects = rows.Int32(8),
                      .moves = rows.Int32(9),
                      .accountId = rows.Int32(10),
                      .amount = rows.Int64(11),
                      .memo = rows.Text(12),
                      .intercompany = {}};
  if (rows.Int64(13) != 0) {
    line.intercompany = {.partner = rows.Text(14),
                         .realm = rows.Text(15),
                         .requestId = rows.Text(16),
                         .state = {TransactionState{rows.Int16(17)}, rows.Bool(18)}};
  }
  return line;
}

}  // namespace

PostedLines::PostedLines(Database& database) : sql_(LinesByDate()), lines_(database, sql_.c_str()) {}

void PostedLines::ForEach(DateType32 from, DateType32 to, const std::function<void(const PostedLineView& line)>& take) {
  const std::uint32_t last = to == NullDate() ? std::numeric_limits<std::uint32_t>::max() : to.Value();
  Rows rows = lines_.Query(from.Value(), last);
  while (rows.Step()) take(ViewOf(rows));
}

}  // namespace standalone
