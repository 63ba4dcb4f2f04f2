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
inline constexpr const char* kRealmHelp = "The partner company's realm id, 1 to 19 bytes";
// What may follow options that take one of a few words; the help shows them and the shells complete them.
inline constexpr const char* kRelationStates = "pending|established|without-accounts|deactivated";
inline constexpr const char* kTransactionStates = "entered|sent|came-back|established|closed";
inline constexpr const char* kTransactionTypes = "bill|check|journal";
inline constexpr const char* kRejectableTypes = "bill|check";
inline constexpr char kBetweenWords = '|';
// Of what was set to the value that it has.
inline constexpr const char* kNothingHasChanged = "Nothing has changed";
inline constexpr const char* kPartnerHelp = "The partner company: its realm id, or its name in the relation";
// Both are one option; the second name is that of the first programs.
inline constexpr const char* kPartnerOption = "--partner,--realm";
inline constexpr const char* kRequestHelp = "The request id that both companies know, 1 to 36 bytes";
inline constexpr const char* kWhichPartnerHelp =
    "The partner, by its realm id or its name, where several have a request of that id";
// Of an account.
inline constexpr const char* kAccountHelp =
    "An account, by number, by record number, such as #12, or by colon-separated name";

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
