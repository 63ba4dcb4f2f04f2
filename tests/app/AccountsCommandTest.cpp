#include "app/Books.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> NamesIn(const Json& list) {
  std::vector<std::string> names;
  for (const Json& element : list) names.push_back(element.at("name"));
  return names;
}

}  // namespace

TEST_F(Books, TheWholeChartOfAccountsIsListedDeletedAccountsIncluded) {
  const Json accounts = Answer({"accounts", kFile}).at("accounts");

  EXPECT_THAT(NamesIn(accounts), ElementsAre("Checking", "Due from Birch", "Due from Cedar", "Due to Birch",
                                             "Due to Cedar", "Old Rent", "Payables", "Purchase Orders", "Receivables",
                                             "Undeposited Funds", "Utilities", "Utilities:Power"));
  EXPECT_EQ(accounts[5].at("deleted"), true);
  EXPECT_EQ(accounts[5].at("type"), "Expense");
  EXPECT_EQ(accounts[9].at("special"), 5);
}

TEST_F(Books, AccountsAreAlignedInColumnsForPeople) {
  const Outcome outcome = Run({"accounts", kFile, "--type", "Bank"});

  EXPECT_EQ(outcome.out, "Id  Number  Account\n--  ------  --------\n 1          Checking\n");
}

TEST_F(Books, AccountsOfATypeAreListedWithoutTheDeletedOnes) {
  const Json answer = Answer({"accounts", kFile, "--type", "Expense"});

  EXPECT_EQ(answer.at("status"), 1);
  EXPECT_THAT(NamesIn(answer.at("accounts")), ElementsAre("Utilities", "Utilities:Power"));
}

TEST_F(Books, ATypeMayBeGivenByItsNumber) {
  EXPECT_THAT(NamesIn(Answer({"accounts", kFile, "--type", "7"}).at("accounts")),
              ElementsAre("Due to Birch", "Due to Cedar"));
}

TEST_F(Books, ATypeThatDoesNotExistIsNamed) {
  const Outcome outcome = Run({"accounts", kFile, "--type", "Savings"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Savings"));
}

TEST_F(Books, FreeAccountsLeaveOutThoseThatCannotServe) {
  const Json answer = Answer({"accounts", kFile, "--free"});

  EXPECT_EQ(answer.at("status"), 1);
  EXPECT_THAT(NamesIn(answer.at("accounts")), ElementsAre("Checking", "Due from Birch", "Due from Cedar",
                                                          "Due to Birch", "Due to Cedar", "Old Rent", "Utilities"));
  EXPECT_EQ(answer.at("accounts")[0].at("type"), "Bank");
}

TEST_F(Books, FreeAccountsLeaveOutThoseOfARelation) {
  RelateBirch();

  EXPECT_THAT(NamesIn(Answer({"accounts", kFile, "--free"}).at("accounts")),
              ElementsAre("Checking", "Due from Cedar", "Due to Cedar", "Old Rent", "Utilities"));
}

TEST_F(Books, FreeAccountsForAPartnerKeepThatPartnersOwn) {
  RelateBirch();

  EXPECT_THAT(NamesIn(Answer({"accounts", kFile, "--free", "--for", "1001"}).at("accounts")),
              ElementsAre("Checking", "Due from Birch", "Due from Cedar", "Due to Birch", "Due to Cedar", "Old Rent",
                          "Utilities"));
}

TEST_F(Books, ARealmIdThatIsTooLongIsRefusedBeforeFreeAccountsAreLookedFor) {
  const Outcome outcome = Run({"accounts", kFile, "--free", "--for", "12345678901234567890"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("12345678901234567890"));
}

TEST_F(Books, APartnerWithoutFreeIsAUsageError) {
  EXPECT_EQ(Run({"accounts", kFile, "--for", "1001"}).exitCode, 2);
}

TEST_F(Books, AccountsOfATypeAreNotListedWhileTheFeatureIsOff) {
  WriteFile("alder.company.remote.toml", "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  const Json error = ErrorOf({"accounts", kFile, "--type", "Bank"});

  EXPECT_EQ(error.at("status"), 2);
  EXPECT_EQ(error.at("exit"), 1);
}

TEST_F(Books, NamesAreListedWithTheirKinds) {
  const Json names = Answer({"names", kFile}).at("names");

  EXPECT_THAT(NamesIn(names), ElementsAre("Northern Power", "Walker", "Walker:Depot"));
  EXPECT_EQ(names[0].at("kind"), "vendor");
  EXPECT_EQ(names[2].at("kind"), "customer");
}

TEST_F(EmptyDirectory, ACompanyWithoutNamesSaysSo) {
  Done({"init", kFile, "--name", "Alder"});

  EXPECT_EQ(Run({"names", kFile}).out, "No names.\n");
}
