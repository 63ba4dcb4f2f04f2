#pragma once

#include <chrono>
#include <cstdint>

#include "platform/Clock.h"
#include "standalone/values/Dates.h"

namespace desk {

// What this place's clock shows at a moment.
standalone::DayAndTime LocalTimeAt(platform::Clock::TimePoint moment);
// The same for a moment as the company file keeps it, in milliseconds since 1970, UTC.
standalone::DayAndTime LocalTimeAt(std::int64_t milliseconds);
// What it shows so long from now.
standalone::DayAndTime LocalTimeAfter(platform::Clock& clock, std::chrono::seconds delay);

}  // namespace desk
