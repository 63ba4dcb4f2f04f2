#include "standalone/reports/Register.h"
#include "tests/reports/LedgerFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;

class TheRegister : public LedgerFixture {
 protected:
  struct Entry {
    std::int32_t txnId = 0;
    std::int32_t otherAccountId = 0;
    std::int64_t amount = 0;
    std::int64_t balance = 0;
    friend bool operator==(const Entry&, const Entry&) = default;
    friend void PrintTo(const Entry& entry, std::ostream* out) {
      *out << entry.txnId << ": " << entry.amount << " against " << entry.otherAccountId << " makes " << entry.balance;
    }
  };

  std::vector<Entry> Read(const RegisterQuery& query) {
    std::vector<Entry> entries;
    closing_ = ReadRegister(Ledger(), query, OpeningBalance(Ledger(), query),
                            [&](const RegisterLine& line, std::int64_t balance) {
                              entries.push_back({line.txnId, line.otherAccountId, line.amount, balance});
                            });
    return entries;
  }

  std::int64_t closing_ = 0;
  const std::int32_t bank_ = AddAccount("Bank");
  const std::int32_t utilities_ = AddAccount("Utilities");
  const std::int32_t power_ = AddAccount("Utilities:Power");
  const std::int32_t night_ = AddAccount("Utilities:Power:Night");
};

TEST_F(TheRegister, ComesByDateWithTheBalanceAfterEachLine) {
  const std::int32_t later = Post({2025, 1, 3}, {{bank_, -30}, {power_, 30}});
  const std::int32_t earlier = Post({2025, 1, 1}, {{bank_, -10}, {power_, 10}});
  const std::int32_t sameDay = Post({2025, 1, 3}, {{bank_, 5}, {power_, -5}});

  const std::vector<Entry> entries = Read({.accountId = bank_, .withSubAccounts = false, .days = {}});

  EXPECT_THAT(entries, ElementsAre(Entry{earlier, power_, -10, -10}, Entry{later, power_, -30, -40},
                                   Entry{sameDay, power_, 5, -35}));
  EXPECT_EQ(closing_, -35);
}

TEST_F(TheRegister, OfAPeriodOpensWithWhatCameBefore) {
  for (int day = 1; day <= 4; ++day) Post({2025, 1, day}, {{bank_, -day}, {power_, day}});

  const std::vector<Entry> entries =
      Read({.accountId = power_, .withSubAccounts = false, .days = {.from = {2025, 1, 3}, .to = {2025, 1, 3}}});

  EXPECT_THAT(entries, ElementsAre(Entry{3, bank_, 3, 6}));
  EXPECT_EQ(closing_, 6);
}

TEST_F(TheRegister, OfAPeriodWithoutLinesClosesAsItOpens) {
  Post({2025, 1, 1}, {{bank_, -7}, {power_, 7}});

  const std::vector<Entry> entries =
      Read({.accountId = power_, .withSubAccounts = false, .days = {.from = {2025, 2, 1}, .to = NullDate()}});

  EXPECT_TRUE(entries.empty());
  EXPECT_EQ(closing_, 7);
}

TEST_F(TheRegister, NamesNoOtherAccountWhenThereAreSeveral) {
  const std::int32_t split = Post({2025, 1, 1}, {{bank_, -10}, {power_, 4}, {night_, 6}});
  const std::int32_t twice = Post({2025, 1, 2}, {{bank_, -10}, {power_, 4}, {power_, 6}});

  EXPECT_THAT(Read({.accountId = bank_, .withSubAccounts = false, .days = {}}),
              ElementsAre(Entry{split, 0, -10, -10}, Entry{twice, power_, -10, -20}));
}

TEST_F(TheRegister, HasTheAccountsBelowOnRequestOnly) {
  const std::int32_t own = Post({2025, 1, 1}, {{bank_, -1}, {utilities_, 1}});
  const std::int32_t below = Post({2025, 1, 2}, {{bank_, -2}, {night_, 2}});

  EXPECT_THAT(Read({.accountId = utilities_, .withSubAccounts = false, .days = {}}),
              ElementsAre(Entry{own, bank_, 1, 1}));
  EXPECT_THAT(Read({.accountId = utilities_, .withSubAccounts = true, .days = {}}),
              ElementsAre(Entry{own, bank_, 1, 1}, Entry{below, bank_, 2, 3}));
}

TEST_F(TheRegister, OpensWithTheAccountsBelowOnRequest) {
  Post({2025, 1, 2}, {{bank_, -2}, {night_, 2}});
  RegisterQuery query{.accountId = utilities_, .withSubAccounts = false, .days = {.from = {2025, 2, 1}, .to = {}}};

  EXPECT_EQ(OpeningBalance(Ledger(), query), 0);
  query.withSubAccounts = true;
  EXPECT_EQ(OpeningBalance(Ledger(), query), 2);
}

TEST_F(TheRegister, CountsPostedTransactionsOnly) {
  Enter({2025, 1, 1}, {{bank_, -600}, {power_, 600}});

  EXPECT_TRUE(Read({.accountId = bank_, .withSubAccounts = false, .days = {}}).empty());
  EXPECT_EQ(OpeningBalance(Ledger(), {.accountId = bank_, .withSubAccounts = false, .days = {{2026, 1, 1}, {}}}), 0);
}

TEST_F(TheRegister, OfAnyBooksClosesWithWhatTheAccountHolds) {
  PostAtRandom({bank_, utilities_, power_, night_}, 20250202);

  for (const std::int32_t account : {bank_, utilities_, power_, night_}) {
    for (const bool withSubAccounts : {false, true}) {
      for (int month = 1; month <= 12; ++month) {
        Read({.accountId = account,
              .withSubAccounts = withSubAccounts,
              .days = {.from = {2025, month, 10}, .to = {2025, 12, 11}}});

        EXPECT_EQ(closing_, Ledger().SumOf(account, withSubAccounts, {.from = {}, .to = {2025, 12, 11}}));
      }
    }
  }
}

}  // namespace
}  // namespace standalone
