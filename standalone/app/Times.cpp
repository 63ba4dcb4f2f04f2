#include "standalone/app/Times.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>

namespace app {

std::string SecondsText(std::uint32_t seconds) {
  return fmt::format("{} {}", seconds, seconds == 1 ? "second" : "seconds");
}

std::string LocalTimeAfter(platform::Clock& clock, std::uint32_t seconds) {
  return fmt::format("{:%Y-%m-%d %H:%M:%S}", platform::LocalTimeOf(clock.Now() + std::chrono::seconds(seconds)));
}

std::string UtcText(std::int64_t milliseconds) {
  const std::chrono::sys_time<std::chrono::milliseconds> moment{std::chrono::milliseconds(milliseconds)};
  return fmt::format("{:%Y-%m-%dT%H:%M:%S}Z", std::chrono::floor<std::chrono::seconds>(moment));
}

}  // namespace app
