#include "standalone/services/PermissionsService.h"

namespace standalone {

bool PermissionsService::CurrentUserIsAdminUser() {
  return isAdministrator_.Get([this](bool& is) { is = users_.IsAdministrator(user_.id); });
}

bool PermissionsService::FeaturePermissionAvailable(ProgramFeature feature, UserAction action,
                                                    unsigned char /*option*/) {
  return CurrentUserIsAdminUser() || users_.HasRight(user_.id, FeatureRight{feature, action});
}

// Rights are given for a whole list.
bool PermissionsService::ListPermissionAvailable(ListType list, std::int32_t /*option1*/, UserAction action,
                                                 CAccnt& /*element*/, std::int32_t /*option2*/,
                                                 std::int32_t /*option3*/) {
  return CurrentUserIsAdminUser() || users_.HasRight(user_.id, ListRight{list, action});
}

}  // namespace standalone
