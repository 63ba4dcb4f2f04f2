#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/results/ListItem.h"
#include "standalone/values/Money.h"
#include "standalone/values/States.h"

namespace desk {

// A line of a bill, check or journal entry in the books that belongs to a partner's request. What the books do not
// have any more is left out.
struct IntercompanyLine {
  std::int32_t txnId = 0;
  std::int32_t lineId = 0;
  std::int16_t type = 0;  // of the transaction: kTxnTypeBill, ...
  standalone::BookedState state;
  std::optional<DateType32> date;
  std::string realm;  // the partner's
  std::string partner;
  std::optional<ListItem> name;     // whom the transaction names
  std::string memo;                 // the line's own; a journal entry of a partner's request is called by it
  std::optional<ListItem> account;  // the line's own
  // Of a journal entry that was booked from a partner's request: of the line behind it, which carries what is due.
  std::optional<ListItem> otherAccount;
  std::optional<standalone::Money> amount;
  std::string requestId;
};

}  // namespace desk
