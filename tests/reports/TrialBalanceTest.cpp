#include <limits>

#include "standalone/reports/Sum.h"
#include "standalone/reports/TrialBalance.h"
#include "tests/reports/LedgerFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Told {
  std::string account;
  std::size_t level = 0;
  std::int64_t balance = 0;
  std::int64_t own = 0;
  friend bool operator==(const Told&, const Told&) = default;
  friend void PrintTo(const Told& told, std::ostream* out) {
    *out << told.account << " at " << told.level << ": " << told.balance << ", own " << told.own;
  }
};

class TheTrialBalance : public LedgerFixture {
 protected:
  std::vector<Told> Read(const TrialBalanceQuery& query = {}) {
    std::vector<Told> told;
    for (const AccountBalance& line : ReadTrialBalance(Ledger(), query).lines) {
      told.push_back({line.account.fullName, line.level, line.balance, line.own});
    }
    return told;
  }

  const std::int32_t bank_ = AddAccount("Bank");
  const std::int32_t utilities_ = AddAccount("Utilities");
  const std::int32_t power_ = AddAccount("Utilities:Power");
  const std::int32_t night_ = AddAccount("Utilities:Power:Night");
  const std::int32_t works_ = AddAccount("Utilities Works");
  const std::int32_t unused_ = AddAccount("Unused");
};

TEST_F(TheTrialBalance, TellsOfAParentWhatItAndTheAccountsBelowItHold) {
  Post({2025, 1, 1}, {{bank_, -600}, {utilities_, 100}, {power_, 200}, {night_, 300}});
  Post({2025, 1, 2}, {{bank_, -50}, {works_, 50}});

  EXPECT_THAT(Read(), ElementsAre(Told{"Bank", 0, -650, -650}, Told{"Utilities", 0, 600, 100},
                                  Told{"Utilities:Power", 1, 500, 200}, Told{"Utilities:Power:Night", 2, 300, 300},
                                  Told{"Utilities Works", 0, 50, 50}));
}

TEST_F(TheTrialBalance, FoldsTheLevelsBelowItsDepthIntoTheOnesAbove) {
  Post({2025, 1, 1}, {{bank_, -600}, {utilities_, 100}, {power_, 200}, {night_, 300}});

  EXPECT_THAT(Read({.days = {}, .accountId = {}, .depth = 1, .withUnused = false}),
              ElementsAre(Told{"Bank", 0, -600, -600}, Told{"Utilities", 0, 600, 600}));
  EXPECT_THAT(
      Read({.days = {}, .accountId = {}, .depth = 2, .withUnused = false}),
      ElementsAre(Told{"Bank", 0, -600, -600}, Told{"Utilities", 0, 600, 100}, Told{"Utilities:Power", 1, 500, 500}));
}

TEST_F(TheTrialBalance, LeavesOutAccountsWithoutALineUnlessTheyAreAskedFor) {
  Post({2025, 1, 1}, {{bank_, -5}, {night_, 5}});

  EXPECT_EQ(Read().size(), 4U);
  EXPECT_EQ(Read({.days = {}, .accountId = {}, .depth = {}, .withUnused = true}).size(), 6U);
}

TEST_F(TheTrialBalance, KeepsAnAccountWhoseLinesCancelEachOther) {
  Post({2025, 1, 1}, {{bank_, -5}, {works_, 5}});
  Post({2025, 1, 2}, {{bank_, 5}, {works_, -5}});

  EXPECT_THAT(Read(), ElementsAre(Told{"Bank", 0, 0, 0}, Told{"Utilities Works", 0, 0, 0}));
}

TEST_F(TheTrialBalance, OfAPeriodHasWhatBothItsDaysAndThoseBetweenThemHaveChanged) {
  for (int day = 1; day <= 4; ++day) Post({2025, 1, day}, {{bank_, -day}, {works_, day}});

  const auto lines = Read({.days = {.from = {2025, 1, 2}, .to = {2025, 1, 3}}, .accountId = {}, .depth = {}});

  EXPECT_THAT(lines, ElementsAre(Told{"Bank", 0, -5, -5}, Told{"Utilities Works", 0, 5, 5}));
}

TEST_F(TheTrialBalance, OfOneAccountHasItAndThoseBelowIt) {
  Post({2025, 1, 1}, {{bank_, -600}, {utilities_, 100}, {power_, 200}, {night_, 300}});

  EXPECT_THAT(Read({.days = {}, .accountId = power_, .depth = {}}),
              ElementsAre(Told{"Utilities:Power", 0, 500, 200}, Told{"Utilities:Power:Night", 1, 300, 300}));
  EXPECT_THAT(Read({.days = {}, .accountId = unused_, .depth = {}}), ElementsAre(Told{"Unused", 0, 0, 0}));
}

TEST_F(TheTrialBalance, CountsPostedTransactionsOnly) {
  Enter({2025, 1, 1}, {{bank_, -600}, {works_, 600}});

  EXPECT_THAT(Read(), IsEmpty());
}

TEST_F(TheTrialBalance, AddsUpTheAccountsAtTheTop) {
  Post({2025, 1, 1}, {{bank_, -100}, {utilities_, 150}, {power_, -50}});

  const TrialBalance report = ReadTrialBalance(Ledger(), {});

  EXPECT_EQ(report.debits, 100);
  EXPECT_EQ(report.credits, 100);
}

TEST_F(TheTrialBalance, OfAnyBooksBalances) {
  PostAtRandom({bank_, utilities_, power_, night_, works_}, 20250101);

  for (const std::size_t depth : {1U, 2U, 3U}) {
    for (int month = 1; month <= 12; ++month) {
      const TrialBalance report = ReadTrialBalance(
          Ledger(), {.days = {.from = {2025, month, 5}, .to = {2025, 12, 9}}, .accountId = {}, .depth = depth});

      std::int64_t sum = 0;
      for (const AccountBalance& line : report.lines) sum += line.own;
      EXPECT_EQ(sum, 0);
      EXPECT_EQ(report.debits, report.credits);
      EXPECT_GT(report.debits, 0);
    }
  }
}

TEST(ASum, BeyondWhatCanBeCountedIsRefused) {
  std::int64_t sum = std::numeric_limits<std::int64_t>::max();

  EXPECT_THROW(AddTo(sum, 1), std::overflow_error);
}

}  // namespace
}  // namespace standalone
