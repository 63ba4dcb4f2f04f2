#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/books/RuleTable.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Kinds.h"

// How partners' requests are read and accepted, for the use cases alone; within a unit of work.
namespace desk {

// A request with the pairing by which it came.
struct Received {
  standalone::Pairing pairing;
  standalone::InboxRow row;
  exchange::Proposal says;  // that counts
  InboxRequest request;
};
Received ReadReceived(Work& work, const standalone::Pairing& pairing, const standalone::InboxRow& row);
Received ReadAgain(Work& work, const Received& received);

// As it is now: somebody else may have decided since. Refused unless it is in one of the states; `what` completes
// "cannot be ...".
standalone::InboxRow RequireInState(Work& work, const Received& received,
                                    const std::vector<standalone::InboxState>& states, std::string_view what);

inline const std::vector<standalone::InboxState> kToAccept{standalone::InboxState::kNew,
                                                           standalone::InboxState::kToBookAgain};

struct AcceptedRequest {
  NotedNames& noted;  // which is told of the names that were made
  std::int32_t txnId = 0;
  bool isDateMoved = false;
  std::vector<standalone::AuditChange> changes{std::vector<standalone::AuditChange>()};  // of requests, and of rules
};
// Has the module book the request, and answers it; returns what the module answers.
MEStatusCode Accept(Work& work, const exchange::KeyPair& keys, const Received& received, const RequestBooking& booking,
                    AcceptedRequest& accepted);
// The same as a rule says it.
MEStatusCode AcceptByRule(Work& work, const exchange::KeyPair& keys, const Received& received,
                          const standalone::RuleRow& rule, std::optional<DateType32> date, AcceptedRequest& accepted);
// Books a partner's new request by the rule that fits, up to the amount to which the partner's are booked without a
// person; nothing otherwise. Throws Refused when the module refuses.
void AcceptAtOnce(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                  const std::string& request, DecidedRequest& decided);
// Has requests like it be booked to the accounts of its entry.
void LearnFrom(Work& work, const Received& received, AcceptedRequest& accepted);
standalone::AuditDeed DeedOfAccepting(Work& work, const AcceptedRequest& accepted);

}  // namespace desk
