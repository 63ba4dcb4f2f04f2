#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/app/terminal/Output.h"

TEST(Table, AlignsTextAtTheLeftAndNumbersAtTheRight) {
  app::Table table({{"Account"}, {"Amount", app::Align::kRight}});
  table.Add({"Rent", "1,200.00"});
  table.Add({"Utilities", "9.50"});

  EXPECT_EQ(table.Text(),
            "Account      Amount\n"
            "---------  --------\n"
            "Rent       1,200.00\n"
            "Utilities      9.50\n");
}

TEST(Table, CountsCharactersNotBytes) {
  app::Table table({{"Name"}, {"Kind"}});
  table.Add({"Caf\u00e9", "vendor"});
  table.Add({"Cafe", "vendor"});

  EXPECT_EQ(table.Text(), "Name  Kind\n----  ------\nCaf\u00e9  vendor\nCafe  vendor\n");
}

TEST(Table, LeavesOutColumnsThatAreEmpty) {
  app::Table table({{"Id"}, {"Note"}, {"Name"}});
  table.Add({"1", "", "Rent"});

  EXPECT_EQ(table.Text(), "Id  Name\n--  ----\n1   Rent\n");
}

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

TEST(Table, ShowsTheBytesOfWhatWouldSteerATerminalAndCountsThem) {
  app::Table table({{"Name"}, {"Kind"}});
  table.Add({"a\u009b31m\u202eb", "vendor"});
  table.Add({"Caf\u00e9 \\ \xE9", "ven\ndor"});

  EXPECT_EQ(table.Text(),
            "Name                       Kind\n"
            "-------------------------  ----------\n"
            "a\\xC2\\x9B31m\\xE2\\x80\\xAEb  vendor\n"
            "Caf\u00e9 \\ \\xE9                ven\\x0Ador\n");
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
