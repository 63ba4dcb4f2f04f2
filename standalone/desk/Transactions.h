#pragma once

#include <cstdint>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/results/IntercompanyLine.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/States.h"

namespace desk {

class Company;

// The days from one to another; the null date leaves an end open.
class Period {
 public:
  // standalone::InvalidInput when it ends before it begins.
  Period(DateType32 from, DateType32 to);

  DateType32 From() const noexcept { return from_; }
  DateType32 To() const noexcept { return to_; }

 private:
  DateType32 from_;
  DateType32 to_;
};

// Those of one transaction; refused when the user may not see one of them.
std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, std::int32_t txnId);
// Those of a period that the user may see.
std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, const Period& period);

// The types of transactions whose lines the user may not see, of kTxnTypeBill, kTxnTypeCheck and kTxnTypeJournalEntry
// in this order.
std::vector<std::int16_t> TypesNotShown(Company& company);

// Moves a transaction to a state, as the partner's answer names it, which also marks it in the books as confirmed when
// it is established; needs the right that the module asks for, of the transaction's type. Refused unless the state that
// it is in allows the move. Returns the state as the books have it then.
standalone::BookedState SetState(Company& company, const standalone::RealmId& realm,
                                 const standalone::RequestId& request, standalone::TransactionState state);
// The same as the books name it.
standalone::BookedState SetState(Company& company, std::int32_t txnId, std::int32_t lineId,
                                 standalone::TransactionState state);

// Refused when the request is not known, neither as a transaction of that partner nor as a rejected one.
void RequireKnownRequest(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request);

}  // namespace desk
