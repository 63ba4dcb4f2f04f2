#pragma once

#include <optional>
#include <string>

namespace desk {

// Accounts as people give them: by record number or colon-separated name. Both or none.
struct RelationAccounts {
  std::optional<std::string> dueFrom;  // an asset
  std::optional<std::string> dueTo;    // a liability
  bool ofAnyType = false;              // takes others, too, as far as the module does
};

}  // namespace desk
