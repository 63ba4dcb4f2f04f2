#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "standalone/values/Uuid.h"

namespace standalone {
namespace {

using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

// 2022-02-22T19:22:22Z, the moment of the example in RFC 9562.
constexpr Moment kMoment{std::chrono::milliseconds(0x017F22E279B0)};

TEST(Uuids, BeginWithTheMomentAndNameTheirVersionAndVariant) {
  const std::regex form("017f22e2-79b0-7[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");

  const std::string made = MakeUuid(kMoment);

  EXPECT_TRUE(std::regex_match(made, form)) << made;
}

TEST(Uuids, OfOneMomentAreNeverTheSame) {
  constexpr std::size_t kMany = 10'000;
  std::set<std::string> made;

  for (std::size_t i = 0; i < kMany; ++i) made.insert(MakeUuid(kMoment));

  EXPECT_EQ(made.size(), kMany);
}

TEST(Uuids, OfALaterMomentSortBehind) {
  EXPECT_LT(MakeUuid(kMoment), MakeUuid(kMoment + std::chrono::milliseconds(1)));
}

TEST(Uuids, CanBeMadeByAClockThatShowsTheTimeBefore1970) {
  EXPECT_EQ(MakeUuid(Moment(std::chrono::milliseconds(-1))).substr(0, 13), "ffffffff-ffff");
}

}  // namespace
}  // namespace standalone
