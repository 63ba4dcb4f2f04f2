#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "standalone/desk/results/ListItem.h"
#include "standalone/values/States.h"

namespace desk {

// With a partner company.
struct Relation {
  using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

  std::int32_t id = 0;
  std::string realm;  // the partner company's
  std::string partner;
  std::int16_t type = 0;  // kept as it was given
  standalone::RelationState state{};
  std::optional<ListItem> dueFrom;  // what the partner owes this company
  std::optional<ListItem> dueTo;    // what this company owes the partner
  std::int32_t revision = 0;        // 1 when it was made, one more at each change
  Moment createdAt;                 // UTC
  Moment changedAt;
};

}  // namespace desk
