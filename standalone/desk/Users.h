#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "standalone/values/Rights.h"

namespace desk {

class Company;

struct User {
  std::string name;  // 1 to 60 bytes; as it was written when the user was added
  bool administrator = false;
  bool accountant = false;
  // Such as "bills:create" and "accounts:view". Of a user who is listed: what that user may do, which for an
  // administrator is everything; of one who is added or changed: what is to be written down, which counts as long as
  // the user is no administrator.
  std::vector<standalone::Right> rights;
};

struct ChangedUser : User {
  bool hasChanged = false;  // had other marks or rights before
};

// For administrators and accountants.
std::vector<User> ListUsers(Company& company);

// For administrators. standalone::InvalidInput for a name that is taken, not known or no name, and for a change that
// would leave the company without an administrator.
User AddUser(Company& company, const User& user);
// Replaces the marks and rights of the user with that name.
ChangedUser ChangeUser(Company& company, const User& user);
void RemoveUser(Company& company, const std::string& name);

// As what a user works with the relations in a role: 0 and 15 manage them, in 1 and others the rights for accounts
// decide.
enum class Persona { kNone = 0, kViewer = 1, kContributor = 2, kManager = 3 };
Persona PersonaInRole(Company& company, std::int32_t role);

}  // namespace desk
