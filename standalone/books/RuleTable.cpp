#include "standalone/books/RuleTable.h"

namespace standalone {

namespace {

RuleRow ReadRule(const Rows& rows) {
  const std::int32_t nameId = rows.Int32(6);
  return {.id = rows.Int32(0),
          .pairing = rows.Int32(1),
          .name = std::string(rows.Text(2)),
          .hint = std::string(rows.Text(3)),
          .memo = std::string(rows.Text(4)),
          .accountId = rows.Int32(5),
          .nameId = nameId == 0 ? std::nullopt : std::optional(nameId),
          .learned = rows.Bool(7)};
}

std::optional<RuleRow> ReadOneRule(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  return ReadRule(rows);
}

std::vector<RuleRow> ReadRules(Rows rows) {
  std::vector<RuleRow> rules;
  while (rows.Step()) rules.push_back(ReadRule(rows));
  return rules;
}

}  // namespace

RuleTable::RuleTable(Database& database)
    : database_(database),
      insert_(database, Writes::kLists,
              "INSERT INTO exchange_rule (pairing_id, name, hint, memo, account_id, name_id, learned) "
              "VALUES (?1, ?2, ?3, ?4, ?5, nullif(?6, 0), ?7)"),
      setTarget_(database, Writes::kLists,
                 "UPDATE exchange_rule SET account_id = ?2, name_id = nullif(?3, 0) WHERE id = ?1"),
      delete_(database, Writes::kLists, "DELETE FROM exchange_rule WHERE id = ?1"),
      byId_(database,
            "SELECT id, pairing_id, name, hint, memo, account_id, name_id, learned FROM exchange_rule WHERE id = ?1"),
      alike_(database,
             "SELECT id, pairing_id, name, hint, memo, account_id, name_id, learned FROM exchange_rule "
             "WHERE pairing_id = ?1 AND name = ?2 AND hint = ?3 AND memo = ?4 AND learned = ?5"),
      ofName_(database,
              "SELECT id, pairing_id, name, hint, memo, account_id, name_id, learned FROM exchange_rule "
              "WHERE name_id = ?1 ORDER BY id LIMIT 1"),
      all_(database,
           "SELECT id, pairing_id, name, hint, memo, account_id, name_id, learned FROM exchange_rule "
           "WHERE pairing_id = ?1 ORDER BY id"),
      forRequest_(database,
                  "SELECT id, pairing_id, name, hint, memo, account_id, name_id, learned FROM exchange_rule "
                  "WHERE pairing_id = ?1 AND name IN (?2, '') AND hint IN (?3, '') "
                  "AND instr(lower(?4), lower(memo)) > 0 ORDER BY id") {}

std::int32_t RuleTable::Add(const RuleRow& rule) {
  insert_.Run(rule.pairing, rule.name, rule.hint, rule.memo, rule.accountId, rule.nameId.value_or(0), rule.learned);
  return static_cast<std::int32_t>(database_.LastInsertedId());
}

void RuleTable::SetTarget(std::int32_t id, std::int32_t accountId, std::optional<std::int32_t> nameId) {
  setTarget_.Run(id, accountId, nameId.value_or(0));
}

void RuleTable::Remove(std::int32_t id) {
  delete_.Run(id);
}

std::optional<RuleRow> RuleTable::Find(std::int32_t id) {
  return ReadOneRule(byId_.Query(id));
}

std::optional<RuleRow> RuleTable::FindAlike(const RuleRow& rule) {
  return ReadOneRule(alike_.Query(rule.pairing, rule.name, rule.hint, rule.memo, rule.learned));
}

std::optional<RuleRow> RuleTable::FindOfName(std::int32_t nameId) {
  return ReadOneRule(ofName_.Query(nameId));
}

std::vector<RuleRow> RuleTable::List(std::int32_t pairing) {
  return ReadRules(all_.Query(pairing));
}

std::vector<RuleRow> RuleTable::ListFor(std::int32_t pairing, const RequestTold& request) {
  return ReadRules(forRequest_.Query(pairing, request.name, request.hint, request.memo));
}

}  // namespace standalone
