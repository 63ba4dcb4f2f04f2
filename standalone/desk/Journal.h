#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "standalone/desk/Transactions.h"
#include "standalone/desk/results/ClosedDays.h"
#include "standalone/desk/results/Partner.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Money.h"

namespace desk {

class Company;

// A record as people give it: by record number or colon-separated name.
struct Existing {
  std::string text;
};
// Made with the entry, or not at all.
struct NewAccount {
  standalone::NewAccountName name;  // its parents are there
  std::int16_t type = 0;
};
struct NewVendor {
  standalone::NewListName name;
};

// A partner's bill or check: the expense is debited, the due-to account credited; by a negative amount, a credit of the
// partner's, the other way round.
struct EntryToRecord {
  Partner partner;
  standalone::RequestId request;
  standalone::LineAmount amount;
  std::variant<Existing, NewAccount> expense;
  std::optional<std::string> dueTo;  // an account as above; the relation's own, which is taken when left out
  std::variant<Existing, NewVendor> name;
  std::optional<DateType32> date = std::nullopt;        // today's when left out
  std::optional<standalone::Memo> memo = std::nullopt;  // of the entry; its lines are called by the name
  ClosedDays closedDays = ClosedDays::kRefused;
};

// Returns the journal entry's transaction id. Needs the right journal:create, an established relation with a due-to
// account, an amount, two accounts, and a request id that is not known of that partner, blanks at its ends aside, and
// not in small letters or in capitals either.
std::int32_t RecordJournalEntry(Company& company, const EntryToRecord& entry);

// Removes a journal entry that was booked from a partner's request, and returns what was removed. Needs the right
// journal:delete.
std::vector<IntercompanyLine> RemoveJournalEntry(Company& company, std::int32_t txnId,
                                                 ClosedDays closedDays = ClosedDays::kRefused);

}  // namespace desk
