#include "standalone/books/UserTable.h"

#include <array>
#include <span>
#include <utility>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

struct Word {
  const char* text;
  std::int32_t number;
};

constexpr std::array<Word, 3> kFeatures{
    {{"checks", kFeatureChecks}, {"journal", kFeatureJournalEntries}, {"bills", kFeatureBills}}};
constexpr std::array<Word, 4> kActions{
    {{"create", kActionCreate}, {"view", kActionView}, {"delete", kActionDelete}, {"modify", kActionModify}}};
constexpr std::array<Word, 1> kLists{{{"accounts", kListAccounts}}};

std::string TextOf(std::span<const Word> words, std::int32_t number) {
  for (const Word& word : words) {
    if (word.number == number) return word.text;
  }
  return std::to_string(number);
}

std::optional<std::int32_t> NumberOf(std::span<const Word> words, std::string_view text) {
  for (const Word& word : words) {
    if (EqualIgnoringCase(word.text, text)) return word.number;
  }
  return std::nullopt;
}

std::string Joined(std::span<const Word> words) {
  std::string joined;
  for (const Word& word : words) joined.append(joined.empty() ? "" : ", ").append(word.text);
  return joined;
}

// Reads "subject:action".
std::pair<std::int32_t, std::int32_t> ParseRight(std::span<const Word> subjects, std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos) {
    const std::optional<std::int32_t> subject = NumberOf(subjects, text.substr(0, colon));
    const std::optional<std::int32_t> action = NumberOf(kActions, text.substr(colon + 1));
    if (subject && action) return {*subject, *action};
  }
  throw InvalidInput("The right " + Quoted(text) + " is not known; write it as " + subjects.front().text +
                     ":view, where the first word is one of " + Joined(subjects) + " and the second one of " +
                     Joined(kActions) + ".");
}

[[noreturn]] void ThrowNoUser(std::string_view name) {
  throw InvalidInput("There is no user " + Quoted(name) + "; 'users' lists them.");
}

User ReadUser(const Rows& rows) {
  User user;
  user.id = rows.Int32(0);
  user.name = rows.Text(1);
  user.administrator = rows.Bool(2);
  user.accountant = rows.Bool(3);
  return user;
}

}  // namespace

std::string FeatureRightText(FeatureRight right) {
  return TextOf(kFeatures, right.feature) + ":" + TextOf(kActions, right.action);
}

std::string ListRightText(ListRight right) {
  return TextOf(kLists, right.list) + ":" + TextOf(kActions, right.action);
}

FeatureRight ParseFeatureRight(std::string_view text) {
  const auto [feature, action] = ParseRight(kFeatures, text);
  return {static_cast<ProgramFeature>(feature), static_cast<UserAction>(action)};
}

ListRight ParseListRight(std::string_view text) {
  const auto [list, action] = ParseRight(kLists, text);
  return {static_cast<ListType>(list), static_cast<UserAction>(action)};
}

UserTable::UserTable(Database& database)
    : database_(database),
      all_(database, "SELECT id, name, administrator, accountant FROM user ORDER BY name"),
      byName_(database, "SELECT id, name, administrator, accountant FROM user WHERE name = ?1"),
      isAdministrator_(database, "SELECT 1 FROM user WHERE id = ?1 AND administrator = 1"),
      isAccountant_(database, "SELECT 1 FROM user WHERE id = ?1 AND accountant = 1"),
      featureRights_(database,
                     "SELECT feature, action FROM user_feature_right WHERE user_id = ?1 "
                     "ORDER BY feature, action"),
      listRights_(database, "SELECT list, action FROM user_list_right WHERE user_id = ?1 ORDER BY list, action"),
      hasFeatureRight_(database,
                       "SELECT 1 FROM user_feature_right WHERE user_id = ?1 AND feature = ?2 AND action = ?3"),
      hasListRight_(database, "SELECT 1 FROM user_list_right WHERE user_id = ?1 AND list = ?2 AND action = ?3"),
      insert_(database, Writes::kLists, "INSERT INTO user (name, administrator, accountant) VALUES (?1, ?2, ?3)"),
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
  User user;
  {
    Rows rows = byName_.Query(name);
    if (!rows.Step()) return std::nullopt;
    user = ReadUser(rows);
  }
  FillRights(user);
  return user;
}

User UserTable::Require(std::string_view name) {
  std::optional<User> user = Find(name);
  if (!user) ThrowNoUser(name);
  return *std::move(user);
}

User UserTable::Add(const User& user) {
  User added = user;
  added.name = Trimmed(user.name);
  RequireText("The user name", added.name, 1, kUserNameLength);
  if (Find(added.name)) {
    throw InvalidInput("There is already a user " + Quoted(added.name) + "; choose another name or remove that user.");
  }
  insert_.Run(added.name, added.administrator, added.accountant);
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
