#pragma once

#include <string>

#include "standalone/desk/Audit.h"

namespace app {

// A line of the trail as people read it.
std::string DeedLine(const desk::AuditedDeed& deed);

}  // namespace app
