#pragma once

#include <chrono>
#include <string>

namespace standalone {

// A UUID of version 7, in small letters: 36 bytes that begin with the moment, so that later ones sort behind, and end
// with randomness, so that no two companies ever make the same one.
std::string MakeUuid(std::chrono::sys_time<std::chrono::milliseconds> moment);

}  // namespace standalone
