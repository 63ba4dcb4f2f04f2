#pragma once

#include <chrono>
#include <string>

namespace app {

// "1 second", "90 seconds".
std::string SecondsText(std::chrono::seconds seconds);

}  // namespace app
