#pragma once

#include <string>

#include "standalone/company/StandaloneHost.h"

namespace standalone {

// All that a company's books hold, as lines of text that are the same for the same books, whatever version of the
// schema keeps them: what the file knows, and what the module says of it. The module is attached.
std::string Tell(StandaloneHost& host);

// The same of what the file knows besides since version 3: what the desk enters and what companies tell each other.
std::string TellOfTheDesk(StandaloneHost& host);

}  // namespace standalone
