#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace standalone {

// "1 line", "2 lines"; `many` is for words that do not only take an s.
std::string Counted(std::int64_t count, std::string_view one, std::string_view many = {});

}  // namespace standalone
