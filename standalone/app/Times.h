#pragma once

#include <cstdint>
#include <string>

#include "platform/Clock.h"

namespace app {

// "1 second", "90 seconds".
std::string SecondsText(std::uint32_t seconds);

// The moment after so many seconds from now by the local clock, as 2026-01-31 09:30:00.
std::string LocalTimeAfter(platform::Clock& clock, std::uint32_t seconds);

// A moment, given in milliseconds since 1970-01-01 UTC, as 2026-01-31T09:30:00Z.
std::string UtcText(std::int64_t milliseconds);

}  // namespace app
