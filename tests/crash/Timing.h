#pragma once

#include <chrono>
#include <random>

#include "crash/ProgramRun.h"

using Random = std::mt19937_64;

int Pick(Random& random, int least, int most);
bool OneIn(Random& random, int count);

// When the runs of one command are killed: half of them at any moment of a run, half around the moment at which its
// work is committed, which is where the books could break. Both moments are learnt from what becomes of the runs.
class Timing {
 public:
  explicit Timing(std::chrono::nanoseconds typicalRun) : run_(typicalRun), commit_(typicalRun / 2) {}

  std::chrono::nanoseconds NextKill(Random& random) const;
  void Learn(std::chrono::nanoseconds killAfter, const ProgramRun& run, bool isCommitted);

  std::chrono::nanoseconds TypicalRun() const noexcept { return run_; }
  std::chrono::nanoseconds TypicalCommit() const noexcept { return commit_; }

 private:
  std::chrono::nanoseconds run_;
  std::chrono::nanoseconds commit_;
};
