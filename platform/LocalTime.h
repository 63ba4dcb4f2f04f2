#pragma once

#include <chrono>
#include <optional>

#include "platform/Clock.h"

namespace platform {

// What the system takes for the moment at which this place's clock shows that; near where summer time begins or ends it
// may show something else then.
std::optional<Clock::TimePoint> MomentShownAs(DateType32 day, std::chrono::seconds sinceMidnight);

}  // namespace platform
