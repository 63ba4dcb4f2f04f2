#pragma once

#include <vector>

#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/PairedPartner.h"
#include "standalone/desk/results/WaitingRequest.h"

// What waits for a person of this company beside the lines in its books; within a unit of work.
namespace desk {

// New or to be booked again, of types that the user may see.
std::vector<WaitingRequest> RequestsToAnswer(Work& work);
// To be confirmed, or with something outstanding; none for who may not manage relations.
std::vector<PairedPartner> PartnersToLookAfter(Work& work);

}  // namespace desk
