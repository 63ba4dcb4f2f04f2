#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "standalone/books/LinkTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RecordedTransaction.h"

// The transactions that this company entered itself, in the books; within a unit of work.
namespace desk {

// Bills and checks are; a journal entry is unless it was booked from a partner's request. False for one that is not
// there.
bool IsOwn(Work& work, std::int32_t txnId);
// The earlier transaction to which this one is linked so; nothing when there is none.
std::optional<std::int32_t> EarlierOf(Work& work, std::int32_t txnId, standalone::LinkKind kind);
// Whether it reverses another transaction.
bool IsReversal(Work& work, std::int32_t txnId);
// Whether it moves the expense of another one.
bool IsMove(Work& work, std::int32_t txnId);

// As the books have it; it is there.
RecordedTransaction ReadTransaction(Work& work, std::int32_t txnId);

// To be asked before a partner's request is rejected: what is booked, such as by hand with another amount, was not.
void RefuseBooked(Work& work, std::int32_t relationId, const std::string& request);

// "bill 17".
std::string TransactionText(EnteredType type, std::int32_t txnId);

}  // namespace desk
