#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace standalone {

// The states that have names; a company keeps every other number of 16 bits as it is, too.
enum class RelationState : std::int16_t { kPending = 1, kEstablished = 3, kWithoutAccounts = 4, kDeactivated = 5 };
// Of an intercompany transaction that this company entered.
enum class TransactionState : std::int16_t {
  kEntered = 0,      // and not sent yet
  kSent = 1,         // and without an answer of the partner
  kCameBack = 2,     // rejected by the partner
  kEstablished = 3,  // in the books of both companies
  kRejected = 4,     // a partner's request that was rejected; of none that was entered here
  kClosed = 5,       // without effect: withdrawn, or corrected, reversed or removed here after it came back
};

// The state of an intercompany transaction as the books have it. Those of before were booked with version 1.0, when the
// numbers meant something else; they are never sent.
struct BookedState {
  // Without a mark it is one of today.
  constexpr BookedState(TransactionState state = {}, bool before = false) noexcept : number(state), ofBefore(before) {}

  TransactionState number;
  bool ofBefore;

  friend constexpr bool operator==(const BookedState&, const BookedState&) noexcept = default;
};

// "pending", "established", "without-accounts", "deactivated"; "state 2" for a number without a name.
std::string StateName(RelationState state);
// "entered", "sent", "came-back", "established", "rejected", "closed"; "state 6" for a number without a name.
std::string StateName(TransactionState state);
// Of one of before, what version 1.0 called it or meant by it: "sent by the partner", "pending", "came back",
// "established", "rejected", "deactivated".
std::string StateName(BookedState state);
// With a mark for those of before: "pending (before)".
std::string MarkedStateName(BookedState state);

// A name as above, or the number of any state that is stored. Throw InvalidInput. Of a transaction "pending" (sent) and
// "deactivated" (closed) are understood too, as version 1.0 called those numbers.
RelationState ParseRelationState(std::string_view text);
TransactionState ParseTransactionState(std::string_view text);
// The same of a transaction that this company entered, which is never rejected and has no number without a name.
TransactionState ParseOwnTransactionState(std::string_view text);

// Where a transaction may be moved by hand.
std::span<const TransactionState> MovesFrom(BookedState state) noexcept;

// Throws InvalidInput for 6, which asks a change of a relation to leave its state alone and is never stored.
RelationState RequireStored(RelationState state);

}  // namespace standalone
