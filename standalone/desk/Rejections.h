#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/Partner.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Money.h"
#include "standalone/values/States.h"

namespace desk {

class Company;

// A bill or check of this company that a partner company rejected. Its amount is kept as the partner wrote it.
struct RejectionToSave {
  Partner partner;
  standalone::RequestId request;
  standalone::RejectableType type{};
  standalone::RejectedAmount amount;
  standalone::PartnerTxnId partnerTxnId;
};

struct Rejection {
  std::int16_t type = 0;
  standalone::TransactionState state{};
  std::string realm;  // the partner's
  std::string partner;
  std::string requestId;
  std::string writtenAmount;                // as the partner wrote it
  std::optional<standalone::Money> amount;  // unless what was written is none
  std::string partnerTxnId;
};

// What the rejections of a list have in common; what is left out may be anything.
struct RejectionFilter {
  std::optional<Partner> partner;
  std::optional<standalone::RejectableType> type;
  std::optional<standalone::RequestId> request;
};

// Needs the right to view transactions of that type, as the module asks for it. Returns the partner's realm id.
std::string SaveRejection(Company& company, const RejectionToSave& rejection);
// In the order in which they were saved, as far as the user may see them.
std::vector<Rejection> ListRejections(Company& company, const RejectionFilter& filter = {});
// Of that partner only, whatever others call by the same request id. Needs the right to view transactions of its type.
// Returns the partner's realm id.
std::string DeleteRejection(Company& company, const Partner& partner, const standalone::RequestId& request);

}  // namespace desk
