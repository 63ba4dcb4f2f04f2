// What tells without opening a company that there may be letters to carry for it.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "standalone/desk/Arriving.h"
#include "tests/support/TemporaryFolder.h"

namespace desk {
namespace {

using standalone::WriteFile;

const std::vector<std::string> kAddresses{"0123456789abcdef", "fedcba9876543210"};

TEST(AFileInAPartnersFolder, IsALetterForEachAddressOfTheCompany) {
  for (const std::string& address : kAddresses) {
    EXPECT_TRUE(IsLetterFor(kAddresses, address + "-019e8269.envelope")) << address;
  }
}

TEST(AFileInAPartnersFolder, IsALetterWhateverHasMadeItsNameOfCapitals) {
  EXPECT_TRUE(IsLetterFor(kAddresses, "0123456789ABCDEF-019E8269.ENVELOPE"));
}

TEST(AFileInAPartnersFolder, IsNoLetterForTheCompanyIfItIsAnothersOrADraftOrOfAnotherKind) {
  for (const char* const name : {
           "00112233445566ff-019e8269.envelope",
           "0123456789abcdef0-019e8269.envelope",
           "0123456789abcdef.envelope",
           ".0123456789abcdef-019e8269.envelope.tmp",
           "0123456789abcdef-019e8269.txt",
           "0123456789abcdef",
           "set-aside",
           "",
       }) {
    EXPECT_FALSE(IsLetterFor(kAddresses, name)) << name;
  }
}

TEST(AFileInAPartnersFolder, IsNoLetterForACompanyWithoutAnAddress) {
  EXPECT_FALSE(IsLetterFor({}, "0123456789abcdef-019e8269.envelope"));
}

// Books of which only the files matter.
class TheFilesOfTheBooks : public testing::Test {
 protected:
  TheFilesOfTheBooks() { WriteFile(books_, "books"); }

  // A disk may tell the same time of two writings that follow each other.
  static void Age(const std::filesystem::path& file) {
    std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) - std::chrono::hours(1));
  }

  const standalone::TemporaryFolder folder_;
  const std::filesystem::path books_ = folder_ / "alder.company";
  const std::filesystem::path log_ = folder_ / "alder.company-wal";
};

TEST_F(TheFilesOfTheBooks, AreAsTheyWereAsLongAsNobodyWrites) {
  WriteFile(log_, "log");

  const BooksWritten before = BooksWrittenOf(books_);

  EXPECT_EQ(BooksWrittenOf(books_), before);
}

TEST_F(TheFilesOfTheBooks, AreOthersOnceTheLogGrows) {
  const BooksWritten without = BooksWrittenOf(books_);

  WriteFile(log_, "log");
  const BooksWritten with = BooksWrittenOf(books_);
  WriteFile(log_, "longer log");

  EXPECT_NE(with, without);
  EXPECT_NE(BooksWrittenOf(books_), with);
}

TEST_F(TheFilesOfTheBooks, AreOthersOnceOneIsWrittenAtTheSameLength) {
  Age(books_);
  const BooksWritten before = BooksWrittenOf(books_);

  WriteFile(books_, "BOOKS");

  EXPECT_NE(BooksWrittenOf(books_), before);
}

TEST_F(TheFilesOfTheBooks, AreTheSameForAnEmptyLogThatComesAndGoes) {
  const BooksWritten before = BooksWrittenOf(books_);

  WriteFile(log_, "");
  const BooksWritten withEmptyLog = BooksWrittenOf(books_);
  std::filesystem::remove(log_);

  EXPECT_EQ(withEmptyLog, before);
  EXPECT_EQ(BooksWrittenOf(books_), before);
}

TEST_F(TheFilesOfTheBooks, AreNoticedWhenTheyComeAndWhenTheyGo) {
  const BooksWritten there = BooksWrittenOf(books_);

  std::filesystem::remove(books_);
  const BooksWritten gone = BooksWrittenOf(books_);

  EXPECT_NE(gone, there);
  EXPECT_EQ(BooksWrittenOf(folder_ / "no-folder" / "none.company"), gone);
}

TEST_F(TheFilesOfTheBooks, LieInTheFolderInWhichTheCompanyIsNamed) {
  EXPECT_EQ(FolderOfBooks(books_), books_.parent_path());
}

TEST_F(TheFilesOfTheBooks, AreThoseToWhichALinkLeads) {
  std::filesystem::create_directory(folder_ / "desktop");
  const std::filesystem::path link = folder_ / "desktop" / "link.company";
  std::error_code error;
  std::filesystem::create_symlink(books_, link, error);
  if (error) GTEST_SKIP() << "no link can be made here: " << error.message();
  const BooksWritten before = BooksWrittenOf(link);

  WriteFile(log_, "log");

  EXPECT_NE(BooksWrittenOf(link), before);
  EXPECT_EQ(BooksWrittenOf(link), BooksWrittenOf(books_));
  EXPECT_TRUE(std::filesystem::equivalent(FolderOfBooks(link), books_.parent_path()));
}

}  // namespace
}  // namespace desk
