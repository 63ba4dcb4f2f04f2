#pragma once

#include <string_view>

#include "standalone/values/Decimals.h"

namespace standalone {

// Those of the currency by ISO 4217; two of one that it does not have.
Decimals DecimalsOf(std::string_view currency) noexcept;

// "none", "one", "two", "three" or "four".
std::string_view InWords(Decimals decimals) noexcept;

}  // namespace standalone
