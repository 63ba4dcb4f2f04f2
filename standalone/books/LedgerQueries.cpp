#include "standalone/books/LedgerQueries.h"

#include <limits>

#include "standalone/books/TransactionTable.h"
#include "standalone/values/AccountTypes.h"

namespace standalone {

namespace {

enum LineColumn {
  kId,
  kTxnId,
  kTxnType,
  kDate,
  kAccountId,
  kAmount,
  kDocumentNumber,
  kName,
  kMemo,
  kLineMemo,
  kFirstFurther,
};

void Fill(const Rows& rows, LedgerLine& line) {
  line.id = rows.Int32(kId);
  line.txnId = rows.Int32(kTxnId);
  line.txnType = rows.Int16(kTxnType);
  line.date = DateOf(rows.Int64(kDate));
  line.accountId = rows.Int32(kAccountId);
  line.amount = rows.Int64(kAmount);
  line.documentNumber = rows.Text(kDocumentNumber);
  line.name = rows.Text(kName);
  line.memo = rows.Text(kMemo);
  line.lineMemo = rows.Text(kLineMemo);
}

LedgerAccount ReadLedgerAccount(const Rows& rows) {
  return {.id = rows.Int32(0),
          .parentId = rows.Int32(1),
          .type = rows.Int16(2),
          .deleted = rows.Bool(3),
          .number = std::string(rows.Text(4)),
          .fullName = std::string(rows.Text(5))};
}

std::uint32_t LastOf(DateType32 to) noexcept {
  return to == NullDate() ? std::numeric_limits<std::uint32_t>::max() : to.Value();
}

}  // namespace

LedgerQueries::LedgerQueries(Database& database)
    : accounts_(database, "SELECT id, parent_id, type, deleted, number, full_name FROM account ORDER BY full_name, id"),
      account_(database, "SELECT id, parent_id, type, deleted, number, full_name FROM account WHERE id = ?1"),
      amounts_(database,
               "SELECT l.account_id, l.amount FROM txn_line l CROSS JOIN txn t ON t.id = l.txn_id "
               "WHERE t.posted = 1 AND t.date BETWEEN ?1 AND ?2"),
      allAmounts_(
          database,
          "SELECT l.account_id, l.amount FROM txn_line l CROSS JOIN txn t ON t.id = l.txn_id WHERE t.posted = 1"),
      sum_(database,
           "WITH RECURSIVE wanted (id) AS (SELECT ?1 UNION "
           "SELECT a.id FROM wanted JOIN account a ON a.parent_id = wanted.id WHERE ?2) "
           "SELECT sum(l.amount) FROM wanted CROSS JOIN txn_line l ON l.account_id = wanted.id "
           "CROSS JOIN txn t ON t.id = l.txn_id WHERE t.posted = 1 AND t.date BETWEEN ?3 AND ?4"),
      register_(
          database,
          "WITH RECURSIVE wanted (id) AS (SELECT ?1 UNION "
          "SELECT a.id FROM wanted JOIN account a ON a.parent_id = wanted.id WHERE ?2) "
          "SELECT l.id, l.txn_id, t.type, t.date, l.account_id, l.amount, t.document_number, n.full_name, t.memo, "
          "l.memo, (SELECT CASE WHEN min(o.account_id) = max(o.account_id) THEN min(o.account_id) END "
          "FROM txn_line o WHERE o.txn_id = l.txn_id AND o.id <> l.id) "
          "FROM wanted CROSS JOIN txn_line l ON l.account_id = wanted.id "
          "CROSS JOIN txn t ON t.id = l.txn_id LEFT JOIN name n ON n.id = t.name_id "
          "WHERE t.posted = 1 AND t.date BETWEEN ?3 AND ?4 ORDER BY t.date, t.id, l.id"),
      withPartner_(database,
                   "SELECT l.id, l.txn_id, t.type, t.date, l.account_id, l.amount, t.document_number, n.full_name, "
                   "t.memo, l.memo, m.id IS NOT NULL OR p.id IS NOT NULL, ifnull(m.state, p.state), "
                   "ifnull(m.of_before, p.of_before) "
                   "FROM txn_line l CROSS JOIN txn t ON t.id = l.txn_id LEFT JOIN name n ON n.id = t.name_id "
                   "LEFT JOIN me_transaction m ON m.target_id = l.id AND m.txn_id = l.txn_id AND (m.relation_id = ?1 "
                   "OR t.type <> 8 OR EXISTS (SELECT 1 FROM me_own_request WHERE target_id = m.target_id)) "
                   "LEFT JOIN me_transaction p ON m.id IS NULL AND t.type = 8 AND p.target_id = l.id - 1 "
                   "AND p.txn_id = l.txn_id "
                   "AND NOT EXISTS (SELECT 1 FROM me_own_request WHERE target_id = p.target_id) "
                   "WHERE l.account_id = ?2 AND t.posted = 1 AND t.date <= ?3 "
                   "AND coalesce(m.relation_id, p.relation_id, ?1) = ?1 ORDER BY t.date, t.id, l.id"),
      anyElsewhere_(database,
                    "SELECT DISTINCT m.relation_id FROM me_transaction m "
                    "CROSS JOIN me_relation r ON r.id = m.relation_id "
                    "CROSS JOIN txn_line o ON o.id = m.target_id AND o.txn_id = m.txn_id "
                    "WHERE o.account_id NOT IN (r.due_from_account_id, r.due_to_account_id) AND (m.txn_type <> 8 "
                    "OR EXISTS (SELECT 1 FROM me_own_request WHERE target_id = m.target_id) "
                    "OR EXISTS (SELECT 1 FROM txn_line l WHERE l.id = m.target_id + 1 AND l.txn_id = m.txn_id "
                    "AND l.account_id NOT IN (r.due_from_account_id, r.due_to_account_id)))"),
      elsewhere_(database,
                 "WITH request AS (SELECT m.id, m.txn_id, m.target_id, m.state, m.of_before, m.relation_id, "
                 "m.txn_type <> 8 OR EXISTS (SELECT 1 FROM me_own_request WHERE target_id = m.target_id) AS own "
                 "FROM me_transaction m WHERE m.relation_id = ?1) "
                 "SELECT l.id, l.txn_id, t.type, t.date, l.account_id, l.amount, t.document_number, n.full_name, "
                 "t.memo, l.memo, m.state, m.of_before, a.type, "
                 "EXISTS (SELECT 1 FROM me_relation WHERE due_from_account_id = a.id) "
                 "OR EXISTS (SELECT 1 FROM me_relation WHERE due_to_account_id = a.id) "
                 "FROM request m CROSS JOIN me_relation r ON r.id = m.relation_id "
                 "CROSS JOIN txn_line o ON o.id = m.target_id AND o.txn_id = m.txn_id "
                 "CROSS JOIN txn_line l ON l.id = m.target_id + NOT m.own AND l.txn_id = m.txn_id "
                 "CROSS JOIN account a ON a.id = l.account_id CROSS JOIN txn t ON t.id = l.txn_id "
                 "LEFT JOIN name n ON n.id = t.name_id "
                 "WHERE m.own = ?2 AND t.posted = 1 AND t.date <= ?3 "
                 "AND l.account_id NOT IN (r.due_from_account_id, r.due_to_account_id) "
                 "AND o.account_id NOT IN (r.due_from_account_id, r.due_to_account_id)"),
      reversals_(database,
                 "SELECT k.txn_id, k.earlier_txn_id, t.date FROM txn_link k CROSS JOIN txn t ON t.id = k.txn_id "
                 "WHERE k.kind = 'reverses' ORDER BY k.txn_id DESC") {}

std::vector<LedgerAccount> LedgerQueries::Accounts() {
  std::vector<LedgerAccount> accounts;
  for (Rows rows = accounts_.Query(); rows.Step();) accounts.push_back(ReadLedgerAccount(rows));
  return accounts;
}

std::optional<LedgerAccount> LedgerQueries::FindAccount(std::int32_t id) {
  Rows rows = account_.Query(id);
  if (!rows.Step()) return std::nullopt;
  return ReadLedgerAccount(rows);
}

void LedgerQueries::ForEachAmount(LedgerDays days,
                                  const std::function<void(std::int32_t accountId, std::int64_t amount)>& take) {
  // Reading the date of each transaction takes a tenth of the time.
  const bool isOfAllDays = days.from == NullDate() && days.to == NullDate();
  Rows rows = isOfAllDays ? allAmounts_.Query() : amounts_.Query(days.from.Value(), LastOf(days.to));
  while (rows.Step()) take(rows.Int32(0), rows.Int64(1));
}

std::int64_t LedgerQueries::SumOf(std::int32_t accountId, bool withSubAccounts, LedgerDays days) {
  Rows rows = sum_.Query(accountId, withSubAccounts, days.from.Value(), LastOf(days.to));
  return rows.Step() ? rows.Int64(0) : 0;
}

void LedgerQueries::ForEachOf(std::int32_t accountId, bool withSubAccounts, LedgerDays days,
                              const std::function<void(const RegisterLine& line)>& take) {
  RegisterLine line;
  for (Rows rows = register_.Query(accountId, withSubAccounts, days.from.Value(), LastOf(days.to)); rows.Step();) {
    Fill(rows, line);
    line.otherAccountId = rows.Int32(kFirstFurther);
    take(line);
  }
}

void LedgerQueries::ForEachWithPartner(std::int32_t relationId, std::int32_t accountId, DateType32 to,
                                       const std::function<void(const PartnerLine& line)>& take) {
  PartnerLine line;
  for (Rows rows = withPartner_.Query(relationId, accountId, LastOf(to)); rows.Step();) {
    Fill(rows, line);
    line.state.reset();
    if (rows.Bool(kFirstFurther)) {
      line.state.emplace(TransactionState{rows.Int16(kFirstFurther + 1)}, rows.Bool(kFirstFurther + 2));
    }
    take(line);
  }
}

std::unordered_set<std::int32_t> LedgerQueries::RelationsWithLinesElsewhere() {
  std::unordered_set<std::int32_t> relations;
  for (Rows rows = anyElsewhere_.Query(); rows.Step();) relations.insert(rows.Int32(0));
  return relations;
}

// Requests that version 1.0 or an import left on lines of expenses or income are no claims; an account that is paired
// with any partner holds nothing else, whatever its type.
void LedgerQueries::ForEachElsewhere(std::int32_t relationId, bool isOwedToUs, DateType32 to,
                                     const std::function<void(const PartnerLine& line)>& take) {
  PartnerLine line;
  for (Rows rows = elsewhere_.Query(relationId, isOwedToUs, LastOf(to)); rows.Step();) {
    const std::int16_t type = rows.Int16(kFirstFurther + 2);
    const bool isPaired = rows.Bool(kFirstFurther + 3);
    if (!isPaired && !(isOwedToUs ? IsAsset(type) : IsLiability(type))) continue;
    Fill(rows, line);
    line.state.emplace(TransactionState{rows.Int16(kFirstFurther)}, rows.Bool(kFirstFurther + 1));
    take(line);
  }
}

std::vector<LedgerQueries::Reversal> LedgerQueries::Reversals() {
  std::vector<Reversal> reversals;
  for (Rows rows = reversals_.Query(); rows.Step();) {
    reversals.push_back({.txnId = rows.Int32(0), .earlierTxnId = rows.Int32(1), .date = DateOf(rows.Int64(2))});
  }
  return reversals;
}

}  // namespace standalone
