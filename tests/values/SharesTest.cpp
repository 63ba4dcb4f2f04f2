#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <string>

#include "standalone/values/Amount.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Shares.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using Why = SplitFault::Why;
using Amounts = std::vector<std::int64_t>;

std::string ReasonAgainst(std::string_view text) {
  try {
    RequireShare(text);
  } catch (const InvalidInput& refused) {
    return refused.what();
  }
  ADD_FAILURE() << text << " was accepted";
  return {};
}

std::optional<Fraction> Read(std::string_view text) {
  return FractionOf(ShareText(text));
}

TEST(AShare, IsWrittenAsAPercentageAFractionOrAnAmount) {
  EXPECT_EQ(Read("50%"), (Fraction{50, 100}));
  EXPECT_EQ(Read("33.33%"), (Fraction{3333, 10'000}));
  EXPECT_EQ(Read("0.000001%"), (Fraction{1, 100'000'000}));
  EXPECT_EQ(Read("100%"), (Fraction{100, 100}));
  EXPECT_EQ(Read("1/3"), (Fraction{1, 3}));
  EXPECT_EQ(Read("999999/999999"), (Fraction{999'999, 999'999}));
  EXPECT_EQ(Read("120.00"), std::nullopt);
  EXPECT_EQ(Read("-1,200.5"), std::nullopt);
}

TEST(AShare, IsRefusedWhenItIsNoneOfThese) {
  for (const char* const none :
       {"",     "%",           "/",   "half", "50 %", "+50%",     "1/0",       "1/-3", "-1/0", "1/3/3",
        "1/3%", "33.3333333%", ".5%", "5.%",  "1,5%", "1234567%", "1/1000000", "1e1%", "0x1%", "--5%"}) {
    EXPECT_EQ(ReasonAgainst(none), "share \"" + std::string(none) +
                                       "\" is not acceptable; write a percentage like 50% or 33.333333%, a fraction "
                                       "like 1/3, or an amount like 120.00");
  }
}

TEST(AShare, OfWhatIsCreditedIsAnAmount) {
  for (const char* const belowZero : {"-50%", "-1/3"}) {
    EXPECT_EQ(ReasonAgainst(belowZero), "share \"" + std::string(belowZero) +
                                            "\" is below zero, and percentages and fractions are of what is debited; "
                                            "give what a partner bears of what an entry credits as an amount like "
                                            "-120.00");
  }
}

TEST(AShare, IsMoreThanNothingAndNoMoreThanTheWhole) {
  for (const char* const none : {"0%", "0.000%", "0/7"})
    EXPECT_THAT(ReasonAgainst(none), testing::HasSubstr("nothing"));
  for (const char* const more : {"100.000001%", "101%", "8/7"}) {
    EXPECT_THAT(ReasonAgainst(more), testing::HasSubstr("more than the whole"));
  }
}

Split Done(const Amounts& lines, const std::vector<Share>& shares) {
  return std::get<Split>(SplitAmong(lines, shares));
}

SplitFault Fault(const Amounts& lines, const std::vector<Share>& shares) {
  return std::get<SplitFault>(SplitAmong(lines, shares));
}

TEST(ASplit, TakesFractionsAndAmountsOutOfTheWhole) {
  const Split split = Done({96'000}, {Fraction{1, 2}, std::int64_t{10'000}});

  EXPECT_THAT(split.partners, ElementsAre(48'000, 10'000));
  EXPECT_THAT(split.own, ElementsAre(38'000));
}

TEST(ASplit, GivesTheMinorUnitsThatRoundingLeavesToWhoLosesMostAndTheFirstAmongEquals) {
  EXPECT_THAT(Done({100}, {Fraction{1, 3}, Fraction{1, 3}, Fraction{1, 3}}).partners, ElementsAre(34, 33, 33));
  EXPECT_THAT(Done({1'000}, {Fraction{1, 7}, Fraction{2, 7}, Fraction{4, 7}}).partners, ElementsAre(143, 286, 571));
  EXPECT_THAT(Done({101}, {Fraction{10, 100}, Fraction{45, 100}, Fraction{45, 100}}).partners, ElementsAre(10, 46, 45));
}

TEST(ASplit, RoundsAllFractionsTogetherHalfAwayFromZero) {
  EXPECT_THAT(Done({5}, {Fraction{1, 2}}).partners, ElementsAre(3));
  EXPECT_THAT(Done({-5}, {Fraction{1, 2}}).partners, ElementsAre(-3));
  EXPECT_THAT(Done({100}, {Fraction{1, 3}, Fraction{1, 3}}).partners, ElementsAre(34, 33));
  EXPECT_THAT(Done({10}, {Fraction{1, 4}, Fraction{1, 4}}).partners, ElementsAre(3, 2));
}

TEST(ASplit, NeverTakesMoreThanAmountsLeave) {
  const Split split = Done({101}, {std::int64_t{50}, Fraction{1, 2}});

  EXPECT_THAT(split.partners, ElementsAre(50, 51));
  EXPECT_THAT(split.own, ElementsAre(0));
}

TEST(ASplit, SpreadsWhatIsLeftOverTheLinesAsTheyAreToEachOther) {
  EXPECT_THAT(Done({6'000, 3'000, 1'000}, {Fraction{1, 2}}).own, ElementsAre(3'000, 1'500, 500));
  EXPECT_THAT(Done({10'000, -2'000}, {Fraction{1, 2}}).own, ElementsAre(5'000, -1'000));
  EXPECT_THAT(Done({1, 1, 1}, {Fraction{1, 3}}).own, ElementsAre(1, 1, 0));
  EXPECT_THAT(Done({-1, -1, -1}, {Fraction{1, 3}}).own, ElementsAre(-1, -1, 0));
}

TEST(ASplit, LeavesTheLinesAsTheyAreWithoutShares) {
  EXPECT_THAT(Done({7, -7}, {}).own, ElementsAre(7, -7));
}

TEST(ASplit, LeavesNothingWhenPartnersBearAll) {
  EXPECT_THAT(Done({70, 31}, {Fraction{100, 100}}).own, ElementsAre(0, 0));
  EXPECT_THAT(Done({70, 31}, {std::int64_t{101}}).own, ElementsAre(0, 0));
}

TEST(ASplit, OfTheLargestAmountIsExact) {
  const Split split = Done({kLargestAmount}, {Fraction{999'998, 999'999}, Fraction{1, 999'999}});

  EXPECT_THAT(split.partners, ElementsAre(9'999'989'999'989, 10'000'010));
  EXPECT_THAT(split.own, ElementsAre(0));
}

TEST(ASplit, IsRefusedForTheFirstShareThatCannotBe) {
  EXPECT_EQ(Fault({5, -5}, {Fraction{1, 2}}), (SplitFault{Why::kOfNothing, 0}));
  EXPECT_EQ(Fault({100}, {Fraction{1, 2}, std::int64_t{-1}}), (SplitFault{Why::kOtherSign, 1}));
  EXPECT_EQ(Fault({-100}, {std::int64_t{1}}), (SplitFault{Why::kOtherSign, 0}));
  EXPECT_EQ(Fault({100}, {Fraction{1, 2}, std::int64_t{51}}), (SplitFault{Why::kBeyondTheWhole, 1}));
  EXPECT_EQ(Fault({101}, {std::int64_t{51}, Fraction{1, 2}}), (SplitFault{Why::kBeyondTheWhole, 1}));
  EXPECT_EQ(Fault({100}, {Fraction{2, 3}, Fraction{2, 5}}), (SplitFault{Why::kBeyondTheWhole, 1}));
  EXPECT_EQ(Fault({100}, {Fraction{1, 2}, Fraction{1, 201}}), (SplitFault{Why::kNothing, 1}));
  EXPECT_EQ(Fault({100}, {std::int64_t{0}}), (SplitFault{Why::kNothing, 0}));
}

TEST(ASplit, IsRefusedWhenItsFractionsHaveNoDenominatorToReckonWith) {
  const std::vector<Share> primes{Fraction{1, 999'983}, Fraction{1, 999'979}, Fraction{1, 999'961},
                                  Fraction{1, 999'959}};

  EXPECT_EQ(Fault({kLargestAmount}, primes), (SplitFault{Why::kTooFine, 3}));
}

// Of a bill of some lines, shared with some partners. The numbers are small enough to check them in 64 bits.
struct AnyBill {
  Amounts lines;
  std::vector<Share> shares;
};

class AnyBills {
 public:
  AnyBill Next() {
    AnyBill bill;
    const auto lines = Between(1, 6);
    for (std::int64_t i = 0; i < lines; ++i) bill.lines.push_back(Between(-kLarge / 4, kLarge));
    const std::int64_t whole = std::accumulate(bill.lines.begin(), bill.lines.end(), std::int64_t{0});
    const auto shares = Between(0, 4);
    for (std::int64_t i = 0; i < shares; ++i) bill.shares.push_back(AnyShare(whole));
    return bill;
  }

 private:
  static constexpr std::int64_t kLarge = 1'000'000;

  // Not by a distribution of the library, which each system has of its own.
  std::int64_t Between(std::int64_t least, std::int64_t most) {
    return least + static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(most - least + 1));
  }
  Share AnyShare(std::int64_t whole) {
    if (Between(0, 2) == 0) return whole / Between(2, 9);
    const std::int64_t denominator = Between(1, 40);
    return Fraction{.numerator = Between(1, (denominator + 2) / 3), .denominator = denominator};
  }

  std::mt19937_64 random_{20'260'301};
};

constexpr int kBills = 20'000;

// Hands every bill of many that can be split to `check`, with what comes of it; half of them can at least.
void ForManyBills(const std::function<void(const AnyBill& bill, const Split& split)>& check) {
  AnyBills bills;
  int done = 0;
  for (int i = 0; i < kBills && !testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE("bill " + std::to_string(i));
    const AnyBill bill = bills.Next();
    const auto split = SplitAmong(bill.lines, bill.shares);
    if (!std::holds_alternative<Split>(split)) continue;
    check(bill, std::get<Split>(split));
    ++done;
  }
  EXPECT_GT(done, kBills / 2);
}

std::int64_t SumOf(const Amounts& amounts) {
  return std::accumulate(amounts.begin(), amounts.end(), std::int64_t{0});
}

TEST(AnySplit, LosesNoMinorUnit) {
  ForManyBills([](const AnyBill& bill, const Split& split) {
    EXPECT_EQ(SumOf(split.partners) + SumOf(split.own), SumOf(bill.lines));
    EXPECT_EQ(split.own.size(), bill.lines.size());
    EXPECT_EQ(split.partners.size(), bill.shares.size());
  });
}

TEST(AnySplit, IsWithinAMinorUnitOfWhatIsExact) {
  ForManyBills([](const AnyBill& bill, const Split& split) {
    const std::int64_t whole = SumOf(bill.lines);
    for (std::size_t i = 0; i < bill.shares.size(); ++i) {
      if (const auto* const amount = std::get_if<std::int64_t>(&bill.shares[i])) {
        EXPECT_EQ(split.partners[i], *amount);
        continue;
      }
      const auto& fraction = std::get<Fraction>(bill.shares[i]);
      EXPECT_LT(std::abs(split.partners[i] * fraction.denominator - whole * fraction.numerator), fraction.denominator);
    }
    for (std::size_t i = 0; whole != 0 && i < bill.lines.size(); ++i) {
      EXPECT_LT(std::abs(split.own[i] * whole - bill.lines[i] * SumOf(split.own)), std::abs(whole));
    }
  });
}

TEST(AnySplit, GivesEveryPartnerSomethingWithTheSignOfTheWhole) {
  ForManyBills([](const AnyBill& bill, const Split& split) {
    for (const std::int64_t amount : split.partners) EXPECT_GT(amount * (SumOf(bill.lines) < 0 ? -1 : 1), 0);
  });
}

TEST(AnySplit, OfACreditIsThatOfTheBillWithTheOtherSign) {
  ForManyBills([](const AnyBill& bill, const Split& split) {
    AnyBill credit = bill;
    for (std::int64_t& line : credit.lines) line = -line;
    for (Share& share : credit.shares) {
      if (auto* const amount = std::get_if<std::int64_t>(&share)) *amount = -*amount;
    }

    const Split other = Done(credit.lines, credit.shares);

    for (std::size_t i = 0; i < split.partners.size(); ++i) EXPECT_EQ(other.partners[i], -split.partners[i]);
    for (std::size_t i = 0; i < split.own.size(); ++i) EXPECT_EQ(other.own[i], -split.own[i]);
  });
}

}  // namespace
}  // namespace standalone
