#pragma once

#include <cstddef>

#include "partners/Group.h"

namespace partners {

// One run of the exchange for one company; throws Violation when the folder could not be reached.
void Carry(Group& group, std::size_t who);

}  // namespace partners
