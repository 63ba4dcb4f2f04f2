#pragma once

#include <cstddef>

#include "partners/Companies.h"

namespace partners {

struct Run {
  std::size_t put = 0;  // letters
  // Letters under another key of a partner wait for a person; until then both ask again at each start.
  bool hasWaiting = false;
};

// One run of the exchange for one company; throws Violation when the folder could not be reached.
Run Carry(Companies& companies, std::size_t who);

}  // namespace partners
