#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Coverage.h"

namespace model {

// How much is run: from `firstSeed` on one process for each seed, and in each so many histories, which follow each
// other with what the module remembers.
struct Extent {
  std::uint64_t firstSeed = 1;
  std::size_t processes = 100;
  std::size_t histories = 100;
  std::size_t operations = 100;
  std::size_t atOnce = 2;
};

// Runs them all, and for each process that fails writes its seed and its history, made as short as it goes, to the
// standard output. Answers how many failed; `coverage` gains what the others counted.
std::size_t RunProcesses(const Extent& extent, Coverage& coverage);

}  // namespace model
