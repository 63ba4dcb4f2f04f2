#pragma once

#include "MultiEntityHost/Permissions.h"
#include "standalone/books/UserTable.h"
#include "standalone/storage/ReadOnce.h"

namespace standalone {

// The rights of the selected user as the company file has them now. An administrator may do everything.
class PermissionsService final : public Permissions {
 public:
  PermissionsService(Database& database, UserTable& users, std::int32_t userId)
      : users_(users), userId_(userId), isAdministrator_(database) {}

  bool CurrentUserIsAdminUser() override;
  bool FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) override;
  bool ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                               std::int32_t option2, std::int32_t option3) override;

 private:
  UserTable& users_;
  std::int32_t userId_;
  ReadOnce<bool> isAdministrator_;
};

}  // namespace standalone
