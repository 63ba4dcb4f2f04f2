#pragma once

#include "standalone/books/AuditTable.h"
#include "standalone/desk/Audit.h"

namespace desk {

// For the use cases alone.
AuditedDeed AuditedDeedOf(const standalone::AuditLine& line);
// By its local time.
bool IsOfPeriod(const AuditedDeed& deed, const Period& period) noexcept;

}  // namespace desk
