#pragma once

#include <cstdint>
#include <string>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/AuditTable.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/inside/Closing.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/Work.h"

// How a partner's request is booked, for the use cases alone; within a unit of work that writes.
namespace desk {

// For a user who has no right to book.
MEStatusCode AskInVain(const EntryToRecord& entry);

struct BookableRequest {
  std::string amount;  // as the company writes it
  DBMultiEntityRelation relation;
  // Where what it takes back was booked; it goes there whatever the account has become since. 0 for nothing.
  std::int32_t standsAt = 0;
};
// Refused without an amount, without a request id, and unless the relation is established and has a due-to account.
BookableRequest RequireBookable(Work& work, const EntryToRecord& entry);

struct BookedEntry {
  std::int32_t txnId = 0;
  NotedNames& noted;  // which is told of the names that were made
};
// Has the module book; returns what it answers.
MEStatusCode Book(Work& work, const EntryToRecord& entry, const BookableRequest& bookable, Closing& closing,
                  BookedEntry& booked);

// An entry that was booked, as it is in the books.
standalone::AuditDeed DeedOfBooked(Work& work, std::int32_t txnId);

}  // namespace desk
