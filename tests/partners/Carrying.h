#pragma once

#include <cstddef>

#include "partners/Companies.h"

namespace partners {

// One run of the exchange for one company; throws Violation when the folder could not be reached. Returns how many
// letters it put.
std::size_t Carry(Companies& companies, std::size_t who);

}  // namespace partners
