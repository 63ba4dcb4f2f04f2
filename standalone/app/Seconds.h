#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace app {

// "1 second", "90 seconds".
std::string SecondsText(std::chrono::seconds seconds);

// The value of --every, of what is done again and again; a minute without it. Throws standalone::InvalidInput.
std::chrono::seconds HowOften(const std::optional<std::string>& every);

}  // namespace app
