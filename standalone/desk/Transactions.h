#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/results/IntercompanyLine.h"
#include "standalone/desk/results/Partner.h"
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

// A state that a list is to have only: one by its number, or one that lists call by that name.
class WantedState {
 public:
  // standalone::InvalidInput for what is no state.
  explicit WantedState(std::string_view text);
  bool Is(standalone::BookedState state) const;

 private:
  std::string text_;
  standalone::TransactionState number_;
};

// What the lines of a list have in common; what is left out may be anything.
struct LineFilter {
  std::optional<Partner> partner;
  std::optional<std::int16_t> type;  // kTxnTypeBill, kTxnTypeCheck or kTxnTypeJournalEntry
  std::optional<WantedState> state;
  std::optional<standalone::RequestId> request;
  std::optional<std::string> account;  // the line's or the other one, by record number or colon-separated name
};

// Those of one transaction; refused when the user may not see one of them.
std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, std::int32_t txnId);
// Those of a period that the user may see, by date.
std::vector<IntercompanyLine> ListIntercompanyLines(Company& company, const Period& period,
                                                    const LineFilter& filter = {});

// The types of transactions whose lines the user may not see, of kTxnTypeBill, kTxnTypeCheck and kTxnTypeJournalEntry
// in this order.
std::vector<std::int16_t> TypesNotShown(Company& company);

// Moves a transaction to a state, as the partner's answer names it; needs the right that the module asks for, of the
// transaction's type. Refused unless the state that it is in allows the move. Once all of its lines are established,
// the transaction is marked in the books as confirmed.
struct MovedRequest {
  std::string realm;              // the partner's
  standalone::BookedState state;  // as the books have it now
};
MovedRequest SetState(Company& company, const Partner& partner, const standalone::RequestId& request,
                      standalone::TransactionState state);
// The same as the books name it; returns the state as the books have it then.
standalone::BookedState SetState(Company& company, std::int32_t txnId, std::int32_t lineId,
                                 standalone::TransactionState state);

// Refused when the request is not known, neither as a transaction of that partner nor as a rejected one. Returns the
// partner's realm id.
std::string RequireKnownRequest(Company& company, const Partner& partner, const standalone::RequestId& request);

}  // namespace desk
