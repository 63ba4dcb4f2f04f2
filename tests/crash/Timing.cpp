#include "crash/Timing.h"

#include <algorithm>

using std::chrono::nanoseconds;

namespace {

constexpr double kLatestKill = 1.15;  // in typical runs
constexpr double kAroundCommit = 0.1;
constexpr double kStep = 0.02;

nanoseconds Part(nanoseconds whole, double part) {
  return nanoseconds(static_cast<nanoseconds::rep>(static_cast<double>(whole.count()) * part));
}

double Fraction(Random& random) {
  return std::uniform_real_distribution<double>(0, 1)(random);
}

}  // namespace

int Pick(Random& random, int least, int most) {
  return std::uniform_int_distribution<int>(least, most)(random);
}

bool OneIn(Random& random, int count) {
  return Pick(random, 1, count) == 1;
}

nanoseconds Timing::NextKill(Random& random) const {
  const bool anywhere = OneIn(random, 2);
  const double place = Fraction(random);
  if (anywhere) return Part(run_, kLatestKill * place);
  return commit_ + Part(run_, kAroundCommit * (2 * place - 1));
}

void Timing::Learn(nanoseconds killAfter, const ProgramRun& run, bool isCommitted) {
  if (run.ending == Ending::kByItself) {
    run_ += Part(run.took - run_, 0.05);
  } else if (killAfter > run_) {
    run_ += Part(run_, kStep);
  }
  const nanoseconds distance = killAfter > commit_ ? killAfter - commit_ : commit_ - killAfter;
  if (distance <= Part(run_, kAroundCommit)) commit_ += Part(run_, isCommitted ? -kStep : kStep);
  commit_ = std::min(commit_, run_);
}
