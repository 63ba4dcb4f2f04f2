#pragma once

#include "partners/Books.h"

namespace partners {

// Throws Violation unless the books of a company are as they have to be at every moment: entries that sum to zero, no
// request that is booked twice or both booked and rejected, no row that was sent without its proposal, nothing in the
// inbox that was decided without its answer.
void RequireSound(const std::string& company, Books& books);

}  // namespace partners
