#pragma once

#include <string>
#include <string_view>

#include "standalone/values/CheckedText.h"

namespace standalone {

// A colon-separated name with the blanks around its parts dropped. Throws InvalidInput that calls it `what` when a part
// is empty or too long, or the text is no clean UTF-8.
std::string NormalizedFullName(std::string_view what, std::string_view text);

// What stands behind the last colon, and before it; the latter is empty at the top level.
std::string_view LastPart(std::string_view fullName) noexcept;
std::string_view ParentPart(std::string_view fullName) noexcept;

// What a person calls an account or a name that is still to be made: 1 to 500 bytes, parents and colons included.
std::string_view RequireNewAccountName(std::string_view text);
std::string_view RequireNewName(std::string_view text);
using NewAccountName = CheckedText<RequireNewAccountName>;
using NewListName = CheckedText<RequireNewName>;

}  // namespace standalone
