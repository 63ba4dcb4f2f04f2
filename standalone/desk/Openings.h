#pragma once

#include <functional>

#include "standalone/company/CompanyFile.h"
#include "standalone/desk/Company.h"

namespace desk {

// For the use cases alone. How a company file is opened; people are told what that did besides, unless `tell` is empty.
standalone::OpenOptions HowToOpen(bool networkShare, std::function<void(const Opening& opening)> tell);

}  // namespace desk
