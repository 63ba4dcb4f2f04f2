#pragma once

#include <chrono>
#include <cstdint>

#include "platform/TimerPeriod.h"

namespace desk {

// The period of the timer that the module arms for a delay. It hands the delay over in milliseconds of 32 bits, which
// begin again at zero after 49 days; a timer lasts 24 days at most.
constexpr std::chrono::milliseconds ReminderPeriod(std::uint32_t delayInSeconds) noexcept {
  constexpr std::uint32_t kMillisecondsPerSecond = 1000;
  return platform::TimerPeriod(delayInSeconds * kMillisecondsPerSecond);
}

// The module counts the seconds until a far day with 32 bits, too, which begin again at zero after 136 years: how many
// they are by the calendar, which an `estimate` tells nearly.
constexpr std::chrono::seconds SecondsCountedAs(std::uint32_t counted, std::chrono::seconds estimate) noexcept {
  constexpr std::int64_t kTurn = std::int64_t{1} << 32U;
  const std::int64_t more = estimate.count() - counted;
  const std::int64_t turns = more < 0 ? 0 : (more + kTurn / 2) / kTurn;
  return std::chrono::seconds(counted + turns * kTurn);
}

}  // namespace desk
