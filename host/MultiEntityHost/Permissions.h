#pragma once

#include <cstdint>

#include "MultiEntityHost/ChartOfAccounts.h"
#include "MultiEntityHost/Enumerations.h"

// The rights of the signed-in user. A host implements it; the module calls it on the user-interface thread.
class Permissions {
 public:
  // Whether the user may do everything; relations are managed by administrators and accountants alone.
  virtual bool CurrentUserIsAdminUser() = 0;
  // Whether the user's roles grant `action` in `feature`; `option` is 0.
  virtual bool FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) = 0;
  // Whether the user's roles grant `action` on `element` of `list`; the three options are 0.
  virtual bool ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                                       std::int32_t option2, std::int32_t option3) = 0;

 protected:
  ~Permissions() = default;
};
