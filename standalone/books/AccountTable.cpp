#include "standalone/books/AccountTable.h"

#include <utility>

#include "standalone/values/AccountTypes.h"
#include "standalone/values/Errors.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Suggestions.h"
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
  return {ReadFacts(rows), std::string(rows.Text(5)), std::string(rows.Text(6)), std::string(rows.Text(7))};
}

std::vector<Account> ReadAccounts(Rows rows) {
  std::vector<Account> accounts;
  while (rows.Step()) accounts.push_back(ReadAccount(rows));
  return accounts;
}

Account RequireById(std::optional<Account> account, std::int32_t id) {
  if (account) return *std::move(account);
  throw InvalidInput("There is no account " + std::to_string(id) + ".");
}

// The accounts that a text may mean, each by what it is of it.
class Candidates {
 public:
  void Add(std::optional<Account> account, const char* what) {
    if (!account || (first_ && first_->id == account->id)) return;
    means_ += (means_.empty() ? "the " : " and the ") + std::string(what) + " of the account " +
              Quoted(account->fullName) + " (#" + std::to_string(account->id) + ")";
    isOnly_ = !first_;
    if (!first_) first_ = std::move(account);
  }

  std::optional<Account> TheOnly(std::string_view text) {
    if (isOnly_) return std::move(first_);
    throw InvalidInput(Quoted(text) + " is " + means_ +
                       "; write # before the record number, as here, or a full name that is no number.");
  }

 private:
  std::optional<Account> first_;
  std::string means_;
  bool isOnly_ = true;
};

}  // namespace

bool TakesPostings(const AccountFacts& account) noexcept {
  return account.id != 0 && !account.deleted && account.type != KrEnumerations::kNonPosting;
}

void RequireTakesPostings(const Account& account) {
  if (TakesPostings(account)) return;
  throw InvalidInput("The account " + Quoted(account.fullName) +
                     (account.deleted ? " is marked deleted" : " is a non-posting account") +
                     " and takes no amounts; choose another account.");
}

AccountTable::AccountTable(Database& database)
    : database_(database),
      all_(database,
           "SELECT id, parent_id, type, special_kind, deleted, name, full_name, number FROM account "
           "ORDER BY full_name, id"),
      live_(database,
            "SELECT id, parent_id, type, special_kind, deleted, name, full_name, number FROM account "
            "WHERE deleted = 0 ORDER BY full_name"),
      liveOfType_(database,
                  "SELECT id, parent_id, type, special_kind, deleted, name, full_name, number FROM account "
                  "WHERE type = ?1 AND deleted = 0 ORDER BY full_name"),
      byId_(database,
            "SELECT id, parent_id, type, special_kind, deleted, name, full_name, number FROM account WHERE id = ?1"),
      factsById_(database, "SELECT id, parent_id, type, special_kind, deleted FROM account WHERE id = ?1"),
      fullNameById_(database, "SELECT full_name FROM account WHERE id = ?1"),
      byRecordNumber_(database,
                      "SELECT id, parent_id, type, special_kind, deleted, full_name FROM account ORDER BY id"),
      byFullName_(database,
                  "SELECT id, parent_id, type, special_kind, deleted, name, full_name, number FROM account "
                  "WHERE full_name = ?1 AND deleted = 0"),
      byNumber_(database,
                "SELECT id, parent_id, type, special_kind, deleted, name, full_name, number FROM account "
                "WHERE number = ?1 AND number <> '' AND deleted = 0"),
      beyondAscii_(database,
                   "SELECT full_name FROM account WHERE deleted = 0 AND full_name GLOB '*[^ -~]*' "
                   "AND full_name <> ?1 ORDER BY id"),
      lengthBelow_(database,
                   "WITH RECURSIVE below (id) AS (VALUES (?1) "
                   "UNION ALL SELECT account.id FROM account JOIN below ON parent_id = below.id) "
                   "SELECT max(length(CAST(full_name AS BLOB))) FROM account WHERE id IN below"),
      rename_(database, Writes::kLists,
              "WITH RECURSIVE below (id) AS (VALUES (?1) "
              "UNION ALL SELECT account.id FROM account JOIN below ON parent_id = below.id) "
              "UPDATE account SET name = iif(id = ?1, ?2, name), "
              "full_name = ?3 || substr(full_name, length(?4) + 1) WHERE id IN below"),
      setNumber_(database, Writes::kLists, "UPDATE account SET number = ?2 WHERE id = ?1"),
      use_(database,
           "SELECT (SELECT count(*) FROM txn_line WHERE account_id = ?1), "
           "(SELECT count(*) FROM account WHERE parent_id = ?1 AND deleted = 0)"),
      insert_(database, Writes::kLists,
              "INSERT INTO account (parent_id, type, special_kind, deleted, name, full_name, number) "
              "VALUES (nullif(?1, 0), ?2, ?3, ?4, ?5, ?6, ?7)"),
      setDeleted_(database, Writes::kLists, "UPDATE account SET deleted = ?2 WHERE id = ?1"),
      fullNames_(database),
      facts_(database) {}

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
  HeldRecords<AccountFacts>& facts = facts_.Get([](auto&) {});
  const auto number = static_cast<std::uint64_t>(id);
  if (const AccountFacts* const held = facts.Find(number)) return *held;
  Rows rows = factsById_.Query(id);
  return rows.Step() ? facts.Hold(number, ReadFacts(rows)) : AccountFacts{};
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

std::optional<Account> AccountTable::FindByNumber(std::string_view number) {
  return ReadOne(byNumber_.Query(number));
}

// An account that is asked for by its name is asked for by its number next.
std::optional<Account> AccountTable::ReadOne(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  Account account = ReadAccount(rows);
  facts_.Get([](auto&) {}).Hold(static_cast<std::uint64_t>(account.id), static_cast<const AccountFacts&>(account));
  return account;
}

std::optional<Account> AccountTable::FindTyped(std::string_view text) {
  if (const auto id = ParseMarkedRecordNumber(text)) return Find(*id);
  const std::string fullName = NormalizedFullName("The account name", text);
  if (!IsAccountNumber(text)) return FindByFullName(fullName);
  const std::optional<std::int32_t> id = ParseRecordNumber(text);
  Candidates found;
  found.Add(FindByNumber(text), "number");
  found.Add(id ? Find(*id) : std::nullopt, "record number");
  found.Add(FindByFullName(fullName), "full name");
  return found.TheOnly(text);
}

Account AccountTable::Require(std::string_view text) {
  if (std::optional<Account> account = FindTyped(text)) return *std::move(account);
  std::vector<std::string> known;
  for (const Account& other : List()) known.push_back(other.fullName);
  throw InvalidInput("There is no account " + Quoted(text) +
                     "; give its number or its full name, such as Utilities:Water, as 'accounts' lists them." +
                     DidYouMean(text, known));
}

AlikeNames AccountTable::ForAlike(std::string_view butFor) {
  AlikeNames names([this](std::string_view fullName) -> std::optional<std::string> {
    if (std::optional<Account> found = FindByFullName(fullName)) return std::move(found->fullName);
    return std::nullopt;
  });
  Rows rows = beyondAscii_.Query(butFor);
  while (rows.Step()) names.Add(rows.Text(0));
  return names;
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
    added.fullName = FullNameUnder(parent->fullName, added.name);
  }
  if (!added.deleted) RequireFreeName(added.fullName, added.id);
  if (account.number) {
    added.number = RequireAccountNumber(*account.number);
    if (!added.deleted) RequireFreeNumber(added.number, added.id);
  }
  insert_.Run(added.parentId, added.type, added.specialKind, added.deleted, added.name, added.fullName, added.number);
  added.id = static_cast<std::int32_t>(database_.LastInsertedId());
  return added;
}

void AccountTable::RequireFreeName(std::string_view fullName, std::int32_t id) {
  const std::optional<Account> taken = FindByFullName(fullName);
  if (!taken || taken->id == id) return;
  throw ConstraintViolation("There is already an account " + Quoted(taken->fullName) + "; choose another name.");
}

void AccountTable::RequireFreeNumber(std::string_view number, std::int32_t id) {
  const std::optional<Account> other = FindByNumber(number);
  if (!other || other->id == id) return;
  throw ConstraintViolation("The account " + Quoted(other->fullName) + " has the number " + std::string(number) +
                            " already; choose another number.");
}

std::int64_t AccountTable::LongestBelow(std::int32_t id) {
  Rows rows = lengthBelow_.Query(id);
  rows.Step();
  return rows.Int64(0);
}

std::int64_t AccountTable::Rename(std::int32_t id, std::string_view ownName) {
  const Account account = RequireById(Find(id), id);
  const std::string fullName = RenamedFullName("The account name", account.fullName, ownName);
  RequireFreeName(fullName, id);
  RequireRoomBelow(LongestBelow(id), account.fullName, fullName);
  try {
    return rename_.Run(id, LastPart(fullName), fullName, account.fullName) - 1;
  } catch (const ConstraintViolation&) {
    throw ConstraintViolation("A sub-account of " + Quoted(fullName) +
                              " would be called as another account is; choose another name.");
  }
}

void AccountTable::SetNumber(std::int32_t id, std::string_view number) {
  const Account account = RequireById(Find(id), id);
  if (!number.empty()) {
    RequireAccountNumber(number);
    if (!account.deleted) RequireFreeNumber(number, id);
  }
  setNumber_.Run(id, number);
}

AccountUse AccountTable::UseOf(std::int32_t id) {
  Rows rows = use_.Query(id);
  rows.Step();
  return {.lines = rows.Int64(0), .subAccounts = rows.Int64(1)};
}

void AccountTable::SetDeleted(std::int32_t id, bool deleted) {
  if (setDeleted_.Run(id, deleted) == 0) throw InvalidInput("There is no account " + std::to_string(id) + ".");
}

}  // namespace standalone
