#include "standalone/books/RelationTable.h"

#include <cstring>

#include "standalone/books/RowFields.h"

namespace standalone {

namespace {

constexpr std::size_t kMostHeld = 4096;

void Read(const Rows& rows, DBMultiEntityRelation& row) {
  std::memset(&row, 0, sizeof row);
  row.relationId = rows.Int32(0);
  Fill(row.realmId, rows.Text(1));
  Fill(row.partnerName, rows.Text(2));
  row.relationType = rows.Int16(3);
  row.state = rows.Int16(4);
  row.createdAt = rows.Int64(5);
  row.changedAt = rows.Int64(6);
  row.revision = rows.Int32(7);
  row.dueFromAccountId = rows.Int32(8);
  row.dueToAccountId = rows.Int32(9);
}

}  // namespace

RelationTable::RelationTable(Database& database)
    : database_(database),
      held_(database),
      byRealm_(database,
               "SELECT id, realm_id, partner_name, relation_type, state, created_at, changed_at, revision, "
               "due_from_account_id, due_to_account_id FROM me_relation WHERE realm_id = ?1"),
      byId_(database,
            "SELECT id, realm_id, partner_name, relation_type, state, created_at, changed_at, revision, "
            "due_from_account_id, due_to_account_id FROM me_relation WHERE id = ?1"),
      all_(database,
           "SELECT id, realm_id, partner_name, relation_type, state, created_at, changed_at, revision, "
           "due_from_account_id, due_to_account_id FROM me_relation ORDER BY id"),
      insert_(database, Writes::kLists,
              "INSERT INTO me_relation (realm_id, partner_name, relation_type, state, created_at, changed_at, "
              "revision, due_from_account_id, due_to_account_id) VALUES (?1, ?2, ?3, ?4, ?5, ?5, 1, ?6, ?7)"),
      update_(database, Writes::kLists,
              "UPDATE me_relation SET partner_name = ?2, relation_type = ?3, state = ?4, changed_at = ?5, "
              "revision = revision + 1, due_from_account_id = ?6, due_to_account_id = ?7 "
              "WHERE realm_id = ?1 RETURNING created_at, changed_at, revision"),
      delete_(database, Writes::kLists, "DELETE FROM me_relation WHERE realm_id = ?1"),
      usesAccounts_(database,
                    "SELECT 1 FROM me_relation WHERE due_from_account_id IN (nullif(?1, 0), nullif(?2, 0)) "
                    "OR due_to_account_id IN (nullif(?1, 0), nullif(?2, 0)) LIMIT 1"),
      othersUseAccounts_(database,
                         "SELECT 1 FROM me_relation WHERE (due_from_account_id IN (nullif(?1, 0), nullif(?2, 0)) "
                         "OR due_to_account_id IN (nullif(?1, 0), nullif(?2, 0))) AND realm_id <> ?3 LIMIT 1"),
      inState_(database, "SELECT count(*) FROM me_relation WHERE state = ?1") {}

// A partner's messages ask for the same relation again and again.
bool RelationTable::Find(std::string_view realmId, DBMultiEntityRelation& row) {
  Held& held = held_.Get([](Held&) {});
  if (const auto found = held.byRealm.find(realmId); found != held.byRealm.end()) {
    row = found->second;
    return true;
  }
  Rows rows = byRealm_.Query(realmId);
  if (!rows.Step()) return false;
  row = Hold(held, rows);
  return true;
}

bool RelationTable::FindById(std::int64_t id, DBMultiEntityRelation& row) {
  Held& held = held_.Get([](Held&) {});
  if (const auto found = held.byId.find(id); found != held.byId.end()) {
    row = *found->second;
    return true;
  }
  Rows rows = byId_.Query(id);
  if (!rows.Step()) return false;
  row = Hold(held, rows);
  return true;
}

const DBMultiEntityRelation& RelationTable::Hold(Held& held, const Rows& rows) {
  if (held.byRealm.size() == kMostHeld) held = {};
  DBMultiEntityRelation row;
  Read(rows, row);
  const DBMultiEntityRelation& kept = held.byRealm.insert_or_assign(std::string(Field(row.realmId)), row).first->second;
  held.byId.insert_or_assign(kept.relationId, &kept);
  return kept;
}

void RelationTable::List(std::vector<DBMultiEntityRelation>& rows) {
  Rows found = all_.Query();
  rows.clear();
  while (found.Step()) Read(found, rows.emplace_back());
}

void RelationTable::Add(DBMultiEntityRelation& row, std::int64_t now) {
  insert_.Run(Field(row.realmId), Field(row.partnerName), row.relationType, row.state, now, row.dueFromAccountId,
              row.dueToAccountId);
  row.relationId = static_cast<std::int32_t>(database_.LastInsertedId());
  row.createdAt = now;
  row.changedAt = now;
  row.revision = 1;
}

bool RelationTable::Change(DBMultiEntityRelation& row, std::int64_t now) {
  const std::string_view realmId = Field(row.realmId);
  const std::string_view partnerName = Field(row.partnerName);
  Rows rows =
      update_.Query(realmId, partnerName, row.relationType, row.state, now, row.dueFromAccountId, row.dueToAccountId);
  if (!rows.Step()) return false;
  row.createdAt = rows.Int64(0);
  row.changedAt = rows.Int64(1);
  row.revision = rows.Int32(2);
  rows.Step();
  return true;
}

bool RelationTable::Remove(std::string_view realmId) {
  return delete_.Run(realmId) != 0;
}

bool RelationTable::UsesAccount(std::int32_t account) {
  std::unordered_map<std::int32_t, bool>& isUsed = held_.Get([](Held&) {}).isUsed;
  if (const auto known = isUsed.find(account); known != isUsed.end()) return known->second;
  const bool uses = UsesAccounts(account, 0);
  if (isUsed.size() == kMostHeld) isUsed.clear();
  isUsed.emplace(account, uses);
  return uses;
}

bool RelationTable::UsesAccounts(std::int64_t account1, std::int64_t account2) {
  return usesAccounts_.Query(account1, account2).Step();
}

bool RelationTable::OthersUseAccounts(std::string_view realmId, std::int64_t account1, std::int64_t account2) {
  return othersUseAccounts_.Query(account1, account2, realmId).Step();
}

std::int64_t RelationTable::CountInState(std::int16_t state) {
  Rows rows = inState_.Query(state);
  rows.Step();
  return rows.Int64(0);
}

}  // namespace standalone
