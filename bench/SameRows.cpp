#include "bench/SameRows.h"

#include <cstdlib>
#include <vector>

#include "bench/Benchmarks.h"
#include "bench/SampleCompany.h"

namespace bench {

namespace {

constexpr const char* kClockVariable = "MULTIENTITY_NOW";
constexpr const char* kNoonOfThePast = "2025-12-31T12:00:00";

class AtNoonOfThePast {
 public:
  AtNoonOfThePast() { ::setenv(kClockVariable, kNoonOfThePast, /*overwrite=*/1); }
  AtNoonOfThePast(const AtNoonOfThePast&) = delete;
  AtNoonOfThePast& operator=(const AtNoonOfThePast&) = delete;
  ~AtNoonOfThePast() { ::unsetenv(kClockVariable); }
};

}  // namespace

void RequireSameRows(const std::filesystem::path& company, const char* what,
                     const std::function<void(const std::filesystem::path& company)>& ours,
                     const std::function<void(HandWritten& hand, Moments moments)>& byHand) {
  const std::filesystem::path first = CopyOf(company, ".check");
  const std::filesystem::path second = CopyOf(company, ".check-by-hand");
  const std::size_t linesBefore = MomentsOfTrail(company).size();
  {
    const AtNoonOfThePast clock;
    ours(first);
  }
  const std::vector<HandWritten::Moment> moments = MomentsOfTrail(first);
  Require(moments.size() > linesBefore, "nothing was written into the audit trail");
  {
    HandWritten hand(second, kNoonOfThePast);
    byHand(hand, Moments(moments).subspan(linesBefore));
  }
  Require(ContentOf(first) == ContentOf(second), what);
}

}  // namespace bench
