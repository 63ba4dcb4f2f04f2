#include <gtest/gtest.h>

#include "standalone/values/Counted.h"

namespace standalone {
namespace {

TEST(WhatIsCounted, IsOneOrMany) {
  EXPECT_EQ(Counted(0, "line"), "0 lines");
  EXPECT_EQ(Counted(1, "line"), "1 line");
  EXPECT_EQ(Counted(2, "line"), "2 lines");
  EXPECT_EQ(Counted(1, "journal entry", "journal entries"), "1 journal entry");
  EXPECT_EQ(Counted(3, "journal entry", "journal entries"), "3 journal entries");
}

}  // namespace
}  // namespace standalone
