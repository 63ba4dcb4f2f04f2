#pragma once

#include <utility>

#include "standalone/values/Errors.h"

namespace desk {

// A name or number that is taken is a value that is not acceptable.
template <typename Change>
auto Accepted(Change&& change) {
  try {
    return std::forward<Change>(change)();
  } catch (const standalone::ConstraintViolation& taken) {
    throw standalone::InvalidInput(taken.what());
  }
}

}  // namespace desk
