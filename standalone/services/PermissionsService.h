#pragma once

#include "MultiEntityHost/Permissions.h"
#include "standalone/books/UserTable.h"
#include "standalone/storage/ReadOnce.h"

namespace standalone {

// The rights of the user that is handed in, which outlives this, as the company file has them now. An administrator may
// do everything.
class PermissionsService final : public Permissions {
 public:
  PermissionsService(Database& database, UserTable& users, const User& user)
      : users_(users), user_(user), isAdministrator_(database) {}

  // For when that is another user now; a number that changes with the company file is noticed.
  void ForgetUser() noexcept { isAdministrator_.Forget(); }

  bool CurrentUserIsAdminUser() override;
  bool FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) override;
  bool ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                               std::int32_t option2, std::int32_t option3) override;

 private:
  UserTable& users_;
  const User& user_;
  ReadOnce<bool> isAdministrator_;
};

}  // namespace standalone
