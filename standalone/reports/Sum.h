#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>

#include "standalone/values/Amount.h"

namespace standalone {

// Throws std::overflow_error rather than tell a wrong sum.
inline void AddTo(std::int64_t& sum, std::int64_t amount) {
  const std::optional<std::int64_t> added = AddAmounts(sum, amount);
  if (!added) throw std::overflow_error("the amounts add up to more than this program can count");
  sum = *added;
}

}  // namespace standalone
