#pragma once

#include <cstddef>
#include <cstdint>
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
// What puts both together again.
std::string FullNameUnder(std::string_view parent, std::string_view ownName);

// What an account or name is called in the place of `fullName` when its own name is `ownName`, which has no colon.
// Throws InvalidInput that calls it `what`.
std::string RenamedFullName(std::string_view what, std::string_view fullName, std::string_view ownName);

// Throws InvalidInput when the longest full name below a name that is to be another one, in bytes, would become too
// long.
void RequireRoomBelow(std::int64_t longest, std::string_view fullName, std::string_view renamed);

// The number that a chart of accounts gives an account: 1 to 20 characters, digits with single points and dashes
// between them, such as 4000 or 4000.10-2.
inline constexpr std::size_t kAccountNumberLength = 20;
bool IsAccountNumber(std::string_view text) noexcept;
// Throws InvalidInput unless it is one.
std::string_view RequireAccountNumber(std::string_view text);
using AccountNumber = CheckedText<RequireAccountNumber>;

// What a person calls an account or a name that is still to be made: 1 to 500 bytes, parents and colons included.
std::string_view RequireNewAccountName(std::string_view text);
std::string_view RequireNewName(std::string_view text);
using NewAccountName = CheckedText<RequireNewAccountName>;
using NewListName = CheckedText<RequireNewName>;

}  // namespace standalone
