#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace app {

// For standard input in the place of a file.
inline constexpr std::string_view kStandardInput = "-";

// All of a file or of standard input, which is a text of so many bytes at most; `what` names the text. Throws
// standalone::InvalidInput when it cannot be read or is longer.
std::string ReadText(std::string_view what, const std::string& file, std::size_t most);

}  // namespace app
