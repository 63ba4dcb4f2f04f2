#pragma once

#include <cstdint>
#include <string>

#include "MultiEntityHost/DateType32.h"
#include "standalone/values/InboxState.h"
#include "standalone/values/Money.h"

namespace desk {

// A partner's request that waits in the inbox for a person.
struct WaitingRequest {
  std::string partner;  // as people call the partner here
  std::string realm;
  std::string requestId;
  std::int16_t type = 0;  // of the transaction: kTxnTypeBill, ...
  DateType32 date;
  standalone::Money amount;  // positive: this company owes it
  std::string name;
  standalone::InboxState state{};
};

}  // namespace desk
