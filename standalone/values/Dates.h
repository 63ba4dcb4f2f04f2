#pragma once

#include <string>
#include <string_view>

#include "MultiEntityHost/DateType32.h"

namespace standalone {

// Reads YYYY-MM-DD, years 1900 to 9999; throws InvalidInput that calls the value `what`.
DateType32 ParseDate(std::string_view what, std::string_view text);

// YYYY-MM-DD; empty for the null date.
std::string FormatIsoDate(DateType32 date);

// By the local clock.
DateType32 Today();

}  // namespace standalone
