#include <algorithm>
#include <string_view>

#include "MultiEntityDriver/BoundedCopy.h"
#include "module/Arrangements.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class BoundedCopyOfAText : public AttachedTest {
 protected:
  BoundedCopyOfAText() { std::ranges::fill(field, 'Z'); }

  char field[6];
};

TEST_F(BoundedCopyOfAText, FillsTheRestOfTheFieldWithZeros) {
  BoundedCopy(field, "abc");

  EXPECT_THAT(field, ElementsAre('a', 'b', 'c', '\0', '\0', '\0'));
}

TEST_F(BoundedCopyOfAText, TakesATextThatLeavesRoomForItsEndOnly) {
  BoundedCopy(field, "abcde");

  EXPECT_THAT(field, ElementsAre('a', 'b', 'c', 'd', 'e', '\0'));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(BoundedCopyOfAText, LeavesTheFieldEmptyAndTellsTheHostWhenTheTextIsTooLong) {
  BoundedCopy(field, "abcdef");

  EXPECT_THAT(field, Each('\0'));
  EXPECT_THAT(host.Calls(), InOrder("InvalidParameter()"));
}

TEST_F(BoundedCopyOfAText, ClearsTheFieldForAnEmptyText) {
  BoundedCopy(field, "");

  EXPECT_THAT(field, Each('\0'));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(BoundedCopyOfAText, EndsAtTheTextsFirstZero) {
  BoundedCopy(field, std::string_view("ab\0cdefgh", 9));

  EXPECT_THAT(field, ElementsAre('a', 'b', '\0', '\0', '\0', '\0'));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(BoundedCopyOfAText, LeavesTheFieldEmptyBeforeAHostThatStopsThere) {
  host.ThrowAt("InvalidParameter", 42);

  EXPECT_THROW(BoundedCopy(field, "abcdef"), int);

  EXPECT_THAT(field, Each('\0'));
}

}  // namespace
