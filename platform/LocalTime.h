#pragma once

#include <chrono>
#include <optional>

#include "platform/Clock.h"

struct _SYSTEMTIME;

namespace platform {

// The year from which those of a std::tm count.
inline constexpr int kYearOfTm = 1900;

// A moment by the calendar and the clock of this place, as the system's own record.
void FillSystemTime(Clock::TimePoint moment, _SYSTEMTIME& filled);

// What the system takes for the moment at which this place's clock shows that; near where summer time begins or ends it
// may show something else then.
std::optional<Clock::TimePoint> MomentShownAs(DateType32 day, std::chrono::seconds sinceMidnight);

}  // namespace platform
