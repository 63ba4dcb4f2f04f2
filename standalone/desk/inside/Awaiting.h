#pragma once

#include <optional>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Awaited.h"

// Whether these books are not those by which this company told its partners last: because a backup was restored, or a
// copy of the company is at work. The identity beside them knows what left, and they lack some of it; or facts come
// back that they never made. Until they were compared with all partners, or an administrator insists, and until one has
// confirmed why facts came back, nothing of the partners is applied, nobody decides or sends, and what was made here
// and has not left is withheld: it might be decided otherwise than it was. Letters that compare go on. Within a unit of
// work.
namespace desk {

// None for books that wait for nothing, or that never signed anything.
std::optional<Awaited> FindAwaited(Work& work);

// Refused while they wait.
void RequireNothingAwaited(Work& work);
// Refused while they wait to be compared: for what is entered, and for what is taken back with partners, who may know
// of it already.
void RequireCompared(Work& work);
void RequireComparedWith(Work& work, const std::vector<DBMultiEntityTransaction>& rows);

// In a unit of work that writes: asks the partners for a comparison while one is awaited and remembers when it is over;
// withholds what is not to leave, or lets it go.
void FollowUp(Work& work);
// Goes on without the comparison, for which the partners are asked all the same.
void Insist(Work& work);
// Remembers that a person has confirmed why all that came back did.
void Confirm(Work& work);

}  // namespace desk
