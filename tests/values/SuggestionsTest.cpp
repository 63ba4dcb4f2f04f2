#include <gtest/gtest.h>

#include <vector>

#include "standalone/values/Suggestions.h"

namespace standalone {
namespace {

const std::vector<std::string> kKnown{"Utilities", "Utilities:Power", "Utilities:Water", "Rent",
                                      "Birch Services Company"};

TEST(WhatSomebodyMayHaveMeant, IsLikeWhatWasTypedButForAFewLetters) {
  EXPECT_EQ(DidYouMean("Utilites", kKnown), " Did you mean \"Utilities\"?");
  EXPECT_EQ(DidYouMean("utilities:pwoer", kKnown), " Did you mean \"Utilities:Power\"?");
  EXPECT_EQ(DidYouMean("Rnet", kKnown), " Did you mean \"Rent\"?");
}

TEST(WhatSomebodyMayHaveMeant, IsWhatTheTextBegins) {
  EXPECT_EQ(DidYouMean("birch", kKnown), " Did you mean \"Birch Services Company\"?");
}

TEST(WhatSomebodyMayHaveMeant, IsWhatIsCalledSoUnderAnother) {
  EXPECT_EQ(DidYouMean("Water", kKnown), " Did you mean \"Utilities:Water\"?");
}

TEST(WhatSomebodyMayHaveMeant, IsNothingWhenNothingIsLikeIt) {
  EXPECT_EQ(DidYouMean("Depreciation", kKnown), "");
  EXPECT_EQ(DidYouMean("Xy", kKnown), "");
  EXPECT_EQ(DidYouMean("", kKnown), "");
  EXPECT_EQ(DidYouMean("Rent", {}), "");
}

TEST(WhatSomebodyMayHaveMeant, IsAllThatAreAsLikeUpToThree) {
  const std::vector<std::string> rooms{"Room 1", "Room 2", "Room 3", "Room 4"};

  EXPECT_EQ(DidYouMean("--jsn", std::vector<std::string>{"--json", "--user", "--json"}), " Did you mean \"--json\"?");
  EXPECT_EQ(DidYouMean("Room 9", rooms), " Did you mean \"Room 1\" or \"Room 2\" or \"Room 3\"?");
}

}  // namespace
}  // namespace standalone
