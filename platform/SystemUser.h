#pragma once

#include <string>

namespace platform {

// Who runs this program, as the operating system calls them: the name of the login, in UTF-8, or "user 1000" where the
// system knows no name.
std::string SystemUserName();

}  // namespace platform
