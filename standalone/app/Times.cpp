#include "standalone/app/Times.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <ctime>

namespace app {

std::string SecondsText(std::uint32_t seconds) {
  return fmt::format("{} {}", seconds, seconds == 1 ? "second" : "seconds");
}

std::string LocalTimeAfter(std::uint32_t seconds) {
  const auto moment = std::chrono::system_clock::now() + std::chrono::seconds(seconds);
  return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::localtime(std::chrono::system_clock::to_time_t(moment)));
}

std::string UtcText(std::int64_t milliseconds) {
  const std::chrono::sys_time<std::chrono::milliseconds> moment{std::chrono::milliseconds(milliseconds)};
  return fmt::format("{:%Y-%m-%dT%H:%M:%S}Z", std::chrono::floor<std::chrono::seconds>(moment));
}

}  // namespace app
