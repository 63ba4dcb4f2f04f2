#pragma once

#include <cstdint>
#include <utility>

#include "MultiEntityHost/ChartOfAccounts.h"
#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/TString.h"

// A journal entry's transaction id and the id of its target line.
using JournalEntryIds = std::pair<std::uint32_t, std::uint32_t>;

// The host's general journal and what it does to a transaction when the partner company answers. A host implements it;
// the module calls it on the user-interface thread.
class Journal {
 public:
  // Books `amount` between the two accounts under a name of the name list: the first account is credited, the second
  // debited. Fills `ids` with the entry and the line of the second account; the line of the first has the id after it.
  // Anything but kEdListSuccess when nothing was booked.
  virtual EdListStatus CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount,
                                                 JournalEntryIds& ids, std::int32_t nameId, Util::TString name) = 0;

  // Anything but kEdListSuccess when the entry was left as it is.
  virtual EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) = 0;

  // Tells the host that the partner company confirmed the transaction; `viewType` is its type.
  virtual EdListStatus UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) = 0;

 protected:
  ~Journal() = default;
};
