#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/desk/inside/Work.h"

// Whether these books are older than what this company has told its partners, because a backup was restored: the
// identity beside them knows what left, and they lack some of it. What the partners hold comes back to them by itself.
// Until they were compared with all partners, or an administrator insists, nothing of the partners is applied and
// nobody decides or sends: it might be decided otherwise than it was. Within a unit of work.
namespace desk {

struct Behind {
  std::size_t missing = 0;  // own facts that left
  std::string since;        // what the comparison with the partners is asked for
};

// None for books that have all, that were compared with all partners since, or that never signed anything.
std::optional<Behind> FindBehind(Work& work);

// Refused while they are behind.
void RequireNotBehind(Work& work);
// The same for what is entered or taken back with partners, of which they may know already.
void RequireNotBehindWith(Work& work, const std::vector<DBMultiEntityTransaction>& rows);

// In a unit of work that writes: asks the partners for a comparison while the books are behind, and remembers what
// need not be looked for any more when they are not.
void FollowUp(Work& work);
// Goes on with the books as they are.
void Insist(Work& work);

}  // namespace desk
