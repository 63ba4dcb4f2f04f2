#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace platform {

inline constexpr std::chrono::milliseconds kShortestPeriod{10};
inline constexpr std::chrono::milliseconds kLongestPeriod{0x7FFFFFFF};

// The period that a timer has when it is armed with so many milliseconds, on every system.
constexpr std::chrono::milliseconds TimerPeriod(std::uint32_t milliseconds) noexcept {
  return std::clamp(std::chrono::milliseconds(milliseconds), kShortestPeriod, kLongestPeriod);
}

}  // namespace platform
