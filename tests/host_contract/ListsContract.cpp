#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host_contract/HostUnderTest.h"

namespace host_contract {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST_P(AccountList, AnOpenAccountAnswersWithItsOwnAttributes) {
  const std::int32_t id =
      host_->SeedAccount("Petty Cash", KrEnumerations::kBank, KrEnumerations::kSpecialNotForMultiEntity, false);

  const CAccnt account(Services().accounts, id, kFeatureTypeStandard);

  EXPECT_EQ(account.GetType(), KrEnumerations::kBank);
  EXPECT_FALSE(account.GetDeleted());
  EXPECT_FALSE(account.GetIsSubAccnt());
  EXPECT_TRUE(account.IsSpecial(KrEnumerations::kSpecialNotForMultiEntity));
}

TEST_P(AccountList, AnAccountUnderAnotherIsASubAccount) {
  SeedAccount("Utilities");
  const std::int32_t water = SeedAccount("Utilities:Water");

  const CAccnt account(Services().accounts, water, kFeatureTypeStandard);

  EXPECT_TRUE(account.GetIsSubAccnt());
}

TEST_P(AccountList, ABlankAccountAnswersZeroAndFalse) {
  const CAccnt account(Services().accounts, kFeatureTypeStandard);

  EXPECT_EQ(account.GetType(), 0);
  EXPECT_FALSE(account.GetDeleted());
  EXPECT_FALSE(account.GetIsSubAccnt());
  EXPECT_FALSE(account.IsSpecial(KrEnumerations::kSpecialNotForMultiEntity));
}

TEST_P(AccountList, AnAccountWithoutRecordAnswersLikeABlankOne) {
  const CAccnt account(Services().accounts, 4711, kFeatureTypeStandard);

  EXPECT_EQ(account.GetType(), 0);
  EXPECT_FALSE(account.GetDeleted());
}

TEST_P(AccountList, ALookUpLoadsTheRecordIntoAnOpenAccount) {
  const std::int32_t id = SeedAccount("Rent", KrEnumerations::kExpense);
  CAccnt account(Services().accounts, kFeatureTypeStandard);

  EXPECT_EQ(Services().accounts.GetAccountForRecnum(id, account), kEdListSuccess);

  EXPECT_EQ(account.GetType(), KrEnumerations::kExpense);
}

TEST_P(AccountList, ALookUpFindsAnAccountThatIsMarkedDeleted) {
  const std::int32_t id = host_->SeedAccount("Old Rent", KrEnumerations::kExpense, 0, true);
  CAccnt account(Services().accounts, kFeatureTypeStandard);

  EXPECT_EQ(Services().accounts.GetAccountForRecnum(id, account), kEdListSuccess);

  EXPECT_TRUE(account.GetDeleted());
}

TEST_P(AccountList, AFailedLookUpLeavesTheAccountAsItWas) {
  const std::int32_t id = SeedAccount("Rent", KrEnumerations::kExpense);
  CAccnt account(Services().accounts, id, kFeatureTypeStandard);

  EXPECT_NE(Services().accounts.GetAccountForRecnum(4711, account), kEdListSuccess);
  EXPECT_NE(Services().accounts.GetAccountForRecnum(-1, account), kEdListSuccess);

  EXPECT_EQ(account.GetType(), KrEnumerations::kExpense);
}

TEST_P(AccountList, ACreatedAccountIsThereUnderItsNewNumber) {
  char name[] = "  Freight  ";
  std::int32_t id = 0;

  ASSERT_EQ(Services().accounts.CreateNewChartOfAccount(name, KrEnumerations::kExpense, id, false), kEdListSuccess);

  EXPECT_GE(id, 1);
  EXPECT_STREQ(name, "Freight");
  EXPECT_THAT(Services().accounts.GetListOfAccounts(KrEnumerations::kExpense), ElementsAre(Pair("Freight", id)));
}

TEST_P(AccountList, ANameThatIsTakenIsADuplicateWhateverItsCase) {
  SeedAccount("Freight");
  char name[] = "FREIGHT";
  std::int32_t id = 0;

  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(name, KrEnumerations::kExpense, id, false),
            kEdListDuplicateAccount);
}

TEST_P(AccountList, TheNameOfAnAccountThatIsMarkedDeletedIsFree) {
  host_->SeedAccount("Freight", KrEnumerations::kExpense, 0, true);
  char name[] = "Freight";
  std::int32_t id = 0;

  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(name, KrEnumerations::kExpense, id, false), kEdListSuccess);
}

TEST_P(AccountList, AnAccountIsMadeUnderAParentThatExists) {
  SeedAccount("Utilities");
  char name[] = "Utilities : Water";
  std::int32_t id = 0;

  ASSERT_EQ(Services().accounts.CreateNewChartOfAccount(name, KrEnumerations::kExpense, id, false), kEdListSuccess);

  EXPECT_STREQ(name, "Utilities:Water");
  EXPECT_TRUE(CAccnt(Services().accounts, id, kFeatureTypeStandard).GetIsSubAccnt());
}

TEST_P(AccountList, AnAccountThatCannotBeIsRefusedAndNotADuplicate) {
  char orphan[] = "Utilities:Water";
  char empty[] = "   ";
  char emptyPart[] = "Utilities:";
  char unprintable[] = "Fre\tight";
  char badType[] = "Freight";
  std::int32_t id = 0;

  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(orphan, KrEnumerations::kExpense, id, false), kEdListFailure);
  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(empty, KrEnumerations::kExpense, id, false), kEdListFailure);
  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(emptyPart, KrEnumerations::kExpense, id, false),
            kEdListFailure);
  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(unprintable, KrEnumerations::kExpense, id, false),
            kEdListFailure);
  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(badType, 16, id, false), kEdListFailure);
  EXPECT_EQ(Services().accounts.CreateNewChartOfAccount(badType, -1, id, false), kEdListFailure);
  EXPECT_THAT(Services().accounts.GetAllAccounts(), IsEmpty());
}

TEST_P(AccountList, AllAccountsCarryTheirFullNameAndTypeThoseMarkedDeletedIncluded) {
  const std::int32_t parent = SeedAccount("Utilities");
  const std::int32_t child = SeedAccount("Utilities:Water");
  const std::int32_t deleted = host_->SeedAccount("Old Checking", KrEnumerations::kBank, 0, true);

  EXPECT_THAT(
      Services().accounts.GetAllAccounts(),
      UnorderedElementsAre(Pair(parent, Pair("Utilities", "Expense")), Pair(child, Pair("Utilities:Water", "Expense")),
                           Pair(deleted, Pair("Old Checking", "Bank"))));
}

TEST_P(AccountList, TheListOfATypeIsSortedByFullNameWithoutThoseMarkedDeleted) {
  const std::int32_t rent = SeedAccount("rent");
  const std::int32_t fees = SeedAccount("Fees");
  host_->SeedAccount("Gone", KrEnumerations::kExpense, 0, true);
  SeedAccount("Checking", KrEnumerations::kBank);

  EXPECT_THAT(Services().accounts.GetListOfAccounts(KrEnumerations::kExpense),
              ElementsAre(Pair("Fees", fees), Pair("rent", rent)));
}

TEST_P(AccountList, AListThatIsRefreshedShowsWhatTheCompanyHas) {
  const std::int32_t id = SeedAccount("Rent");

  Services().accounts.EdListRefreshList(Services().accounts.GetAccntListPtr(), 1);

  EXPECT_THAT(Services().accounts.GetListOfAccounts(KrEnumerations::kExpense), ElementsAre(Pair("Rent", id)));
}

TEST_P(NameListing, ACreatedNameHasANumberAndItsTextAsStored) {
  Util::TString name("  Northfield Power ");
  std::int32_t id = 0;

  ASSERT_EQ(Services().names.CreateCName(name, kNameTypeVendor, id), kEdListSuccess);

  EXPECT_GE(id, 1);
  EXPECT_EQ(name.view(), "Northfield Power");
}

TEST_P(NameListing, ANameThatIsTakenIsADuplicateWhateverItsCase) {
  host_->SeedName("Northfield Power");
  Util::TString name("NORTHFIELD power");
  std::int32_t id = 0;

  EXPECT_EQ(Services().names.CreateCName(name, kNameTypeVendor, id), kEdListDuplicateName);
}

TEST_P(NameListing, ANameThatCannotBeIsRefusedAndNotADuplicate) {
  Util::TString empty("");
  Util::TString orphan("Nobody:Child");
  Util::TString unprintable("North\nfield");
  std::int32_t id = 0;

  EXPECT_EQ(Services().names.CreateCName(empty, kNameTypeVendor, id), kEdListFailure);
  EXPECT_EQ(Services().names.CreateCName(orphan, kNameTypeVendor, id), kEdListFailure);
  EXPECT_EQ(Services().names.CreateCName(unprintable, kNameTypeVendor, id), kEdListFailure);
}

TEST_P(NameListing, NoNameIsNotValid) {
  EXPECT_FALSE(CName(Services().names, NameHandle::kNone).IsValid());
}

}  // namespace host_contract
