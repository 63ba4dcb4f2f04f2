#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/TString.h"

// What people hand in on the command line, checked before the module is called. Everything throws
// standalone::InvalidInput that names the value and says what would be right.
namespace app {

// What the help says of a realm id and a request id.
inline constexpr const char* kRealmHelp = "The partner company's realm id, 1 to 19 characters";
inline constexpr const char* kRequestHelp = "The request id that both companies know, 1 to 36 characters";

std::filesystem::path FilePath(std::string_view text);

Util::TString RealmId(std::string_view text);
Util::TString PartnerName(std::string_view text);
Util::TString RequestId(std::string_view text);
// The amount as it was written, once it is known to be one.
Util::TString Amount(std::string_view text);
// A name for a new account or a new name, parents and colons included.
Util::TString NewListName(std::string_view what, std::string_view text);

// A record number or transaction id: 1 to 2147483646.
std::int32_t RecordId(std::string_view what, std::string_view text);
// A whole number within bounds.
std::int32_t WholeNumber(std::string_view what, std::string_view text, std::int32_t least, std::int32_t most);

// A relation's state: its name, or another number that fits its 16 bits. Not MEStateKeepStored, which is never stored.
MEState RelationState(std::string_view text);
MERelationType RelationType(std::string_view text);
// An intercompany transaction's state: its name, or any number that fits its 16 bits.
MEState TransactionState(std::string_view text);

// A transaction that a partner can reject: "bill" or "check", or its number.
std::int16_t RejectedType(std::string_view text);
// An amount as it was written, which fits the 22 characters that a rejected transaction has for it.
Util::TString RejectedAmount(std::string_view text);
// The partner's own id of a transaction, 1 to 36 characters.
Util::TString PartnerTxnId(std::string_view text);

// The null date, which leaves a period open, when nothing was given.
DateType32 PeriodBound(std::string_view what, const std::optional<std::string>& text);

}  // namespace app
