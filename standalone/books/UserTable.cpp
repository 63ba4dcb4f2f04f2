#include "standalone/books/UserTable.h"

#include <string>
#include <utility>

#include "standalone/values/Errors.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

User ReadUser(const Rows& rows) {
  User user;
  user.name = rows.Text(1);
  const std::int64_t id = rows.Int64(0);
  // One of 64 bits that was cut would be somebody else's.
  if (id < 1 || id > kLargestRecordNumber) {
    throw InvalidInput("The user " + Quoted(user.name) + " has the number " + std::to_string(id) +
                       ", and users have 1 to " + std::to_string(kLargestRecordNumber) +
                       "; have that row taken out of the company file.");
  }
  user.id = static_cast<std::int32_t>(id);
  user.administrator = rows.Bool(2);
  user.accountant = rows.Bool(3);
  return user;
}

}  // namespace

UserTable::UserTable(Database& database)
    : database_(database),
      all_(database, "SELECT id, name, administrator, accountant FROM user ORDER BY name"),
      byName_(database, "SELECT id, name, administrator, accountant FROM user WHERE name = ?1"),
      byNumber_(database, "SELECT id, name, administrator, accountant FROM user WHERE id = ?1"),
      isAdministrator_(database, "SELECT 1 FROM user WHERE id = ?1 AND administrator = 1"),
      isAccountant_(database, "SELECT 1 FROM user WHERE id = ?1 AND accountant = 1"),
      featureRights_(database,
                     "SELECT feature, action FROM user_feature_right WHERE user_id = ?1 "
                     "ORDER BY feature, action"),
      listRights_(database, "SELECT list, action FROM user_list_right WHERE user_id = ?1 ORDER BY list, action"),
      hasFeatureRight_(database,
                       "SELECT 1 FROM user_feature_right WHERE user_id = ?1 AND feature = ?2 AND action = ?3"),
      hasListRight_(database, "SELECT 1 FROM user_list_right WHERE user_id = ?1 AND list = ?2 AND action = ?3"),
      insert_(database, Writes::kLists,
              "INSERT INTO user (name, administrator, accountant) SELECT ?1, ?2, ?3 "
              "WHERE ?4 > coalesce((SELECT seq FROM sqlite_sequence WHERE name = 'user'), 0)"),
      update_(database, Writes::kLists, "UPDATE user SET administrator = ?2, accountant = ?3 WHERE id = ?1"),
      remove_(database, Writes::kLists, "DELETE FROM user WHERE id = ?1"),
      insertFeatureRight_(database, Writes::kLists, "INSERT OR IGNORE INTO user_feature_right VALUES (?1, ?2, ?3)"),
      insertListRight_(database, Writes::kLists, "INSERT OR IGNORE INTO user_list_right VALUES (?1, ?2, ?3)"),
      clearFeatureRights_(database, Writes::kLists, "DELETE FROM user_feature_right WHERE user_id = ?1"),
      clearListRights_(database, Writes::kLists, "DELETE FROM user_list_right WHERE user_id = ?1"),
      otherAdministrators_(database, "SELECT count(*) FROM user WHERE administrator = 1 AND id <> ?1") {}

std::vector<User> UserTable::List() {
  std::vector<User> users;
  {
    Rows rows = all_.Query();
    while (rows.Step()) users.push_back(ReadUser(rows));
  }
  for (User& user : users) FillRights(user);
  return users;
}

std::optional<User> UserTable::Find(std::string_view name) {
  return ReadOne(byName_.Query(name));
}

std::optional<User> UserTable::FindByNumber(std::int32_t id) {
  return ReadOne(byNumber_.Query(id));
}

User UserTable::Require(std::string_view name) {
  std::optional<User> user = Find(name);
  if (user) return *std::move(user);
  std::vector<std::string> known;
  for (const User& other : List()) known.push_back(other.name);
  throw InvalidInput("There is no user " + Quoted(name) + "; 'users' lists them." + DidYouMean(name, known));
}

User UserTable::Add(const User& user) {
  User added = user;
  added.name = Trimmed(user.name);
  RequireText("The user name", added.name, 1, kUserNameLength);
  if (Find(added.name)) {
    throw InvalidInput("There is already a user " + Quoted(added.name) + "; choose another name or remove that user.");
  }
  if (insert_.Run(added.name, added.administrator, added.accountant, kLargestRecordNumber) == 0) {
    throw ConstraintViolation("The user " + Quoted(added.name) + " cannot be added: the numbers of users, up to " +
                              std::to_string(kLargestRecordNumber) +
                              ", are used up, and none is used again; change a user instead.");
  }
  added.id = static_cast<std::int32_t>(database_.LastInsertedId());
  InsertRights(added);
  return added;
}

void UserTable::Change(const User& user) {
  User changed = user;
  changed.id = Require(user.name).id;
  if (!changed.administrator) RequireOtherAdministrator(changed);
  update_.Run(changed.id, changed.administrator, changed.accountant);
  clearFeatureRights_.Run(changed.id);
  clearListRights_.Run(changed.id);
  InsertRights(changed);
}

void UserTable::Remove(std::string_view name) {
  const User user = Require(name);
  RequireOtherAdministrator(user);
  remove_.Run(user.id);
}

bool UserTable::IsAdministrator(std::int32_t userId) {
  return isAdministrator_.Query(userId).Step();
}

bool UserTable::IsAccountant(std::int32_t userId) {
  return isAccountant_.Query(userId).Step();
}

bool UserTable::HasRight(std::int32_t userId, FeatureRight right) {
  return hasFeatureRight_
      .Query(userId, static_cast<std::int32_t>(right.feature), static_cast<std::int32_t>(right.action))
      .Step();
}

bool UserTable::HasRight(std::int32_t userId, ListRight right) {
  return hasListRight_.Query(userId, static_cast<std::int32_t>(right.list), static_cast<std::int32_t>(right.action))
      .Step();
}

std::optional<User> UserTable::ReadOne(Rows rows) {
  if (!rows.Step()) return std::nullopt;
  User user = ReadUser(rows);
  FillRights(user);
  return user;
}

void UserTable::FillRights(User& user) {
  Rows features = featureRights_.Query(user.id);
  while (features.Step()) {
    user.featureRights.push_back(
        {static_cast<ProgramFeature>(features.Int32(0)), static_cast<UserAction>(features.Int32(1))});
  }
  Rows lists = listRights_.Query(user.id);
  while (lists.Step()) {
    user.listRights.push_back({static_cast<ListType>(lists.Int32(0)), static_cast<UserAction>(lists.Int32(1))});
  }
}

void UserTable::InsertRights(const User& user) {
  for (const FeatureRight& right : user.featureRights) {
    insertFeatureRight_.Run(user.id, static_cast<std::int32_t>(right.feature), static_cast<std::int32_t>(right.action));
  }
  for (const ListRight& right : user.listRights) {
    insertListRight_.Run(user.id, static_cast<std::int32_t>(right.list), static_cast<std::int32_t>(right.action));
  }
}

void UserTable::RequireOtherAdministrator(const User& user) {
  Rows rows = otherAdministrators_.Query(user.id);
  rows.Step();
  if (rows.Int64(0) != 0) return;
  throw InvalidInput("The user " + Quoted(user.name) +
                     " is the only administrator; make another user an administrator first.");
}

}  // namespace standalone
