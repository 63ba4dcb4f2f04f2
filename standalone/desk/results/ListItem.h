#pragma once

#include <cstdint>
#include <string>

namespace desk {

// A record of a list: an account or a name.
struct ListItem {
  std::int32_t id = 0;  // record number, 1 or greater
  std::string name;     // with its parents', colon-separated from the top; empty when there is no such record
  friend bool operator==(const ListItem&, const ListItem&) = default;
};

}  // namespace desk
