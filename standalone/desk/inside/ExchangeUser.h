#pragma once

#include <optional>

#include "standalone/books/UserTable.h"
#include "standalone/desk/inside/Work.h"

// The user of a company as whom is done what nobody names: what comes of letters, and what is sent by itself. Made with
// no more rights than that takes, which administrators may change.
namespace desk {

// Within a unit of work; none in a company that was not paired since there is such a user.
std::optional<standalone::User> FindExchangeUser(Work& work);
// Within a unit of work that writes and records the deed, which then tells of a user that was made.
void HaveExchangeUser(Work& work, standalone::AuditDeed& deed);
// The user, made in a unit of work of its own in a company that was paired before there was one.
standalone::User RequireExchangeUser(Work& work);
// Within a unit of work that writes, before the user goes. Throws standalone::InvalidInput for this one while the
// company is paired.
void LetGoOfUser(Work& work, const standalone::User& user);

}  // namespace desk
