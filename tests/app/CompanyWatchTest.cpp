// What has letters of a company carried as soon as there may be some.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "standalone/app/CompanyWatch.h"
#include "tests/support/TemporaryFolder.h"

namespace app {
namespace {

using standalone::WriteFile;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

// That no slow machine needs.
constexpr std::chrono::minutes kLong{2};
// Longer than changes are waited for to come to rest.
constexpr milliseconds kShort{1000};

const std::string kAddress = "0123456789abcdef";

// Both are there before it is watched.
class BooksAndAFolderForLetters : public testing::Test {
 protected:
  BooksAndAFolderForLetters() {
    WriteFile(books_, "books");
    std::filesystem::create_directory(shared_);
  }

  const standalone::TemporaryFolder folder_;
  const std::filesystem::path books_ = folder_ / "alder.company";
  const std::filesystem::path log_ = folder_ / "alder.company-wal";
  const std::filesystem::path shared_ = folder_ / "shared";
};

class ACompanyWatch : public BooksAndAFolderForLetters {
 protected:
  std::string LineOf(const std::filesystem::path& folder) const {
    return PlacesLine({.folders = {folder}, .addresses = {kAddress}});
  }
  // Where letters come to from now on; that there may be some already is none of what a test waits for.
  void LettersComeTo(const std::filesystem::path& folder) {
    watch_.TakePlaces(LineOf(folder));
    watch_.WaitFor(kLong);
  }
  void PutLetter(const std::filesystem::path& folder) {
    WriteFile(folder / (kAddress + "-" + std::to_string(++letters_) + ".envelope"), "letter");
  }
  bool IsWokenWithin(milliseconds longest) {
    const steady_clock::time_point before = steady_clock::now();
    watch_.WaitFor(longest);
    return steady_clock::now() - before < longest;
  }

  int letters_ = 0;
  CompanyWatch watch_{books_};
};

TEST_F(ACompanyWatch, TakesTheLineThatTellsWhereLettersComeToFromWhatARunHasPrinted) {
  EXPECT_EQ(watch_.TakePlaces(LineOf(shared_) + "Birch: took 1 letter\nCarried\n"), "Birch: took 1 letter\nCarried\n");
}

TEST_F(ACompanyWatch, LeavesWhatARunHasPrintedWithoutThatLineAsItIs) {
  for (const std::string printed : {"", "Carried", "Carried\nfor 1 partner\n", "{\"partners\":[]}\n", "{\n"}) {
    EXPECT_EQ(watch_.TakePlaces(printed), printed);
  }
}

TEST_F(ACompanyWatch, IsWokenToLookIntoAFolderOfWhichItLearns) {
  watch_.WaitFor(milliseconds(1));

  watch_.TakePlaces(LineOf(shared_));

  EXPECT_TRUE(IsWokenWithin(kLong));
}

TEST_F(ACompanyWatch, IsWokenByALetter) {
  LettersComeTo(shared_);

  PutLetter(shared_);

  EXPECT_TRUE(IsWokenWithin(kLong));
}

TEST_F(ACompanyWatch, IsWokenByALetterAlsoAfterARunThatDoesNotTellWhereTheyComeTo) {
  LettersComeTo(shared_);
  watch_.TakePlaces("The company file is in use by another program.\n");

  PutLetter(shared_);

  EXPECT_TRUE(IsWokenWithin(kLong));
}

TEST_F(ACompanyWatch, IsNotWokenByLettersToOthersNorByTheirDrafts) {
  LettersComeTo(shared_);

  WriteFile(shared_ / "00112233445566ff-1.envelope", "letter");
  WriteFile(shared_ / ("." + kAddress + "-1.envelope.tmp"), "letter");

  EXPECT_FALSE(IsWokenWithin(kShort));
}

TEST_F(ACompanyWatch, IsNotWokenWhereLettersComeToNoMore) {
  const std::filesystem::path other = folder_ / "other";
  std::filesystem::create_directory(other);
  LettersComeTo(shared_);
  LettersComeTo(other);

  PutLetter(shared_);

  EXPECT_FALSE(IsWokenWithin(kShort));
}

TEST_F(ACompanyWatch, IsWokenOnceTheBooksAreWritten) {
  WriteFile(log_, "an entry");

  EXPECT_TRUE(IsWokenWithin(kLong));
}

TEST_F(ACompanyWatch, IsNotWokenByWhatARunItselfHasWritten) {
  WriteFile(log_, "an answer");
  watch_.NoteBooks();

  EXPECT_FALSE(IsWokenWithin(kShort));
}

TEST_F(ACompanyWatch, IsNotWokenByWhatElseLiesBesideTheBooks) {
  WriteFile(folder_ / "alder.company.log", "a line");
  WriteFile(log_, "");

  EXPECT_FALSE(IsWokenWithin(kShort));
}

// Ten in a row, and then two seconds apart.
TEST_F(ACompanyWatch, IsWokenByManyChangesInARowEveryFewSecondsOnly) {
  LettersComeTo(shared_);
  const steady_clock::time_point before = steady_clock::now();

  for (int i = 0; i < 12; ++i) {
    PutLetter(shared_);
    ASSERT_TRUE(IsWokenWithin(kLong));
  }

  EXPECT_GE(steady_clock::now() - before, std::chrono::seconds(4));
}

TEST_F(ACompanyWatch, WaitsNoLongerOnceItIsEnded) {
  LettersComeTo(shared_);
  const std::jthread other([this] { watch_.End(); });

  EXPECT_TRUE(IsWokenWithin(kLong));
  EXPECT_TRUE(IsWokenWithin(kLong));
}

}  // namespace
}  // namespace app
