#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "standalone/desk/results/RecordedTransaction.h"
#include "standalone/values/CheckedText.h"

// Where the papers of transactions are. They are no part of what is booked: of a closed day they may come later, too.
namespace desk {

class Company;

struct ChangedAttachments {
  EnteredType type = EnteredType::kBill;
  std::int32_t txnId = 0;
  std::vector<std::string> changed;      // those that were attached or detached by it
  std::vector<std::string> attachments;  // all that the transaction has now, in the order in which they were attached
};

// Both need the right to modify transactions of its type, and are for what was booked from a partner's request, too.

// What is attached already is not attached once more.
ChangedAttachments AttachTo(Company& company, std::int32_t txnId,
                            const std::vector<standalone::Attachment>& attachments);

// Refused unless the transaction has all of them.
ChangedAttachments DetachFrom(Company& company, std::int32_t txnId, const std::vector<std::string>& attachments);

}  // namespace desk
