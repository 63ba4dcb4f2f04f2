#pragma once

#include <string>
#include <string_view>

namespace standalone {

// A colon-separated name with the blanks around its parts dropped. Throws InvalidInput that calls it `what` when a part
// is empty or too long, or the text is no clean UTF-8.
std::string NormalizedFullName(std::string_view what, std::string_view text);

// What stands behind the last colon, and before it; the latter is empty at the top level.
std::string_view LastPart(std::string_view fullName) noexcept;
std::string_view ParentPart(std::string_view fullName) noexcept;

}  // namespace standalone
