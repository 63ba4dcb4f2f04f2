#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/books/RowFields.h"
#include "standalone/services/PermissionsService.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;

// Within one unit of work.
class Lists : public CompanyFixture {
 protected:
  AccountTable& Accounts() { return host_.Accounts(); }
  NameTable& Names() { return host_.Names(); }
  UserTable& Users() { return host_.Users(); }

  StandaloneHost host_{path_};
  UnitOfWork unit_{host_.Data(), Access::kWrite};
};

class TheChartOfAccounts : public Lists {};
class TheNameList : public Lists {};
class TheUserList : public Lists {};
class TheSettings : public Lists {};

TEST_F(TheChartOfAccounts, FindsAnAccountByNumberOrFullName) {
  Accounts().Create({"Utilities", 12, 0, false});
  const Account water = Accounts().Create({"Utilities:Water", 12, 0, false});

  EXPECT_EQ(Accounts().Require(std::to_string(water.id)).fullName, "Utilities:Water");
  EXPECT_EQ(Accounts().Require("utilities : water").id, water.id);
  EXPECT_EQ(water.name, "Water");
}

TEST_F(TheChartOfAccounts, NamesTheAccountThatItDoesNotHave) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts().Require("Utilities"); }),
              HasSubstr("There is no account \"Utilities\""));
  EXPECT_THROW(Accounts().Require("17"), InvalidInput);
}

TEST_F(TheChartOfAccounts, KeepsASubAccountToTheTypeOfItsParent) {
  Accounts().Create({"Utilities", KrEnumerations::kExpense, 0, false});

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts().Create({"Utilities:Water", KrEnumerations::kBank, 0, false}); }),
              HasSubstr("give both the same type"));
}

TEST_F(TheChartOfAccounts, ListsDeletedAccountsOnRequestOnly) {
  Accounts().Create({"Rent", 12, 0, false});
  const Account gone = Accounts().Create({"Gone", 12, 0, false});

  Accounts().SetDeleted(gone.id, true);

  EXPECT_THAT(Accounts().List(), ElementsAre(Field(&Account::fullName, "Rent")));
  EXPECT_EQ(Accounts().List(/*withDeleted=*/true).size(), 2U);
  EXPECT_FALSE(Accounts().FindByFullName("Gone").has_value());
}

TEST_F(TheChartOfAccounts, DoesNotTakeAnAccountUnderOneThatIsMarkedDeleted) {
  Accounts().Create({"Utilities", 12, 0, true});

  EXPECT_THROW(Accounts().Create({"Utilities:Water", 12, 0, false}), InvalidInput);
}

TEST_F(TheChartOfAccounts, DoesNotTakeAFullNameTwice) {
  Accounts().Create({"Rent", 12, 0, false});

  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Accounts().Create({"RENT", 12, 0, false}); }),
              HasSubstr("already an account \"Rent\""));
}

TEST_F(TheChartOfAccounts, WritesAnAccountUnderItsParentAsTheParentIsWritten) {
  Accounts().Create({"Utilities", 12, 0, false});
  Accounts().Create({"UTILITIES:Water", 12, 0, false});

  EXPECT_EQ(Accounts().Create({"utilities:WATER:Hot", 12, 0, false}).fullName, "Utilities:Water:Hot");

  EXPECT_THAT(Accounts().List(),
              ElementsAre(Field(&Account::fullName, "Utilities"), Field(&Account::fullName, "Utilities:Water"),
                          Field(&Account::fullName, "Utilities:Water:Hot")));
  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Accounts().Create({"UTILITIES:water", 12, 0, false}); }),
              HasSubstr("already an account \"Utilities:Water\""));
}

TEST_F(TheChartOfAccounts, ReleasesEveryAccountThatWasOpened) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false});
  auto& chart = host_.Services().accounts;
  const AccountHandle first = chart.OpenAccount(rent.id, kFeatureTypeStandard);
  chart.ReleaseAccount(first);

  const AccountHandle second = chart.OpenAccount(kFeatureTypeStandard);

  EXPECT_EQ(second, first);
  EXPECT_EQ(chart.GetType(second), 0);
  chart.ReleaseAccount(second);
}

TEST_F(TheChartOfAccounts, FindsAnAccountByItsNumber) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false, "4000.10"});

  EXPECT_EQ(Accounts().Require("4000.10").id, rent.id);
  EXPECT_EQ(Accounts().Require("4000.10").number, "4000.10");
  EXPECT_THROW(Accounts().Require("4000"), InvalidInput);
}

TEST_F(TheChartOfAccounts, AsksWhichIsMeantWhereANumberIsTheRecordNumberOfAnotherAccount) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false});
  const Account water = Accounts().Create({"Water", 12, 0, false, std::to_string(rent.id)});

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts().Require(std::to_string(rent.id)); }),
              AllOf(HasSubstr("the number of the account \"Water\" (#" + std::to_string(water.id)),
                    HasSubstr("the record number of the account \"Rent\" (#" + std::to_string(rent.id)),
                    HasSubstr("write #"), HasSubstr("full name")));
  EXPECT_EQ(Accounts().Require("#" + std::to_string(rent.id)).fullName, "Rent");
  EXPECT_EQ(Accounts().Require("Water").id, water.id);
}

TEST_F(TheChartOfAccounts, AsksWhichIsMeantWhereANumberIsTheNameOfAnotherAccount) {
  Accounts().Create({"4000", 12, 0, false});

  EXPECT_EQ(Accounts().Require("4000").fullName, "4000");
  Accounts().Create({"Water", 12, 0, false, "4000"});

  EXPECT_THAT(
      MessageOf<InvalidInput>([&] { Accounts().Require("4000"); }),
      AllOf(HasSubstr("the number of the account \"Water\""), HasSubstr("the full name of the account \"4000\"")));
}

TEST_F(TheChartOfAccounts, IsNotInDoubtWhereANumberIsTheAccountsOwnRecordNumber) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false});

  Accounts().SetNumber(rent.id, std::to_string(rent.id));

  EXPECT_EQ(Accounts().Require(std::to_string(rent.id)).fullName, "Rent");
}

TEST_F(TheChartOfAccounts, GivesANumberToOneOfItsAccountsOnly) {
  const Account gone = Accounts().Create({"Gone", 12, 0, true, "4000"});
  const Account rent = Accounts().Create({"Rent", 12, 0, false, "4000"});
  const Account water = Accounts().Create({"Water", 12, 0, false});

  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Accounts().SetNumber(water.id, "4000"); }),
              HasSubstr("\"Rent\" has the number 4000"));
  EXPECT_THROW(Accounts().Create({"Gas", 12, 0, false, "4000"}), ConstraintViolation);
  EXPECT_EQ(Accounts().Require("4000").id, rent.id);
  EXPECT_EQ(Accounts().Find(gone.id)->number, "4000");

  Accounts().SetNumber(rent.id, "");
  Accounts().SetNumber(water.id, "4000");

  EXPECT_EQ(Accounts().Require("4000").id, water.id);
}

TEST_F(TheChartOfAccounts, RenamesAnAccountWithAllThatStandBelowIt) {
  const Account utilities = Accounts().Create({"Utilities", 12, 0, false});
  const Account water = Accounts().Create({"utilities:Water", 12, 0, false});
  const Account well = Accounts().Create({"Utilities:Water:Well", 12, 0, true});
  const Account other = Accounts().Create({"Utilities and more", 12, 0, false});

  EXPECT_EQ(Accounts().Rename(utilities.id, " Energ\u00eda "), 2);

  EXPECT_EQ(Accounts().Find(utilities.id)->name, "Energ\u00eda");
  EXPECT_EQ(Accounts().Find(water.id)->fullName, "Energ\u00eda:Water");
  EXPECT_EQ(Accounts().Find(water.id)->name, "Water");
  EXPECT_EQ(Accounts().Find(well.id)->fullName, "Energ\u00eda:Water:Well");
  EXPECT_EQ(Accounts().Find(other.id)->fullName, "Utilities and more");
}

TEST_F(TheChartOfAccounts, TellsTheNewNameWhereTheOldOneWasRead) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false});
  EXPECT_EQ(Accounts().FullNameOf(rent.id).view(), "Rent");

  Accounts().Rename(rent.id, "RENT");

  EXPECT_EQ(Accounts().FullNameOf(rent.id).view(), "RENT");
}

TEST_F(TheChartOfAccounts, TellsThatAnAccountWasMarkedDeletedAfterItWasRead) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false});
  EXPECT_FALSE(Accounts().FactsOf(rent.id).deleted);

  Accounts().SetDeleted(rent.id, true);

  EXPECT_TRUE(Accounts().FactsOf(rent.id).deleted);
}

TEST_F(TheChartOfAccounts, RenamesNoAccountAsAnotherIsCalled) {
  const Account rent = Accounts().Create({"Rent", 12, 0, false});
  Accounts().Create({"Water", 12, 0, false});

  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Accounts().Rename(rent.id, "WATER"); }),
              HasSubstr("already an account \"Water\""));
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts().Rename(rent.id, "Water:Rent"); }), HasSubstr("has a colon"));
  EXPECT_THROW(Accounts().Rename(rent.id, ""), InvalidInput);
  EXPECT_EQ(Accounts().Find(rent.id)->fullName, "Rent");
}

TEST_F(TheChartOfAccounts, RenamesNoAccountSoThatASubAccountIsCalledAsAnother) {
  const Account gone = Accounts().Create({"Rent", 12, 0, false});
  Accounts().Create({"Rent:Hall", 12, 0, false});
  Accounts().SetDeleted(gone.id, true);
  const Account lease = Accounts().Create({"Lease", 12, 0, false});
  const Account hall = Accounts().Create({"Lease:Hall", 12, 0, false});

  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Accounts().Rename(lease.id, "Rent"); }),
              HasSubstr("sub-account of \"Rent\""));

  EXPECT_EQ(Accounts().Find(hall.id)->fullName, "Lease:Hall");
}

TEST_F(TheChartOfAccounts, RenamesNoAccountSoThatASubAccountsNameIsTooLong) {
  const std::string part(100, 'x');
  const Account top = Accounts().Create({"A", 12, 0, false});
  std::string fullName = "A";
  for (int depth = 0; depth < 4; ++depth) Accounts().Create({fullName += ':' + part, 12, 0, false});

  EXPECT_EQ(Accounts().Rename(top.id, std::string(96, 'B')), 4);
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Accounts().Rename(top.id, std::string(97, 'B')); }),
              HasSubstr("501 bytes; 500 are the most"));
}

TEST_F(TheChartOfAccounts, FindsAnAccountThatIsCalledAlike) {
  Accounts().Create({"Caf\u00e9", 12, 0, false});
  Accounts().Create({"STRASSE", 12, 0, false});
  Accounts().Create({"T\u00e9", 12, 0, true});

  EXPECT_EQ(Accounts().ForAlike().Find("CAFE\u0301"), "Caf\u00e9");
  EXPECT_EQ(Accounts().ForAlike().Find("Stra\u00dfe"), "STRASSE");
  EXPECT_EQ(Accounts().ForAlike().Find("Cafe"), std::nullopt);
  EXPECT_EQ(Accounts().ForAlike().Find("T\u00c9"), std::nullopt);
  EXPECT_EQ(Accounts().ForAlike("Caf\u00e9").Find("Caf\u00e9"), std::nullopt);
}

TEST_F(TheNameList, ListsNamesWithTheirKindByFullName) {
  Names().Create("Tri-County", NameKind::kVendor);
  Names().Create("hollis", NameKind::kCustomer);
  Names().Create("Tri-County:West", NameKind::kVendor);

  EXPECT_THAT(Names().List(), ElementsAre(Field(&Name::fullName, "hollis"), Field(&Name::fullName, "Tri-County"),
                                          Field(&Name::fullName, "Tri-County:West")));
  EXPECT_EQ(Names().Require("HOLLIS").kind, NameKind::kCustomer);
}

TEST_F(TheNameList, WritesANameUnderItsParentAsTheParentIsWritten) {
  Names().Create("Walker", NameKind::kCustomer);

  EXPECT_EQ(Names().Create("WALKER:Depot", NameKind::kCustomer).fullName, "Walker:Depot");

  EXPECT_EQ(Names().Require("walker:depot").fullName, "Walker:Depot");
  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Names().Create("WALKER:depot", NameKind::kCustomer); }),
              HasSubstr("already a name \"Walker:Depot\""));
}

TEST_F(TheNameList, NamesTheNameThatItDoesNotHave) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Names().Require("Nobody"); }), HasSubstr("There is no name \"Nobody\""));
}

TEST_F(TheNameList, KnowsARecordNumberByItsMark) {
  const Name walker = Names().Create("Walker", NameKind::kCustomer);

  EXPECT_EQ(Names().Require("#" + std::to_string(walker.id)).fullName, "Walker");
  EXPECT_THROW(Names().Require("#77"), InvalidInput);
}

TEST_F(TheNameList, AsksWhichIsMeantWhereARecordNumberIsTheNameOfAnother) {
  Names().Create("Walker", NameKind::kVendor);
  const Name hollis = Names().Create("Hollis", NameKind::kVendor);
  const std::string digits = std::to_string(hollis.id);
  const Name numbered = Names().Create(digits, NameKind::kVendor);

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Names().Require(digits); }),
              AllOf(HasSubstr("\"Hollis\" (#" + digits + ")"),
                    HasSubstr("another one (#" + std::to_string(numbered.id) + ")")));
  EXPECT_EQ(Names().Require("#" + digits).fullName, "Hollis");
  EXPECT_EQ(Names().Require("#" + std::to_string(numbered.id)).fullName, digits);
}

TEST_F(TheNameList, FindsANameOfDigitsOnlyThatIsNoRecordNumberOfAnother) {
  const Name street = Names().Create("1848", NameKind::kVendor);

  EXPECT_EQ(Names().Require("1848").id, street.id);
  EXPECT_EQ(Names().Require(std::to_string(street.id)).fullName, "1848");
}

TEST_F(TheNameList, RenamesANameWithAllThatStandBelowIt) {
  const Name walker = Names().Create("Walker", NameKind::kCustomer);
  const Name depot = Names().Create("Walker:Depot", NameKind::kCustomer);
  Names().Create("Hollis", NameKind::kCustomer);

  EXPECT_EQ(Names().Rename(walker.id, "Walker & Daughter"), 1);

  EXPECT_EQ(Names().Find(walker.id)->name, "Walker & Daughter");
  EXPECT_EQ(Names().Find(depot.id)->fullName, "Walker & Daughter:Depot");
  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Names().Rename(walker.id, "HOLLIS"); }),
              HasSubstr("already a name \"Hollis\""));
}

TEST_F(TheNameList, RenamesNoNameSoThatOneBelowItIsTooLong) {
  const std::string part(100, 'x');
  const Name top = Names().Create("A", NameKind::kOther);
  std::string fullName = "A";
  for (int depth = 0; depth < 4; ++depth) Names().Create(fullName += ':' + part, NameKind::kOther);

  EXPECT_EQ(Names().Rename(top.id, std::string(96, 'B')), 4);
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Names().Rename(top.id, std::string(97, 'B')); }),
              HasSubstr("501 bytes; 500 are the most"));
}

TEST_F(TheNameList, TellsTheNewNameWhereTheOldOneWasReadLast) {
  const Name birch = Names().Create("Birch", NameKind::kVendor);
  EXPECT_EQ(Names().Find(birch.id)->fullName, "Birch");

  Names().Rename(birch.id, "Alder");

  EXPECT_EQ(Names().Find(birch.id)->fullName, "Alder");
}

TEST_F(TheNameList, DeletesANameThatNothingUses) {
  const Name walker = Names().Create("Walker", NameKind::kCustomer);
  const Name depot = Names().Create("Walker:Depot", NameKind::kCustomer);

  EXPECT_EQ(Names().UseOf(walker.id).subNames, 1);
  EXPECT_THROW(Names().Delete(walker.id), ConstraintViolation);
  Names().Delete(depot.id);

  EXPECT_EQ(Names().UseOf(walker.id).subNames, 0);
  EXPECT_FALSE(Names().Find(depot.id).has_value());
}

TEST_F(TheNameList, FindsANameThatIsCalledAlike) {
  Names().Create("\u0411\u0435\u0440\u0451\u0437\u0430", NameKind::kVendor);

  EXPECT_EQ(Names().ForAlike().Find("\u0411\u0415\u0420\u0401\u0417\u0410"), "\u0411\u0435\u0440\u0451\u0437\u0430");
  EXPECT_EQ(Names().ForAlike().Find("\u0411\u0415\u0420\u0415\u0417\u0410"), std::nullopt);
}

TEST_F(TheNameList, KnowsFourKinds) {
  EXPECT_EQ(ParseNameKind("Employee"), NameKind::kEmployee);
  EXPECT_EQ(NameKindText(NameKind::kOther), "other");
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseNameKind("friend"); }), HasSubstr("\"friend\""));
}

User NewUser(const char* name) {
  User user;
  user.name = name;
  return user;
}

TEST_F(TheUserList, KeepsTheRightsThatAUserWasGiven) {
  User clerk = NewUser("clerk");
  clerk.accountant = true;
  clerk.featureRights = {{kFeatureChecks, kActionView}, {kFeatureBills, kActionCreate}};
  clerk.listRights = {{kListAccounts, kActionView}};
  Users().Add(clerk);

  const User read = Users().Require("CLERK");

  EXPECT_FALSE(read.administrator);
  EXPECT_TRUE(read.accountant);
  EXPECT_EQ(read.featureRights, clerk.featureRights);
  EXPECT_EQ(read.listRights, clerk.listRights);
}

TEST_F(TheUserList, GivesAUserTheRightsOfItsRowsOnly) {
  User clerk = NewUser("clerk");
  clerk.featureRights = {{kFeatureBills, kActionCreate}};
  clerk.listRights = {{kListAccounts, kActionView}};
  const User added = Users().Add(clerk);
  PermissionsService permissions(host_.Data(), Users(), added);
  CAccnt account(host_.Services().accounts, kFeatureTypeStandard);

  EXPECT_FALSE(permissions.CurrentUserIsAdminUser());
  EXPECT_TRUE(permissions.FeaturePermissionAvailable(kFeatureBills, kActionCreate, 0));
  EXPECT_FALSE(permissions.FeaturePermissionAvailable(kFeatureBills, kActionView, 0));
  EXPECT_FALSE(permissions.FeaturePermissionAvailable(kFeatureChecks, kActionCreate, 0));
  EXPECT_TRUE(permissions.ListPermissionAvailable(kListAccounts, 0, kActionView, account, 0, 0));
  EXPECT_FALSE(permissions.ListPermissionAvailable(kListAccounts, 0, kActionDelete, account, 0, 0));
}

TEST_F(TheUserList, GivesAUserThatWasRemovedNoRight) {
  User second = NewUser("second");
  second.administrator = true;
  const User added = Users().Add(second);
  PermissionsService permissions(host_.Data(), Users(), added);
  ASSERT_TRUE(permissions.CurrentUserIsAdminUser());

  Users().Remove("second");

  EXPECT_FALSE(permissions.CurrentUserIsAdminUser());
  EXPECT_FALSE(permissions.FeaturePermissionAvailable(kFeatureBills, kActionView, 0));
}

TEST_F(TheUserList, ReplacesMarksAndRightsOfAUserThatIsChanged) {
  User clerk = NewUser("clerk");
  clerk.featureRights = {{kFeatureBills, kActionCreate}};
  Users().Add(clerk);
  clerk.featureRights = {{kFeatureChecks, kActionView}};
  clerk.administrator = true;

  Users().Change(clerk);

  const User read = Users().Require("clerk");
  EXPECT_TRUE(read.administrator);
  EXPECT_THAT(read.featureRights, ElementsAre(FeatureRight{kFeatureChecks, kActionView}));
}

TEST_F(TheUserList, KeepsTheLastAdministrator) {
  User demoted = NewUser("Admin");

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Users().Remove("Admin"); }), HasSubstr("only administrator"));
  EXPECT_THROW(Users().Change(demoted), InvalidInput);
}

TEST_F(TheUserList, DoesNotTakeANameTwice) {
  Users().Add(NewUser("clerk"));

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Users().Add(NewUser("Clerk")); }), HasSubstr("already a user \"Clerk\""));
  EXPECT_THROW(Users().Add(NewUser("")), InvalidInput);
}

TEST_F(TheUserList, GivesNumbersUpToTheLargestOneAndNoneBeyondIt) {
  FileOf(host_).Execute("UPDATE sqlite_sequence SET seq = 2147483645 WHERE name = 'user'");
  User last;
  last.name = "Vera";
  User oneMore;
  oneMore.name = "Paul";

  EXPECT_EQ(Users().Add(last).id, 2147483646);
  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { Users().Add(oneMore); }),
              AllOf(HasSubstr("\"Paul\""), HasSubstr("2147483646")));

  EXPECT_FALSE(Users().Find("Paul").has_value());
  EXPECT_EQ(Users().List().size(), 2U);
}

// The number of an administrator with one bit more.
TEST_F(TheUserList, TakesNoNumberForThatOfItsLowerHalf) {
  FileOf(host_).Execute("INSERT INTO user (id, name, administrator, accountant) VALUES (4294967297, 'Robin', 0, 0)");

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Users().Require("Robin"); }),
              AllOf(HasSubstr("\"Robin\""), HasSubstr("4294967297")));
}

TEST_F(TheUserList, NamesRightsInWordsThatItReadsBack) {
  EXPECT_EQ(FeatureRightText({kFeatureJournalEntries, kActionModify}), "journal:modify");
  EXPECT_EQ(ParseFeatureRight("Bills:Create"), (FeatureRight{kFeatureBills, kActionCreate}));
  EXPECT_EQ(ParseListRight("accounts:delete"), (ListRight{kListAccounts, kActionDelete}));
  EXPECT_THAT(MessageOf<InvalidInput>([] { ParseFeatureRight("bills:eat"); }),
              AllOf(HasSubstr("\"bills:eat\""), HasSubstr("create, view, delete, modify")));
  EXPECT_THROW(ParseFeatureRight("bills"), InvalidInput);
}

TEST_F(TheSettings, AreChangedByTheirNames) {
  host_.Settings().Set("home-currency", "CAD");
  host_.Settings().Set("multi-currency", "yes");
  host_.Settings().Set("sample-file", "on");
  host_.Settings().Set("accountants-copy", "1");
  host_.Settings().Set("company-name", "Birch & Co");

  const Settings settings = host_.Settings().Get();

  EXPECT_EQ(settings.companyName, "Birch & Co");
  EXPECT_TRUE(host_.Services().preferences.GetUseMultiCurrency());
  EXPECT_TRUE(host_.Services().preferences.GetCurrentFileIsSample());
  EXPECT_NE(host_.Services().preferences.GetIsAccntntCopy(), 0);
  CCurrency currency(host_.Services().preferences, kFeatureTypeStandard);
  host_.Services().preferences.GetHomeCurrency(currency);
  EXPECT_EQ(currency.GetCode().view(), "CAD");
}

TEST_F(TheSettings, HaveTheDecimalsOfAnotherCurrency) {
  host_.Settings().Set("home-currency", "JPY");
  EXPECT_EQ(host_.Settings().Get().decimals, Decimals(0));

  host_.Settings().Set("home-currency", "KWD");
  EXPECT_EQ(host_.Settings().Get().decimals, Decimals(3));
  EXPECT_EQ(FileOf(host_).QueryNumber("SELECT decimals FROM company"), 3);
}

TEST_F(TheSettings, KeepTheDecimalsOfBeforeWithTheirCurrency) {
  host_.Settings().Set("home-currency", "JPY");
  FileOf(host_).Execute("UPDATE company SET decimals = 2");

  host_.Settings().Set("home-currency", "JPY");
  host_.Settings().Set("company-name", "Birch & Co");

  EXPECT_EQ(host_.Settings().Get().decimals, kTwoDecimals);
}

TEST_F(TheSettings, RefuseUnknownNamesAndValues) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { host_.Settings().Set("color", "red"); }),
              AllOf(HasSubstr("\"color\""), HasSubstr("home-currency")));
  EXPECT_THAT(MessageOf<InvalidInput>([&] { host_.Settings().Set("home-currency", "usd"); }), HasSubstr("\"usd\""));
  EXPECT_THAT(MessageOf<InvalidInput>([&] { host_.Settings().Set("sample-file", "maybe"); }), HasSubstr("yes or no"));
}

class TheHost : public CompanyFixture {};

TEST_F(TheHost, KnowsTheUserThatWasSelected) {
  StandaloneHost host(path_, "admin");

  EXPECT_EQ(host.CurrentUser().name, "Admin");
}

TEST_F(TheHost, SeesWhatAnotherProgramHasMadeOfTheRecordsThatItRead) {
  StandaloneHost host(path_);
  StandaloneHost other(path_);
  Account rent;
  Name birch;
  DBMultiEntityRelation partner{};
  Fill(partner.realmId, "9130000000000002");
  Fill(partner.partnerName, "Birch Services");
  host.Request(Access::kWrite, [&] {
    rent = host.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false});
    birch = host.Names().Create("Birch", NameKind::kVendor);
    host.Relations().Add(partner, /*now=*/0);
    EXPECT_FALSE(host.Accounts().FactsOf(rent.id).deleted);
    EXPECT_EQ(host.Names().Find(birch.id)->fullName, "Birch");
    EXPECT_TRUE(host.Relations().FindById(partner.relationId, partner));
  });

  other.Request(Access::kWrite, [&] {
    other.Accounts().SetDeleted(rent.id, true);
    other.Names().Rename(birch.id, "Alder");
    DBMultiEntityRelation changed = partner;
    Fill(changed.partnerName, "Alder Services");
    other.Relations().Change(changed, /*now=*/0);
  });

  host.Request(Access::kRead, [&] {
    EXPECT_TRUE(host.Accounts().FactsOf(rent.id).deleted);
    EXPECT_EQ(host.Names().Find(birch.id)->fullName, "Alder");
    EXPECT_TRUE(host.Relations().FindById(partner.relationId, partner));
    EXPECT_STREQ(partner.partnerName, "Alder Services");
  });
}

TEST_F(TheHost, RefusesAUserThatTheCompanyDoesNotHave) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { StandaloneHost host(path_, "nobody"); }), HasSubstr("\"nobody\""));
}

}  // namespace
}  // namespace standalone
