#pragma once

#include "standalone/books/AuditTable.h"
#include "standalone/desk/Audit.h"

namespace desk {

// For the use cases alone.
AuditedDeed AuditedDeedOf(const standalone::AuditLine& line);

}  // namespace desk
