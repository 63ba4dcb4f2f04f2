#pragma once

#include <chrono>

#include "platform/Clock.h"
#include "standalone/values/Dates.h"

namespace desk {

// What this place's clock shows at a moment.
standalone::DayAndTime LocalTimeAt(platform::Clock::TimePoint moment);
// What it shows so long from now.
standalone::DayAndTime LocalTimeAfter(platform::Clock& clock, std::chrono::seconds delay);

}  // namespace desk
