#pragma once

#include <string>

#include "platform/Clock.h"
#include "standalone/books/AuditTable.h"

namespace standalone {

// By which the audit trail tells the time.
struct TrailClock {
  platform::Clock* clock = nullptr;  // null for the machine's own
  std::string setTo;                 // what people set it to; empty for the machine's own
};

// Now, and whoever runs this program; `user` is the company's, empty for the program itself.
AuditStamp StampNow(const TrailClock& clock, std::string user);

}  // namespace standalone
