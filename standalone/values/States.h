#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace standalone {

// The states that have names; a company keeps every other number of 16 bits as it is, too.
enum class RelationState : std::int16_t { kPending = 1, kEstablished = 3, kWithoutAccounts = 4, kDeactivated = 5 };
// Of an intercompany transaction. Rejected transactions are those that a partner has rejected.
enum class TransactionState : std::int16_t { kPending = 1, kEstablished = 3, kRejected = 4, kDeactivated = 5 };

// "pending", "established", "without-accounts", "rejected", "deactivated"; "state 2" for a number without a name.
std::string StateName(RelationState state);
std::string StateName(TransactionState state);

// A name as above, or the number of any state that is stored. Throw InvalidInput.
RelationState ParseRelationState(std::string_view text);
TransactionState ParseTransactionState(std::string_view text);

// Throws InvalidInput for 6, which asks a change of a relation to leave its state alone and is never stored.
RelationState RequireStored(RelationState state);

}  // namespace standalone
