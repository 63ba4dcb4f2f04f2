#include "app/Books.h"

using testing::HasSubstr;

TEST_F(Books, ANewCompanyHasTheSettingsItWasMadeWith) {
  Done({"init", "cedar.company", "--name", "Cedar", "--home-currency", "CAD", "--multi-currency", "--sample"});

  const Json settings = Answer({"settings", "show", "cedar.company"}).at("settings");

  EXPECT_EQ(settings, Json::parse(R"({"company-name":"Cedar","home-currency":"CAD","multi-currency":true,
                                      "sample-file":true,"accountants-copy":false})"));
}

TEST_F(Books, AChangedSettingIsKept) {
  Done({"settings", "set", kFile, "home-currency", "EUR"});

  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("home-currency"), "EUR");
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
