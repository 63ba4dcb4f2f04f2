#include <gtest/gtest.h>

#include "standalone/app/terminal/Table.h"

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

TEST(Table, CountsCellsNotBytes) {
  app::Table table({{"Name"}, {"Kind"}});
  table.Add({"Caf\u00e9", "vendor"});
  table.Add({"Cafe\u0301", "vendor"});
  table.Add({"\u65e5\u672c", "vendor"});

  EXPECT_EQ(table.Text(), "Name  Kind\n----  ------\nCaf\u00e9  vendor\nCafe\u0301  vendor\n\u65e5\u672c  vendor\n");
}

TEST(Table, HasTheSameColumnsWhateverIsInThem) {
  app::Table table({{"Id"}, {"Note"}, {"Name"}});
  table.Add({"1", "", "Rent"});

  EXPECT_EQ(table.Text(), "Id  Note  Name\n--  ----  ----\n1         Rent\n");
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

TEST(Table, SaysWhatAllRowsComeToUnderALine) {
  app::Table table({{"Account"}, {"Amount", app::Align::kRight}});
  table.Add({"Rent", "1,200.00"});
  table.Add({"Utilities", "-9.50"});
  table.AddTotal({"Total", "1,190.50"});

  EXPECT_EQ(table.Text(),
            "Account      Amount\n"
            "---------  --------\n"
            "Rent       1,200.00\n"
            "Utilities     -9.50\n"
            "---------  --------\n"
            "Total      1,190.50\n");
}

namespace {

app::Table Bills() {
  using enum app::Importance;
  app::Table table({{.title = "Partner"},
                    {.title = "Account", .importance = kMinor},
                    {.title = "Amount", .align = app::Align::kRight},
                    {.title = "Request", .importance = kDetail, .fit = app::Fit::kWhole}});
  table.Add({"Birch Services Company", "Utilities:Power", "12,345,678.90", "request-0001"});
  return table;
}

}  // namespace

TEST(ATableOnANarrowTerminal, ShortensTheWidestTextFirst) {
  EXPECT_EQ(Bills().Text(60),
            "Partner         Account                 Amount  Request\n"
            "--------------  ---------------  -------------  ------------\n"
            "Birch Service\u2026  Utilities:Power  12,345,678.90  request-0001\n");
}

TEST(ATableOnANarrowTerminal, LeavesOutTheLeastImportantColumnsOnceTextsAreShort) {
  EXPECT_EQ(Bills().Text(50),
            "Partner             Account                 Amount\n"
            "------------------  ---------------  -------------\n"
            "Birch Services Co\u2026  Utilities:Power  12,345,678.90\n"
            "(--wide shows also: Request)\n");
}

TEST(ATableOnANarrowTerminal, NeverShortensAnAmount) {
  EXPECT_EQ(Bills().Text(5),
            "Par\u2026         Amount\n"
            "----  -------------\n"
            "Bir\u2026  12,345,678.90\n"
            "(--wide shows also: Account, Request)\n");
}

TEST(ATableOnANarrowTerminal, GoesWithoutEssentialColumnsAtTheRightWhereTheRestHasNoRoom) {
  app::Table table({{.title = "Partner"},
                    {.title = "Amount", .align = app::Align::kRight},
                    {.title = "A state that is told as a whole", .fit = app::Fit::kWhole}});
  table.Add({"Birch Services Company", "12,345,678.90", "established"});

  EXPECT_EQ(table.Text(40),
            "Partner                        Amount\n"
            "----------------------  -------------\n"
            "Birch Services Company  12,345,678.90\n"
            "(--wide shows also: A state that is told\n"
            "as a whole)\n");
}

TEST(ATableOnANarrowTerminal, IsWholeWhereThereIsRoom) {
  EXPECT_EQ(Bills().Text(68), Bills().Text(std::nullopt));
  EXPECT_NE(Bills().Text(67), Bills().Text(std::nullopt));
}

TEST(ATableOnANarrowTerminal, DoesNotCutAWideCharacterOrAnAccentInHalf) {
  app::Table table({{.title = "Partner"}});
  table.Add({"\u65e5\u672c\u65e5\u672c\u65e5\u672c\u65e5"});
  table.Add({"Cafe Cafe\u0301 Cafe"});

  EXPECT_EQ(table.Text(10), "Partner\n----------\n\u65e5\u672c\u65e5\u672c\u2026\nCafe Cafe\u0301\u2026\n");
}

TEST(Tables, FitWhatTheProgramPrintsTo) {
  app::FitTablesTo(50);
  const std::string fitted = Bills().Text();
  app::FitTablesTo(std::nullopt);

  EXPECT_EQ(fitted, Bills().Text(50));
  EXPECT_EQ(Bills().Text(), Bills().Text(std::nullopt));
}
