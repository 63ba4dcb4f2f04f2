#pragma once

#include <string>

#include "standalone/app/Invocation.h"
#include "standalone/desk/Company.h"

namespace app {

// How a command opens its company file: for the user who was named; the log's lines and the module's answer go to the
// invocation, which outlives the company, and what opening does besides is told on standard error.
desk::CompanyOptions HowToOpen(Invocation& invocation, const std::string& file);

}  // namespace app
