#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/books/OutboxTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"

// Requests of this company that a partner has booked after all, although another answer came first and something was
// done here upon it: two answers are there where a backup was restored or a copy was at work. Within a unit of work
// that writes.
namespace desk {

// Reverses what has reversed the transaction here, on its day or, where the books are closed on that, on the first day
// on which they are open; none if nothing did, or if that is left to a person. Throws standalone::InvalidInput for
// accounts that take no postings any more.
std::optional<std::int32_t> PutBackReversed(Work& work, std::int32_t txnId);

// What a person has to do so that these books have what the partner has booked, as a sentence; empty when nothing is
// left to do. `request` is that of a line of the transaction.
std::string WhatIsLeftToDo(Work& work, const standalone::Pairing& pairing, std::string_view request,
                           std::int32_t txnId);
// Whether an outbox says so of a request.
bool IsLeftToDo(std::string_view mark) noexcept;

// After the transaction was reversed: has the outbox say anew what is left to do about requests of those that it
// reversed or corrected.
void LookAgainAtOvertaken(Work& work, std::int32_t reversedId);
// The same for one request, if the outbox has said something.
void LookAgainAtRequest(Work& work, const standalone::Pairing& pairing, std::string_view request);

}  // namespace desk
