#include <gtest/gtest.h>

#include "standalone/values/WaitingWork.h"

namespace standalone {
namespace {

TEST(WhatWaitsInWords, IsNothingForNothing) {
  EXPECT_EQ(WaitingText({}), "");
}

TEST(WhatWaitsInWords, LeavesOutWhatThereIsNone) {
  EXPECT_EQ(WaitingText({.requests = 2, .partners = 1}), "2 requests of partners to answer, 1 partner to confirm");
}

TEST(WhatWaitsInWords, HasAllThatThereIs) {
  EXPECT_EQ(WaitingText({.requests = 1, .cameBack = 2, .ofBefore = 3, .partners = 4, .outstanding = 5, .relations = 6}),
            "1 request of partners to answer, 2 transactions that came back, 3 transactions of version 1.0 to answer, "
            "4 partners to confirm, 5 messages of partners that could not be applied, 6 relations not established yet");
}

}  // namespace
}  // namespace standalone
