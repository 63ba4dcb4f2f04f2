#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <system_error>

#include "platform/SharedFile.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

class ASharedFile : public testing::Test {
 protected:
  const standalone::TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "shared";
  const std::filesystem::path other_ = folder_ / "renamed";
};

TEST_F(ASharedFile, HasWhatAllHaveAppendedInTheirOrder) {
  SharedFile one = SharedFile::OpenToAppend(path_);
  SharedFile other = SharedFile::OpenToAppend(path_);

  one.Append("a");
  other.Append("b");
  one.Append("c");

  EXPECT_EQ(standalone::ReadFile(path_), "abc");
  EXPECT_EQ(other.Size(), 3U);
}

TEST_F(ASharedFile, StaysTheSameUnderAnotherName) {
  SharedFile file = SharedFile::OpenToAppend(path_);
  EXPECT_TRUE(file.HasName(path_));

  std::filesystem::rename(path_, other_);
  file.Append("a");

  EXPECT_FALSE(file.HasName(path_));
  EXPECT_EQ(standalone::ReadFile(other_), "a");
}

TEST_F(ASharedFile, HasTheNameThatItWasGivenMeanwhile) {
#ifdef _WIN32
  GTEST_SKIP() << "Wine looks for an open file under the name by which it was opened";
#endif
  const SharedFile file = SharedFile::OpenToAppend(path_);

  std::filesystem::rename(path_, other_);

  EXPECT_TRUE(file.HasName(other_));
}

TEST_F(ASharedFile, HasNoNameThatAnotherFileTook) {
  const SharedFile file = SharedFile::OpenToAppend(path_);
  std::filesystem::rename(path_, other_);
  standalone::WriteFile(path_, "");

  EXPECT_FALSE(file.HasName(path_));
}

TEST_F(ASharedFile, IsLockedByOneAtATime) {
  std::optional<SharedFile> one = SharedFile::OpenToAppend(path_);
  SharedFile other = SharedFile::OpenToAppend(path_);

  EXPECT_TRUE(one->TryLock());
  EXPECT_FALSE(other.TryLock());
  one->Unlock();
  EXPECT_TRUE(other.TryLock());
  other.Unlock();
  EXPECT_TRUE(one->TryLock());
  one.reset();
  EXPECT_TRUE(other.TryLock());
}

TEST_F(ASharedFile, IsWrittenByOthersWhileItIsLocked) {
  SharedFile one = SharedFile::OpenToAppend(path_);
  SharedFile other = SharedFile::OpenToAppend(path_);
  ASSERT_TRUE(one.TryLock());

  other.Append("b");

  EXPECT_EQ(standalone::ReadFile(path_), "b");
}

TEST_F(ASharedFile, IsReadFromAnOffsetAsFarAsItGoes) {
  standalone::WriteFile(path_, "abcdef");
  const SharedFile file = SharedFile::OpenToRead(path_);
  std::string three(3, '.');

  EXPECT_EQ(file.Read(1, three), 3U);
  EXPECT_EQ(three, "bcd");
  EXPECT_EQ(file.Read(5, three), 1U);
  EXPECT_EQ(three, "fcd");
  EXPECT_EQ(file.Read(6, three), 0U);
}

TEST_F(ASharedFile, IsNoFolderAndNoFileThatIsNotThere) {
  EXPECT_THROW(SharedFile::OpenToRead(path_), std::system_error);

  std::filesystem::create_directory(path_);

  EXPECT_THROW(SharedFile::OpenToRead(path_), std::system_error);
  EXPECT_THROW(SharedFile::OpenToAppend(path_), std::system_error);
}

}  // namespace
}  // namespace platform
