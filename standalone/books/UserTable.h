#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/storage/Statement.h"

namespace standalone {

struct FeatureRight {
  ProgramFeature feature = kFeatureNone;
  UserAction action = kActionView;
  friend bool operator==(const FeatureRight&, const FeatureRight&) = default;
};

struct ListRight {
  ListType list = kListAccounts;
  UserAction action = kActionView;
  friend bool operator==(const ListRight&, const ListRight&) = default;
};

struct User {
  std::int32_t id = 0;
  std::string name;
  bool administrator = false;  // may do everything; rights are then not looked at
  bool accountant = false;     // what the bridge library answers for this user
  std::vector<FeatureRight> featureRights;
  std::vector<ListRight> listRights;
};

inline constexpr const char* kAdministratorName = "Admin";

// Texts for people: features "checks", "journal", "bills"; actions "create", "view", "delete", "modify"; lists
// "accounts". Rights are written "bills:create" and "accounts:view". The parsers throw InvalidInput.
std::string FeatureRightText(FeatureRight right);
std::string ListRightText(ListRight right);
FeatureRight ParseFeatureRight(std::string_view text);
ListRight ParseListRight(std::string_view text);

// The users of the company and their rights. Names compare without regard to the case of ASCII letters. Every operation
// needs an open unit of work.
class UserTable {
 public:
  explicit UserTable(Database& database);

  std::vector<User> List();
  std::optional<User> Find(std::string_view name);
  // Throws InvalidInput when there is no such user.
  User Require(std::string_view name);

  // Adds a user; `id` is not looked at. Throws InvalidInput, also when the name is taken.
  User Add(const User& user);
  // Replaces marks and rights of the user with that name. Throws InvalidInput when there is none, or when the company
  // would be left without an administrator.
  void Change(const User& user);
  // Throws InvalidInput when there is none, or when it is the last administrator.
  void Remove(std::string_view name);

  bool IsAdministrator(std::int32_t userId);
  bool IsAccountant(std::int32_t userId);
  bool HasRight(std::int32_t userId, FeatureRight right);
  bool HasRight(std::int32_t userId, ListRight right);

 private:
  void FillRights(User& user);
  void InsertRights(const User& user);
  void RequireOtherAdministrator(const User& user);

  Database& database_;
  Statement all_;
  Statement byName_;
  Statement isAdministrator_;
  Statement isAccountant_;
  Statement featureRights_;
  Statement listRights_;
  Statement hasFeatureRight_;
  Statement hasListRight_;
  Statement insert_;
  Statement update_;
  Statement remove_;
  Statement insertFeatureRight_;
  Statement insertListRight_;
  Statement clearFeatureRights_;
  Statement clearListRights_;
  Statement otherAdministrators_;
};

}  // namespace standalone
