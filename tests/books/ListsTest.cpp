#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/services/PermissionsService.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

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
              HasSubstr("already an account \"RENT\""));
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

TEST_F(TheNameList, ListsNamesWithTheirKindByFullName) {
  Names().Create("Tri-County", NameKind::kVendor);
  Names().Create("hollis", NameKind::kCustomer);
  Names().Create("Tri-County:West", NameKind::kVendor);

  EXPECT_THAT(Names().List(), ElementsAre(Field(&Name::fullName, "hollis"), Field(&Name::fullName, "Tri-County"),
                                          Field(&Name::fullName, "Tri-County:West")));
  EXPECT_EQ(Names().Require("HOLLIS").kind, NameKind::kCustomer);
}

TEST_F(TheNameList, NamesTheNameThatItDoesNotHave) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { Names().Require("Nobody"); }), HasSubstr("There is no name \"Nobody\""));
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
  PermissionsService permissions(host_.Data(), Users(), Users().Add(clerk).id);
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
  PermissionsService permissions(host_.Data(), Users(), Users().Add(second).id);
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
              testing::AllOf(HasSubstr("\"Paul\""), HasSubstr("2147483646")));

  EXPECT_FALSE(Users().Find("Paul").has_value());
  EXPECT_EQ(Users().List().size(), 2U);
}

// The number of an administrator with one bit more.
TEST_F(TheUserList, TakesNoNumberForThatOfItsLowerHalf) {
  FileOf(host_).Execute("INSERT INTO user (id, name, administrator, accountant) VALUES (4294967297, 'Robin', 0, 0)");

  EXPECT_THAT(MessageOf<InvalidInput>([&] { Users().Require("Robin"); }),
              testing::AllOf(HasSubstr("\"Robin\""), HasSubstr("4294967297")));
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

TEST_F(TheHost, RefusesAUserThatTheCompanyDoesNotHave) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { StandaloneHost host(path_, "nobody"); }), HasSubstr("\"nobody\""));
}

}  // namespace
}  // namespace standalone
