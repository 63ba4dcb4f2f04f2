#pragma once

#include <optional>
#include <vector>

#include "standalone/desk/results/Partner.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Money.h"

namespace desk {

// Which requests are meant: those that are named, or else all that wait. `partner` and `upTo` leave out others; an
// amount is compared without its sign.
struct RequestSelection {
  std::vector<standalone::RequestId> requests;
  std::optional<Partner> partner = std::nullopt;
  std::optional<standalone::LineAmount> upTo = std::nullopt;
};

}  // namespace desk
