#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::HasSubstr;

using TheSettings = DeskFixture;

TEST_F(TheSettings, AreThoseOfTheNewCompany) {
  const Settings settings = ReadSettings(*company_);

  EXPECT_EQ(settings.companyName, "Alder Supply Company");
  EXPECT_EQ(settings.homeCurrency, "USD");
  EXPECT_FALSE(settings.multiCurrency);
  EXPECT_FALSE(settings.sampleFile);
  EXPECT_FALSE(settings.accountantsCopy);
}

TEST_F(TheSettings, AreChangedOneAtATimeAndAllAnswered) {
  ChangeSetting(*company_, "company-name", "Alder & Sons");
  ChangeSetting(*company_, "home-currency", "CAD");
  ChangeSetting(*company_, "multi-currency", "yes");
  ChangeSetting(*company_, "sample-file", "yes");
  const Settings answered = ChangeSetting(*company_, "accountants-copy", "yes");

  EXPECT_EQ(answered.companyName, "Alder & Sons");
  EXPECT_EQ(answered.homeCurrency, "CAD");
  EXPECT_TRUE(answered.multiCurrency);
  EXPECT_TRUE(answered.sampleFile);
  EXPECT_TRUE(answered.accountantsCopy);
  EXPECT_EQ(JsonOf(ReadSettings(*company_)), JsonOf(answered));
}

TEST_F(TheSettings, TellTheTrailNothingOfAValueThatIsTheSame) {
  EXPECT_TRUE(ChangeSetting(*company_, "closing-date", "2024-06-30").hasChanged);
  const std::string before = WholeFile();

  EXPECT_FALSE(ChangeSetting(*company_, "closing-date", "2024-06-30").hasChanged);
  EXPECT_FALSE(ChangeSetting(*company_, "company-name", "Alder Supply Company").hasChanged);
  EXPECT_FALSE(ChangeSetting(*company_, "multi-currency", "no").hasChanged);

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheSettings, AreSwitchedOffAgain) {
  ChangeSetting(*company_, "multi-currency", "yes");

  EXPECT_FALSE(ChangeSetting(*company_, "multi-currency", "no").multiCurrency);
}

TEST_F(TheSettings, StayAsTheyAreWhenTheNameOrTheValueIsNone) {
  const std::string before = Everything();

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { ChangeSetting(*company_, "colour", "red"); }),
              HasSubstr("\"colour\""));
  EXPECT_THROW(ChangeSetting(*company_, "company-name", ""), standalone::InvalidInput);
  EXPECT_THROW(ChangeSetting(*company_, "company-name", std::string(60, 'n')), standalone::InvalidInput);
  EXPECT_THROW(ChangeSetting(*company_, "home-currency", "cad"), standalone::InvalidInput);
  EXPECT_THROW(ChangeSetting(*company_, "sample-file", "perhaps"), standalone::InvalidInput);

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheSettings, AreSeenByAdministratorsAndAccountantsOnly) {
  AddUser(*company_, {.name = "Lee", .administrator = false, .accountant = true, .rights = {}});
  OpenFor("Robin", {"journal:modify"});

  const Refusal refusal = RefusalOf([&] { ReadSettings(*company_); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(refusal.what, UseCase::kReadSettings);
  Open("Lee");
  EXPECT_EQ(ReadSettings(*company_).companyName, "Alder Supply Company");
}

TEST_F(TheSettings, AreChangedByAdministratorsOnly) {
  OpenFor("Robin", {"journal:modify"});
  const std::string before = Everything();

  const Refusal refusal = RefusalOf([&] { ChangeSetting(*company_, "home-currency", "CAD"); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(refusal.what, UseCase::kChangeSettings);
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheSettings, AreNotChangedByWhoIsNoAdministratorAnyMore) {
  LetAnotherProgramTakeTheAdministratorsMark();
  const std::string before = Everything();

  EXPECT_THAT(RefusalOf([&] { ChangeSetting(*company_, "home-currency", "CAD"); }), IsForAdministrators());

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheSettings, AreThoseThatAnotherProgramHasWritten) {
  ReadSettings(*company_);
  {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] { other.Settings().Set("home-currency", "EUR"); });
  }

  EXPECT_EQ(ReadSettings(*company_).homeCurrency, "EUR");
}

TEST_F(TheSettings, KeepTheCurrencyOfWhatIsBooked) {
  RelateBirch();
  ImportMarch();
  const std::string before = Everything();

  const Refusal refusal = RefusalOf([&] { ChangeSetting(*company_, "home-currency", "CAD"); });

  EXPECT_EQ(refusal.remedy, Remedy::kMakeAnotherCompany);
  EXPECT_THAT(refusal.why, testing::HasSubstr("USD"));
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(ChangeSetting(*company_, "home-currency", "USD").homeCurrency, "USD");
}

}  // namespace
}  // namespace desk
