#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "standalone/export/JournalTexts.h"

namespace standalone {
namespace {

TEST(AnAccountOfAJournal, StandsAsItIsWhereverThatIsReadAsItIs) {
  for (const char* const name :
       {"Utilities:Water & Power", "1000 Checking", "Rent (office)", "VAT 19%", "100% A", "Due to \"Birch\", Inc.",
        "Fees = 5 @ 2", "Dépôt – Zürich", "Sales|West", "checks", "Equity:check this", "#1"}) {
    EXPECT_EQ(AccountText(name), name);
  }
}

TEST(AnAccountOfAJournal, NeverBeginsLikeAMarkOrAPostingThatDoesNotCount) {
  EXPECT_EQ(AccountText("*Rent"), "%2ARent");
  EXPECT_EQ(AccountText("! Rent"), "%21 Rent");
  EXPECT_EQ(AccountText("(Rent)"), "%28Rent)");
  EXPECT_EQ(AccountText("[Rent]"), "%5BRent]");
  EXPECT_EQ(AccountText("<Rent>"), "%3CRent>");
  EXPECT_EQ(AccountText("check in"), "%63heck in");
  EXPECT_EQ(AccountText("assert it"), "%61ssert it");
  EXPECT_EQ(AccountText("expr x"), "%65xpr x");
}

TEST(AnAccountOfAJournal, NeverBeginsAComment) {
  EXPECT_EQ(AccountText("; Rent;"), "%3B Rent%3B");
}

TEST(AnAccountOfAJournal, HasNoTwoBlanksAndNoneAtAnEnd) {
  EXPECT_EQ(AccountText(" Rent   here "), "%20Rent %20%20here%20");
}

TEST(AnAccountOfAJournal, HasNoBlanksOfOtherScriptsAndNothingThatSteersAScreen) {
  EXPECT_EQ(AccountText("a\u00a0b\u2003c\u3000d\u1680e\u202ff\u205fg"),
            "a%C2%A0b%E2%80%83c%E3%80%80d%E1%9A%80e%E2%80%AFf%E2%81%9Fg");
  EXPECT_EQ(AccountText("a\tb\nc\u202e\xff"), "a%09b%0Ac%E2%80%AE%FF");
}

TEST(AnAccountOfAJournal, IsNeverWrittenLikeAnotherOne) {
  const std::vector<std::string> names{"*Rent", "%2ARent", "%252ARent", "%25", "%", "%%2A", "%2a", "Old (deleted #3)"};
  std::set<std::string> written;

  for (const std::string& name : names) written.insert(AccountText(name));
  written.insert(DeletedAccountText("Old", 3));
  written.insert(DeletedAccountText("Old", 4));

  EXPECT_EQ(written.size(), names.size() + 2);
  EXPECT_EQ(AccountText("%2ARent"), "%252ARent");
  EXPECT_EQ(DeletedAccountText("Old", 3), "Old (deleted #3)");
}

TEST(ACodeOfAJournal, HasNoParentheses) {
  EXPECT_EQ(CodeText("INV (2) ;"), "INV %282%29 %3B");
}

TEST(ADescriptionOfAJournal, PartsWhoIsPaidFromWhatFor) {
  EXPECT_EQ(DescriptionText("Northern | Power", "March | April; all: 5, [2]"),
            "Northern %7C Power | March | April%3B all: 5, [2]");
  EXPECT_EQ(DescriptionText("Northern Power", ""), "Northern Power");
  EXPECT_EQ(DescriptionText("", "Opening"), "| Opening");
  EXPECT_EQ(DescriptionText("", ""), "");
}

TEST(ACommentOfAJournal, HoldsNoTagAndNoDate) {
  EXPECT_EQ(CommentText("date: 12, [2024-01-01]"), "date%3A 12, %5B2024-01-01]");
}

TEST(ATagOfAJournal, DoesNotEndBeforeItsValueDoes) {
  EXPECT_EQ(TagText("Birch, Inc.: [1]"), "Birch%2C Inc.: %5B1]");
}

}  // namespace
}  // namespace standalone
