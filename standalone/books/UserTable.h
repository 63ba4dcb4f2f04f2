#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"
#include "standalone/values/Rights.h"

namespace standalone {

struct User {
  std::int32_t id = 0;
  std::string name;
  bool administrator = false;  // may do everything; rights are then not looked at
  bool accountant = false;     // what the bridge library answers for this user
  std::vector<FeatureRight> featureRights;
  std::vector<ListRight> listRights;
};

inline constexpr const char* kAdministratorName = "Admin";

// The users of the company and their rights. Names compare without regard to the case of ASCII letters. Their numbers
// are those of other records, 1 to kLargestRecordNumber; a row with another one is no user, and who reads it throws
// InvalidInput. Every operation needs an open unit of work.
class UserTable {
 public:
  explicit UserTable(Database& database);

  std::vector<User> List();
  std::optional<User> Find(std::string_view name);
  std::optional<User> FindByNumber(std::int32_t id);
  // Throws InvalidInput when there is no such user.
  User Require(std::string_view name);

  // Adds a user; `id` is not looked at. Throws InvalidInput, also when the name is taken, and ConstraintViolation when
  // there is no number left for another user.
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
  std::optional<User> ReadOne(Rows rows);
  void FillRights(User& user);
  void InsertRights(const User& user);
  void RequireOtherAdministrator(const User& user);

  Database& database_;
  Statement all_;
  Statement byName_;
  Statement byNumber_;
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
