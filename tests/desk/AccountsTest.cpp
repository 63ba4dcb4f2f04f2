#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

template <typename Item>
std::vector<std::string> NamesOf(const std::vector<Item>& items) {
  std::vector<std::string> names;
  for (const Item& item : items) names.push_back(item.name);
  return names;
}

using TheAccounts = DeskFixture;

TEST_F(TheAccounts, AreListedByNameWithThoseMarkedDeleted) {
  EXPECT_THAT(NamesOf(ListAccounts(*company_)),
              ElementsAre("Checking", "Due from Birch", "Due from Cedar", "Due to Birch", "Due to Cedar", "Old Rent",
                          "Payables", "Receivables", "Undeposited Funds", "Utilities", "Utilities:Power"));
}

TEST_F(TheAccounts, SayWhatTheyAre) {
  const std::vector<Account> accounts = ListAccounts(*company_);

  const Account& rent = accounts.at(5);
  EXPECT_EQ(rent.type, KrEnumerations::kExpense);
  EXPECT_TRUE(rent.deleted);
  EXPECT_EQ(rent.specialKind, 0);
  const Account& funds = accounts.at(8);
  EXPECT_EQ(funds.type, KrEnumerations::kOtherCurrentAsset);
  EXPECT_FALSE(funds.deleted);
  EXPECT_EQ(funds.specialKind, 5);
}

TEST_F(TheAccounts, OfATypeLeaveOutThoseMarkedDeleted) {
  const std::vector<Account> expenses = ListAccountsOfType(*company_, KrEnumerations::kExpense);

  EXPECT_THAT(NamesOf(expenses), ElementsAre("Utilities", "Utilities:Power"));
  EXPECT_EQ(expenses[1].id, AccountId("Utilities:Power"));
  EXPECT_THAT(ListAccountsOfType(*company_, KrEnumerations::kEquity), IsEmpty());
}

TEST_F(TheAccounts, AreFreeForARelationUnlessOneUsesThem) {
  const std::vector<std::string> before = NamesOf(ListFreeAccounts(*company_, {}));
  RelateBirch();

  const std::vector<std::string> after = NamesOf(ListFreeAccounts(*company_, {}));

  EXPECT_THAT(before, testing::IsSupersetOf({"Due from Birch", "Due to Birch", "Due from Cedar", "Due to Cedar"}));
  EXPECT_THAT(before, Not(testing::Contains("Receivables")));
  EXPECT_THAT(after, Not(testing::Contains("Due from Birch")));
  EXPECT_THAT(after, Not(testing::Contains("Due to Birch")));
  EXPECT_THAT(after, testing::IsSupersetOf({"Due from Cedar", "Due to Cedar"}));
}

TEST_F(TheAccounts, OfARelationAreFreeForItself) {
  const std::vector<std::string> all = NamesOf(ListFreeAccounts(*company_, {}));
  RelateBirch();

  EXPECT_EQ(NamesOf(ListFreeAccounts(*company_, standalone::RealmId("1001"))), all);
  EXPECT_NE(NamesOf(ListFreeAccounts(*company_, standalone::RealmId("2002"))), all);
}

TEST_F(TheAccounts, ThatAreFreeAreListedByName) {
  const std::vector<std::string> free = NamesOf(ListFreeAccounts(*company_, {}));

  EXPECT_TRUE(std::ranges::is_sorted(free));
}

using TheNames = DeskFixture;

TEST_F(TheNames, AreListedByNameWithTheirKind) {
  const std::vector<Name> names = ListNames(*company_);

  EXPECT_THAT(NamesOf(names), ElementsAre("Northern Power", "Walker", "Walker:Depot"));
  EXPECT_EQ(names[0].kind, "vendor");
  EXPECT_EQ(names[2].kind, "customer");
}

TEST_F(TheNames, AreSeenAsSoonAsAnotherProgramHasMadeThem) {
  ListNames(*company_);
  {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite,
                  [&] { other.Names().Create("Elm Freight", standalone::NameKind::kVendor); });
  }

  EXPECT_THAT(Names(), HasSubstr("Elm Freight"));
}

}  // namespace
}  // namespace desk
