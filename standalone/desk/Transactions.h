#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/ListItem.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Money.h"
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

// A line of a bill, check or journal entry in the books that belongs to a partner's request. What the books do not
// have any more is left out.
struct IntercompanyLine {
  std::int32_t txnId = 0;
  std::int32_t lineId = 0;
  std::int16_t type = 0;  // of the transaction: kTxnTypeBill, ...
  standalone::TransactionState state{};
  std::optional<DateType32> date;
  std::string realm;  // the partner's
  std::string partner;
  std::string name;                      // of a bill or check, whom it names; of a journal entry, the line's memo
  std::optional<std::int32_t> nameId;    // record number of the name that the transaction carries
  std::optional<ListItem> account;       // the line's own
  std::optional<ListItem> otherAccount;  // of a journal entry: of the line behind it, which carries what is due
  std::optional<standalone::Money> amount;
  std::string requestId;
};

// Those of one transaction, and those of a period, as far as the user may see them.
std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, std::int32_t txnId);
std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, const Period& period);

// Moves a transaction to a state, as the partner's answer names it, which also marks it in the books as confirmed ...
void SetState(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request,
              standalone::TransactionState state);
// ... or as the books name it.
void SetState(Company& company, std::int32_t txnId, std::int32_t lineId, standalone::TransactionState state);

// Refused when the request is not known, neither as a transaction of that partner nor as a rejected one.
void RequireKnownRequest(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request);

}  // namespace desk
