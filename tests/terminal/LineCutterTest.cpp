#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standalone/app/terminal/LineCutter.h"

namespace app {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TypedText : public testing::Test {
 protected:
  std::vector<std::string> lines_;
  int longLines_ = 0;
  const std::function<void(std::string)> onLine_ = [this](std::string line) {
    lines_.push_back(std::move(line));
  };
  const std::function<void()> onLongLine_ = [this] {
    ++longLines_;
  };
  LineCutter cutter_{onLine_, onLongLine_};
};

TEST_F(TypedText, OfTheLongestLineIsHandedOver) {
  const std::string longest(kLongestTypedLine, 'y');

  cutter_.Add(longest + "\n");

  EXPECT_THAT(lines_, ElementsAre(longest));
  EXPECT_EQ(longLines_, 0);
}

TEST_F(TypedText, WithoutAnEndIsToldOfOnceAsSoonAsItIsTooLong) {
  cutter_.Add(std::string(kLongestTypedLine + 1, 'y'));
  EXPECT_EQ(longLines_, 1);

  for (int i = 0; i < 100; ++i) cutter_.Add(std::string(kLongestTypedLine, 'y'));
  cutter_.FinishLast();

  EXPECT_EQ(longLines_, 1);
  EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(TypedText, AfterALineThatIsTooLongIsHandedOver) {
  cutter_.Add(std::string(kLongestTypedLine + 1, 'y') + "\nno\n" + std::string(kLongestTypedLine + 1, 'y') + "\nyes\n");

  EXPECT_THAT(lines_, ElementsAre("no", "yes"));
  EXPECT_EQ(longLines_, 2);
}

}  // namespace
}  // namespace app
