#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Posting.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RecordedTransaction.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/values/CheckedText.h"

// Requests that partners know and these books have lost, as restored ones may. A transaction that is entered once more
// stands behind the proposal that was signed before: none is made anew, which the partner would book a second time.
// Within a unit of work that writes.
namespace desk {

struct LostRequest {
  standalone::Pairing pairing;
  exchange::Proposal proposal;
};

// Refused for one that was not sent, that is in these books, that is of another type, or that takes back an earlier
// one, and while these books are behind.
LostRequest RequireLost(Work& work, EnteredType type, const standalone::RequestId& request);

// The request by which the partner was asked to take back what it was asked for with this line, and that may still be
// booked there; none for most.
std::optional<LostRequest> LostReversalOf(Work& work, const DBMultiEntityTransaction& row);

// Gives each request to the line that asks for the same. Refused when none does, and for a transaction of which the
// partner was told something else.
void TakeUp(Work& work, const std::vector<LostRequest>& lost, TransactionToPost& toPost);

// Refused when a partner was sent what a line would ask it for anew: a request that these books lost, that is not taken
// up and has not come to nothing, over the same amount and of the same day or document number.
void RefuseToAskTwice(Work& work, const TransactionToPost& toPost, const std::vector<LostRequest>& takenUp = {});

// The same for a line that was entered before the request came back, and would be sent by itself.
void RefuseToSendTwice(Work& work, const DBMultiEntityTransaction& row);

// When they are posted: has their rows follow what the partners have answered.
std::vector<standalone::AuditChange> FollowTakenUp(Work& work, const std::vector<LostRequest>& lost);

}  // namespace desk
