#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "MultiEntityHost/Enumerations.h"

namespace standalone {

// "Bank", "Accounts Receivable", ...; "Type 16" and so on for the types above 15.
std::string AccountTypeName(std::int16_t type);

// Reads a type's name, in any case, or its number from 0 to 32767; throws InvalidInput.
std::int16_t ParseAccountType(std::string_view text);

// What a company owns or is owed, and what it owes; no type above 15 is either.
bool IsAsset(std::int16_t type) noexcept;
bool IsLiability(std::int16_t type) noexcept;

// Transaction types: 3 is "check", 8 "journal", 9 "bill", others their number.
std::string TransactionTypeName(std::int32_t type);
std::int16_t ParseTransactionType(std::string_view text);

// What a partner can reject.
enum class RejectableType : std::int16_t { kCheck = kTxnTypeCheck, kBill = kTxnTypeBill };
// "bill" or "check", or its number; throws InvalidInput.
RejectableType ParseRejectableType(std::string_view text);

}  // namespace standalone
