#include <string>
#include <utility>
#include <vector>

#include "app/Books.h"

using testing::HasSubstr;

TEST_F(Books, ANewCompanyHasTheSettingsItWasMadeWith) {
  Done({"init", "cedar.company", "--name", "Cedar", "--home-currency", "CAD", "--multi-currency", "--sample"});

  const Json settings = Answer({"settings", "show", "cedar.company"}).at("settings");

  EXPECT_EQ(settings, Json::parse(R"({"company-name":"Cedar","home-currency":"CAD","decimals":2,"multi-currency":true,
                                      "sample-file":true,"accountants-copy":false,"closing-date":null})"));
}

TEST_F(Books, AChangedSettingIsKept) {
  Done({"settings", "set", kFile, "home-currency", "EUR"});

  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("home-currency"), "EUR");
}

TEST_F(Books, AValueThatIsTheSameChangesNothingWhichIsSaid) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});
  Done({"realm", "set", kFile, "--realm", "9130"});
  const std::string before = Run({"audit", "verify", kFile}).out;

  const std::vector<std::pair<std::vector<std::string>, std::string>> asked = {
      {{"settings", "set", kFile, "multi-currency", "no"}, "Nothing has changed.\n"},
      {{"users", "change", kFile, "Robin", "--right", "bills:view"},
       "Nothing has changed: the user Robin has these marks and rights already.\n"},
      {{"account", "number", kFile, "Utilities", "none"},
       "Nothing has changed: the account Utilities has no number.\n"},
      {{"account", "rename", kFile, "Utilities", "Utilities"},
       "Nothing has changed: the account is called Utilities already.\n"},
      {{"name", "rename", kFile, "Walker", "Walker"}, "Nothing has changed: the name is Walker already.\n"},
      {{"realm", "set", kFile, "--realm", "9130"},
       "Nothing has changed: the company file remembers the realm id 9130 already.\n"}};
  for (const auto& [command, said] : asked) {
    const Outcome outcome = Run(command);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_THAT(outcome.out, testing::StartsWith(said));
  }

  EXPECT_EQ(Answer({"settings", "set", kFile, "multi-currency", "no"}).at("changed"), false);
  EXPECT_EQ(Run({"audit", "verify", kFile}).out, before);
}

TEST_F(Books, ClosedBooksTellHowFarTheyAreClosed) {
  Done({"settings", "set", kFile, "closing-date", "2026-06-30"});

  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("closing-date"), "2026-06-30");
  EXPECT_THAT(Run({"settings", "show", kFile}).out, HasSubstr("closing-date      2026-06-30\n"));
}

TEST_F(Books, BooksAreOpenAgainWithoutAClosingDate) {
  Done({"settings", "set", kFile, "closing-date", "2026-06-30"});

  EXPECT_THAT(Run({"settings", "set", kFile, "closing-date", "none"}).out, HasSubstr("closing-date      none\n"));
}

TEST_F(Books, ASettingThatDoesNotExistIsNamed) {
  const Outcome outcome = Run({"settings", "set", kFile, "fiscal-year", "2024"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("fiscal-year"));
}

TEST_F(Books, AValueThatIsNeitherYesNorNoIsNamed) {
  const Outcome outcome = Run({"settings", "set", kFile, "multi-currency", "perhaps"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("perhaps"));
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("multi-currency"), false);
}

TEST_F(Books, OnlyAnAdministratorMayChangeSettings) {
  Done({"users", "add", kFile, "Robin"});

  EXPECT_EQ(Run({"settings", "set", kFile, "company-name", "Mine", "--user", "Robin"}).exitCode, 2);
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("company-name"), "Alder Supply Company");
}
