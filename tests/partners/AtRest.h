#pragma once

#include "partners/Companies.h"

namespace partners {

// Carries without mischief and without people until nothing changes any more and no letter is put; throws Violation if
// it takes too long.
void ComeToRest(Companies& companies);

// Throws Violation unless all agree: each two of them hold the same facts, each request has become the same on both
// sides, and what is established on the one is what is booked on the other. `hasRestores` allows requests that the
// books of their sender have lost, or taken back without knowing that they had left.
void RequireAgreement(Companies& companies, bool hasRestores);

}  // namespace partners
