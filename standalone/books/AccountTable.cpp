#include "standalone/books/AccountTable.h"

#include <utility>

#include "standalone/values/AccountTypes.h"
#include "standalone/values/Errors.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

AccountFacts ReadFacts(const Rows& rows) {
  AccountFacts facts;
  facts.id = rows.Int32(0);
  facts.parentId = rows.Int32(1);
  facts.type = rows.Int16(2);
  facts.specialKind = rows.Int32(3);
  facts.deleted = rows.Bool(4);
  return facts;
}

Account ReadAccount(const Rows& rows) {
  return {ReadFacts(rows), std::string(rows.Text(5)), std::string(rows.Text(6))};
}

std::vector<Account> ReadAccounts(Rows rows) {
  std::vector<Account> accounts;
  while (rows.Step()) accounts.push_back(ReadAccount(rows));
  return accounts;
}

std::optional<Account> ReadOne(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  return ReadAccount(rows);
}

}  // namespace

AccountTable::AccountTable(Database& database)
    : database_(database),
      all_(database,
           "SELECT id, parent_id, type, special_kind, deleted, name, full_name FROM account "
           "ORDER BY full_name, id"),
      live_(database,
            "SELECT id, parent_id, type, special_kind, deleted, name, full_name FROM account "
            "WHERE deleted = 0 ORDER BY full_name"),
      liveOfType_(database,
                  "SELECT id, parent_id, type, special_kind, deleted, name, full_name FROM account "
                  "WHERE type = ?1 AND deleted = 0 ORDER BY full_name"),
      byId_(database, "SELECT id, parent_id, type, special_kind, deleted, name, full_name FROM account WHERE id = ?1"),
      factsById_(database, "SELECT id, parent_id, type, special_kind, deleted FROM account WHERE id = ?1"),
      fullNameById_(database, "SELECT full_name FROM account WHERE id = ?1"),
      byRecordNumber_(database,
                      "SELECT id, parent_id, type, special_kind, deleted, full_name FROM account ORDER BY id"),
      byFullName_(database,
                  "SELECT id, parent_id, type, special_kind, deleted, name, full_name FROM account "
                  "WHERE full_name = ?1 AND deleted = 0"),
      insert_(database, Writes::kLists,
              "INSERT INTO account (parent_id, type, special_kind, deleted, name, full_name) "
              "VALUES (nullif(?1, 0), ?2, ?3, ?4, ?5, ?6)"),
      setDeleted_(database, Writes::kLists, "UPDATE account SET deleted = ?2 WHERE id = ?1"),
      fullNames_(database) {}

std::vector<Account> AccountTable::List(bool withDeleted) {
  return ReadAccounts(withDeleted ? all_.Query() : live_.Query());
}

std::vector<Account> AccountTable::ListOfType(std::int16_t type) {
  return ReadAccounts(liveOfType_.Query(type));
}

std::optional<Account> AccountTable::Find(std::int32_t id) {
  return ReadOne(byId_.Query(id));
}

AccountFacts AccountTable::FactsOf(std::int32_t id) {
  Rows rows = factsById_.Query(id);
  return rows.Step() ? ReadFacts(rows) : AccountFacts{};
}

const Util::TString& AccountTable::FullNameOf(std::int32_t id) {
  HeldRecords<Util::TString>& names = fullNames_.Get([](auto&) {});
  const auto number = static_cast<std::uint64_t>(id);
  if (const Util::TString* const held = names.Find(number)) return *held;
  Rows rows = fullNameById_.Query(id);
  return names.Hold(number, rows.Step() ? rows.Text(0) : std::string_view());
}

void AccountTable::ForEach(const std::function<void(const AccountFacts& facts, std::string_view fullName)>& take) {
  Rows rows = byRecordNumber_.Query();
  while (rows.Step()) take(ReadFacts(rows), rows.Text(5));
}

std::optional<Account> AccountTable::FindByFullName(std::string_view fullName) {
  return ReadOne(byFullName_.Query(fullName));
}

Account AccountTable::Require(std::string_view idOrFullName) {
  const std::optional<std::int32_t> id = ParseRecordNumber(idOrFullName);
  std::optional<Account> account =
      id ? Find(*id) : FindByFullName(NormalizedFullName("The account name", idOrFullName));
  if (account) return *std::move(account);
  throw InvalidInput("There is no account " + Quoted(idOrFullName) +
                     "; give its number or its full name, such as Utilities:Water, as 'accounts' lists them.");
}

Account AccountTable::Create(const NewAccount& account) {
  Account added;
  added.fullName = NormalizedFullName("The account name", account.fullName);
  added.name = LastPart(added.fullName);
  added.type = account.type;
  added.specialKind = account.specialKind;
  added.deleted = account.deleted;
  if (account.type < 0) throw InvalidInput("The account type " + std::to_string(account.type) + " is below 0.");
  if (account.specialKind < 0) {
    throw InvalidInput("The special kind " + std::to_string(account.specialKind) + " is below 0.");
  }
  if (const std::string_view parentName = ParentPart(added.fullName); !parentName.empty()) {
    const std::optional<Account> parent = FindByFullName(parentName);
    if (!parent) {
      throw InvalidInput("The account " + Quoted(added.fullName) + " stands under " + Quoted(parentName) +
                         ", which does not exist; add that account first.");
    }
    if (parent->type != account.type) {
      throw InvalidInput("The account " + Quoted(added.fullName) + " is of type " + AccountTypeName(account.type) +
                         ", but the account that it stands under is of type " + AccountTypeName(parent->type) +
                         "; give both the same type.");
    }
    added.parentId = parent->id;
  }
  if (!added.deleted && FindByFullName(added.fullName)) {
    throw ConstraintViolation("There is already an account " + Quoted(added.fullName) + "; choose another name.");
  }
  insert_.Run(added.parentId, added.type, added.specialKind, added.deleted, added.name, added.fullName);
  added.id = static_cast<std::int32_t>(database_.LastInsertedId());
  return added;
}

void AccountTable::SetDeleted(std::int32_t id, bool deleted) {
  if (setDeleted_.Run(id, deleted) == 0) throw InvalidInput("There is no account " + std::to_string(id) + ".");
}

}  // namespace standalone
