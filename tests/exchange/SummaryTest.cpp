#include <gtest/gtest.h>

#include <algorithm>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Summary.h"

namespace exchange {
namespace {

using HashList = std::vector<Hash>;

std::vector<Hash> Hashes(std::initializer_list<const char*> texts) {
  std::vector<Hash> hashes;
  for (const char* const text : texts) hashes.push_back(HashOf(text));
  std::ranges::sort(hashes);
  return hashes;
}

TEST(ASummary, OfNoFactsIsThatOfNothing) {
  EXPECT_EQ(SummaryOf({}).Text(), "0 e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(ASummary, IsTheDigestOfTheHashesInTheirOrder) {
  const HashList hashes = Hashes({"a", "b"});
  const Hash digest = HashOf(std::string(hashes[0].Bytes()) + std::string(hashes[1].Bytes()));

  EXPECT_EQ(SummaryOf(hashes), (Summary{.count = 2, .digest = digest}));
  EXPECT_NE(SummaryOf(Hashes({"a", "c"})), SummaryOf(hashes));
}

TEST(ASummary, IsNotMadeOfHashesThatDoNotAscend) {
  const HashList hashes = Hashes({"a", "b"});

  EXPECT_THROW(SummaryOf({hashes[1], hashes[0]}), std::invalid_argument);
  EXPECT_THROW(SummaryOf({hashes[0], hashes[0]}), std::invalid_argument);
}

TEST(ASummary, IsReadAsItIsWritten) {
  const Summary summary = SummaryOf(Hashes({"a", "b", "c"}));
  const Summary largest{.count = kMostFacts, .digest = summary.digest};

  EXPECT_EQ(Summary::FromText(summary.Text()), summary);
  EXPECT_EQ(Summary::FromText(largest.Text()), largest);
}

TEST(ASummary, IsNotReadFromAnotherForm) {
  const std::string digest(64, 'a');

  for (const std::string& text :
       {std::string(), digest, " " + digest, "1" + digest, "01 " + digest, "-1 " + digest, "+1 " + digest,
        "1  " + digest, "1 " + digest + " ", std::string("1 "), std::string("1"), "1000000000000 " + digest,
        "99999999999999999999 " + digest, "1 " + std::string(64, 'A')}) {
    EXPECT_THROW(Summary::FromText(text), Malformed) << text;
  }
}

TEST(TheMonthsThatDiffer, AreThoseOfOtherFactsAndThoseThatOneOfTheTwoLacks) {
  const Summary one = SummaryOf(Hashes({"a"}));
  const Summary other = SummaryOf(Hashes({"b"}));
  const Months ours{{"", one}, {"2026-09", one}, {"2026-10", one}, {"2026-11", one}};
  const Months theirs{{"", one}, {"2026-08", one}, {"2026-10", other}, {"2026-11", one}};

  EXPECT_EQ(MonthsThatDiffer(ours, theirs), (std::vector<std::string>{"2026-08", "2026-09", "2026-10"}));
  EXPECT_EQ(MonthsThatDiffer(theirs, ours), MonthsThatDiffer(ours, theirs));
}

TEST(TheMonthsThatDiffer, AreNoneWhenBothHoldTheSame) {
  const Months months{{"", SummaryOf({})}, {"2026-11", SummaryOf(Hashes({"a"}))}};

  EXPECT_TRUE(MonthsThatDiffer(months, months).empty());
  EXPECT_TRUE(MonthsThatDiffer({}, {}).empty());
}

TEST(WhatTheirListLacks, IsOursWithoutTheirs) {
  const HashList ours = Hashes({"a", "b", "c"});
  const HashList theirs = Hashes({"b", "d"});

  EXPECT_EQ(Lacking(theirs, ours), Hashes({"a", "c"}));
  EXPECT_EQ(Lacking(ours, theirs), Hashes({"d"}));
  EXPECT_EQ(Lacking({}, ours), ours);
  EXPECT_TRUE(Lacking(ours, {}).empty());
}

}  // namespace
}  // namespace exchange
