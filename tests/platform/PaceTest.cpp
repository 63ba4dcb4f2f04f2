#include <gtest/gtest.h>

#include <chrono>

#include "platform/Pace.h"

namespace platform {
namespace {

using std::chrono::seconds;

class APace : public testing::Test {
 protected:
  // How long it keeps who comes then.
  Pace::Clock::duration HeldAt(seconds when) {
    const Pace::Clock::time_point now = start_ + when;
    return pace_.Next(now) - now;
  }

  const Pace::Clock::time_point start_ = Pace::Clock::now();
  Pace pace_{3, seconds(2)};
};

TEST_F(APace, LetsSomeHappenInARow) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(HeldAt(seconds(0)), seconds(0));
}

TEST_F(APace, HoldsWhatWouldBeTooMany) {
  for (int i = 0; i < 3; ++i) HeldAt(seconds(0));

  EXPECT_EQ(HeldAt(seconds(0)), seconds(2));
  EXPECT_EQ(HeldAt(seconds(3)), seconds(1));
  EXPECT_EQ(HeldAt(seconds(6)), seconds(0));
}

TEST_F(APace, LetsSomeHappenInARowAgainAfterARest) {
  for (int i = 0; i < 4; ++i) HeldAt(seconds(0));

  for (int i = 0; i < 3; ++i) EXPECT_EQ(HeldAt(seconds(60)), seconds(0));

  EXPECT_EQ(HeldAt(seconds(60)), seconds(2));
}

TEST_F(APace, HoldsNobodyWhoKeepsTheDistance) {
  for (int i = 0; i < 100; ++i) EXPECT_EQ(HeldAt(seconds(2 * i)), seconds(0));
}

}  // namespace
}  // namespace platform
