#include <gtest/gtest.h>

#include "standalone/values/Unicode.h"

namespace standalone {
namespace {

TEST(TheCellsOfAText, AreOneForEachLetterOfEurope) {
  EXPECT_EQ(CellsIn("Rent"), 4U);
  EXPECT_EQ(CellsIn("Caf\u00e9"), 4U);
  EXPECT_EQ(CellsIn("\u0411\u0435\u0440\u0451\u0437\u0430"), 6U);
  EXPECT_EQ(CellsIn(""), 0U);
}

TEST(TheCellsOfAText, DoNotCountAccentsThatStandOnLetters) {
  EXPECT_EQ(CellsIn("Cafe\u0301"), 4U);
  EXPECT_EQ(CellsIn("\u0915\u094d\u0937"), 2U);
}

TEST(TheCellsOfAText, AreTwoForEachWideCharacter) {
  EXPECT_EQ(CellsIn("\u65e5\u672c"), 4U);
  EXPECT_EQ(CellsIn("\uac00"), 2U);
  EXPECT_EQ(CellsIn("\u1100\u1161\u11a8"), 2U);
  EXPECT_EQ(CellsIn("\uff21"), 2U);
  EXPECT_EQ(CellsIn("\U0001F600"), 2U);
}

TEST(TheCellsOfAText, CountTheVisibleAmongTheFormatCharacters) {
  EXPECT_EQ(CellsIn("co\u00adop"), 5U);
  EXPECT_EQ(CellsIn("\u0600\u0661"), 2U);
  EXPECT_EQ(CellsIn("a\u200bb"), 2U);
}

TEST(TheCellsOfAText, AreOneForAByteThatIsNoText) {
  EXPECT_EQ(CellsIn("Caf\xE9"), 4U);
}

TEST(TheCellsOfACharacter, AreKnownUpToTheLastOne) {
  EXPECT_EQ(CellsOf(0x02FF), 1U);
  EXPECT_EQ(CellsOf(0x0300), 0U);
  EXPECT_EQ(CellsOf(0x10FFFF), 1U);
  EXPECT_EQ(CellsOf(0x3FFFD), 2U);
}

TEST(TheFoldedForm, IsOneForCapitalsAndSmallLettersOfAllScripts) {
  EXPECT_EQ(FoldedForm("Utilities:POWER"), "utilities:power");
  EXPECT_EQ(FoldedForm("CAF\u00c9"), FoldedForm("caf\u00e9"));
  EXPECT_EQ(FoldedForm("\u0411\u0415\u0420\u0401\u0417\u0410"), FoldedForm("\u0431\u0435\u0440\u0451\u0437\u0430"));
  EXPECT_EQ(FoldedForm("Stra\u00dfe"), "strasse");
  EXPECT_EQ(FoldedForm("\u212aiwi"), "kiwi");
  EXPECT_EQ(FoldedForm("\U00010400"), FoldedForm("\U00010428"));
}

TEST(TheFoldedForm, IsOneForAnAccentedLetterAndForLetterAndAccent) {
  EXPECT_EQ(FoldedForm("Caf\u00e9"), FoldedForm("Cafe\u0301"));
  EXPECT_EQ(FoldedForm("\u1ec7"), FoldedForm("e\u0302\u0323"));
  EXPECT_EQ(FoldedForm("e\u0323\u0302"), FoldedForm("e\u0302\u0323"));
  EXPECT_EQ(FoldedForm("\u212b"), FoldedForm("A\u030a"));
  EXPECT_EQ(FoldedForm("\ud55c"), FoldedForm("\u1112\u1161\u11ab"));
  EXPECT_EQ(FoldedForm("\uac00"), FoldedForm("\u1100\u1161"));
  EXPECT_EQ(FoldedForm("\u03b1\u0345\u0301"), FoldedForm("\u1fb4"));
}

TEST(TheFoldedForm, IsOneForLettersAndBlanksInAnotherFormThatReadTheSame) {
  EXPECT_EQ(FoldedForm("\uff32\uff45\uff4e\uff54"), "rent");
  EXPECT_EQ(FoldedForm("Office\u00a0Rent"), "office rent");
  EXPECT_EQ(FoldedForm("O\ufb03ce"), "office");
  EXPECT_EQ(FoldedForm("\uff76\uff9e"), FoldedForm("\u30ac"));
  EXPECT_EQ(FoldedForm("\ufe8e"), FoldedForm("\u0627"));
}

TEST(TheFoldedForm, IsOneWithAndWithoutWhatNobodySees) {
  EXPECT_EQ(FoldedForm("Re\u200bnt\ufeff"), "rent");
  EXPECT_EQ(FoldedForm("Re\u00adnt"), "rent");
  EXPECT_NE(FoldedForm("\u06001"), "1");
}

TEST(TheFoldedForm, IsAnotherOneForWhatReadsAnotherWay) {
  EXPECT_NE(FoldedForm("Caf\u00e9"), FoldedForm("Cafe"));
  EXPECT_NE(FoldedForm("e\u0301\u0302"), FoldedForm("e\u0302\u0301"));
  EXPECT_NE(FoldedForm("\u2460"), FoldedForm("1"));
  EXPECT_NE(FoldedForm("Caf\xE9"), FoldedForm("Caf\u00e9"));
}

}  // namespace
}  // namespace standalone
