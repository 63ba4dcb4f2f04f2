#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "standalone/desk/results/ListItem.h"

namespace desk {

// Where requests of a partner are booked: those whose name, hint of the account and memo are such, each empty for any.
struct Rule {
  std::int32_t id = 0;
  std::string partner;  // as it is called here
  std::string realm;    // empty until it is known
  std::string name;     // as the requests tell it
  std::string hint;
  std::string memo;  // a text somewhere in the memo
  ListItem account;
  std::optional<ListItem> bookedAs = std::nullopt;  // the name here; the one that each request tells without it
  bool isLearned = false;                           // from a booking of a person
  std::string unfit;                                // why it fits no request now, as a sentence; mostly empty
};

}  // namespace desk
