#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/books/AuditTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/inside/LostRequests.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RecordedTransaction.h"

// How what this company entered is taken back; within a unit of work that writes.
namespace desk {

// "bill 17".
std::string TextOf(const standalone::TransactionHeader& header);

// One that is posted; refused for one that is not there.
standalone::TransactionHeader RequirePosted(Work& work, std::int32_t txnId);
// Refused for what was booked from a partner's request.
void RequireOwn(Work& work, const standalone::TransactionHeader& header);
// Refused for a day before that of the transaction which the new one is about.
void RequireNotBefore(Work& work, const standalone::TransactionHeader& earlier, DateType32 date);

// The live moves of the entry's expense: of those that are not reversed, by their numbers.
std::vector<std::int32_t> LiveMovesOf(Work& work, std::int32_t entryId);

// What was booked from the request by which the partner takes back the one that this entry was booked from.
std::optional<std::int32_t> TakenBackBy(Work& work, std::int32_t entryId);

// What was posted last about the entry's expense: a move, or the reversal of one, which only goes before the others do.
std::optional<std::int32_t> LastAboutExpenseOf(Work& work, std::int32_t entryId);

// Refused for what is reversed already, waits for a partner's answer, or was followed by something that stands upon it.
void RequireReversible(Work& work, const standalone::TransactionHeader& original);
// The same for what is to be removed as if it had never been entered.
void RequireRemovable(Work& work, const standalone::TransactionHeader& header);

struct PostedReversal {
  std::int32_t txnId = 0;
  std::vector<PartnersPart> toTell;  // of the original: its partners have it in their books and are sent nothing
  std::vector<standalone::AuditChange> closed;  // of the original, for the trail
  std::vector<LostRequest> takenUp;             // by which partners were asked before; the caller has them followed
};

// Posts the reversal of what is reversible. A memo that is given is that of the lines, too, which had the original's;
// the original's when left out.
PostedReversal PostReversal(Work& work, const standalone::TransactionHeader& original, DateType32 date,
                            const std::optional<std::string>& memo = std::nullopt);

}  // namespace desk
