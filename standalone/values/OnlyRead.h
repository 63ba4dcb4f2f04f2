#pragma once

#include <string_view>

namespace standalone {

// Why a company is only read, from a copy of it.
enum class OnlyRead { kReadOnlyMedium, kNetworkShare, kOtherNames, kWriteProtected, kWriteProtectedFolder };

// What is said of the company file, such as "lies on a read-only medium".
std::string_view OnlyReadText(OnlyRead why) noexcept;

}  // namespace standalone
