#include <gtest/gtest.h>

#include <system_error>

#include "platform/DiskFiles.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

using standalone::ReadFile;
using standalone::TemporaryFolder;
using standalone::WriteFile;
using std::filesystem::perms;

constexpr perms kOwner = perms::owner_read | perms::owner_write;

perms RightsOf(const std::filesystem::path& file) {
  return std::filesystem::status(file).permissions();
}

class DiskFiles : public testing::Test {
 protected:
  // On Windows the folder says who may read a file.
  static bool KnowsRights() {
#ifdef _WIN32
    return false;
#else
    return true;
#endif
  }

  const TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_ / "file";
  const std::filesystem::path other_ = folder_ / "other";
};

TEST_F(DiskFiles, AreNotMadeOverOthers) {
  WriteFile(file_, "precious");

  EXPECT_THROW(MakeFile(file_), std::system_error);

  EXPECT_EQ(ReadFile(file_), "precious");
}

TEST_F(DiskFiles, AreMadeForTheirOwnerAndNobodyElse) {
  if (!KnowsRights()) GTEST_SKIP() << "who may read a file is said by its folder";

  MakeFile(file_);

  EXPECT_EQ(RightsOf(file_), kOwner);
}

TEST_F(DiskFiles, TakeTheRightsOfAnother) {
  if (!KnowsRights()) GTEST_SKIP() << "who may read a file is said by its folder";
  WriteFile(other_, "");
  std::filesystem::permissions(other_, kOwner | perms::group_read);
  MakeFile(file_);

  TakeRightsOf(other_, file_);

  EXPECT_EQ(RightsOf(file_), kOwner | perms::group_read);
}

TEST_F(DiskFiles, GetANameThatIsFree) {
  WriteFile(file_, "new");

  EXPECT_TRUE(RenameUnlessTaken(file_, other_));

  EXPECT_EQ(ReadFile(other_), "new");
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(DiskFiles, GetNoNameThatIsTaken) {
  WriteFile(file_, "new");
  WriteFile(other_, "precious");

  EXPECT_FALSE(RenameUnlessTaken(file_, other_));

  EXPECT_EQ(ReadFile(other_), "precious");
  EXPECT_EQ(ReadFile(file_), "new");
}

TEST_F(DiskFiles, GetANameInThePlaceOfTheFileThatHasIt) {
  WriteFile(file_, "new");
  WriteFile(other_, "old");

  RenameOver(file_, other_);

  EXPECT_EQ(ReadFile(other_), "new");
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_THROW(RenameOver(file_, other_), std::system_error);
}

TEST_F(DiskFiles, MayBeWrittenByWhoMadeThem) {
  MakeFile(file_);

  EXPECT_TRUE(MayWrite(file_));
  EXPECT_TRUE(MayMakeFilesIn(folder_ / "."));
}

TEST_F(DiskFiles, HaveStreamsOnWindowsOnly) {
#ifdef _WIN32
  constexpr bool kHaveStreams = true;
#else
  constexpr bool kHaveStreams = false;
#endif

  EXPECT_EQ(NamesAStream("letter:books"), kHaveStreams);
  EXPECT_EQ(NamesAStream("C:\\books\\letter::$DATA"), kHaveStreams);
  EXPECT_EQ(NamesAStream("C:letter:books"), kHaveStreams);
  EXPECT_EQ(NamesAStream(":memory:"), kHaveStreams);
  for (const char* const name :
       {"letter", "C:letter", "C:\\books\\letter", "C:/books/letter", "\\\\?\\C:\\letter", ""}) {
    EXPECT_FALSE(NamesAStream(name)) << name;
  }
}

TEST_F(DiskFiles, LieOnNoReadOnlyMediumWhereTheyWereJustWritten) {
  WriteFile(file_, "");

  EXPECT_FALSE(IsOnReadOnlyMedium(file_));
}

}  // namespace
}  // namespace platform
