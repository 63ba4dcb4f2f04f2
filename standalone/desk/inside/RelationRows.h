#pragma once

#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Relation.h"

namespace desk {

// Both look up what the rows refer to; within a unit of work.
Relation RelationOf(Work& work, const DBMultiEntityRelation& row);
// Asks the module for all relations; answers what it answered.
MEStatusCode ReadRelations(Work& work, std::vector<Relation>& relations);

}  // namespace desk
