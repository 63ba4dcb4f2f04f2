#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/values/Dates.h"

// What people hand in on the command line and only they do; see values/ for the rest. Everything throws
// standalone::InvalidInput that names the value and says what would be right.
namespace app {

// What the help says of a realm id and a request id.
inline constexpr const char* kRealmHelp = "The partner company's realm id, 1 to 19 characters";
inline constexpr const char* kRequestHelp = "The request id that both companies know, 1 to 36 characters";

std::filesystem::path FilePath(std::string_view text);

// A record number or transaction id: 1 to 2147483646.
std::int32_t RecordId(std::string_view what, std::string_view text);
// A whole number within bounds.
std::int32_t WholeNumber(std::string_view what, std::string_view text, std::int32_t least, std::int32_t most);

// A number that is kept in 16 bits.
std::int16_t RelationType(std::string_view text);

// The null date, which leaves a period open, when nothing was given.
DateType32 PeriodBound(std::string_view what, const std::optional<std::string>& text);

}  // namespace app
