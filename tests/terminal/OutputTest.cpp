#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/app/terminal/Output.h"

// Who tells of an error has nobody to tell another one to.
static_assert(noexcept(app::PrintError("")));

TEST(JsonText, PutsEachElementOfAListOnALine) {
  EXPECT_EQ(app::JsonText({{"status", 1}, {"realms", {"1001", "1002"}}}),
            "{\"status\":1,\"realms\":[\n\"1001\",\n\"1002\"\n]}\n");
}

TEST(JsonText, WritesAnEmptyListOnOneLine) {
  EXPECT_EQ(app::JsonText({{"realms", app::Json::array()}}), "{\"realms\":[]}\n");
}

TEST(JsonText, ReplacesBytesThatAreNotUtf8) {
  EXPECT_EQ(app::JsonText({{"name", "Caf\xE9"}}), "{\"name\":\"Caf\uFFFD\"}\n");
}

TEST(JsonText, HoldsWhatWouldSteerATerminalByItsNumber) {
  const std::string name = "\u009b31m\u202e\u2028\u061c\x7f Caf\u00e9";

  const std::string text = app::JsonText({{"name", name}, {"names", {name}}, {name, 1}});

  EXPECT_THAT(text, testing::StartsWith("{\"name\":\"\\u009B31m\\u202E\\u2028\\u061C\\u007F Caf\u00e9\","));
  for (const char* steering : {"\u009b", "\u202e", "\u2028", "\u061c", "\x7f"}) {
    EXPECT_THAT(text, testing::Not(testing::HasSubstr(steering)));
  }
  EXPECT_EQ(app::Json::parse(text), app::Json({{"name", name}, {"names", {name}}, {name, 1}}));
}

TEST(AnError, IsPrintedInLinesWithoutWhatWouldSteerATerminal) {
  testing::internal::CaptureStderr();

  app::PrintError("no \x1b[2J account\n  see the accounts\n");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "no \\x1B[2J account\n  see the accounts\n");
}
