#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "standalone/storage/sqlite/TemporaryCopy.h"
#include "standalone/values/Errors.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace standalone {
namespace {

using std::filesystem::perms;

// On Windows the folder says who may read a file.
#ifdef _WIN32
constexpr bool kKnowsRights = false;
#else
constexpr bool kKnowsRights = true;
#endif

perms RightsOf(const std::filesystem::path& file) {
  return std::filesystem::status(file).permissions();
}

TEST(ATemporaryCopy, HasTheJournalsAndLiesInAFolderOfItsOwner) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder / "file";
  WriteFile(file, "books");
  WriteFile(folder / "file-wal", "the last bookings");
  WriteFile(folder / "file-journal", "what is to be undone");
  std::filesystem::permissions(file, perms::owner_read);
  std::filesystem::path copied;
  {
    const TemporaryCopy copy(file);
    copied = copy.File();

    EXPECT_EQ(ReadFile(copied), "books");
    EXPECT_EQ(ReadFile(copied.string() + "-wal"), "the last bookings");
    EXPECT_EQ(ReadFile(copied.string() + "-journal"), "what is to be undone");
    EXPECT_NE(RightsOf(copied) & perms::owner_write, perms::none);
    if (kKnowsRights) {
      EXPECT_EQ(RightsOf(copied.parent_path()), perms::owner_all);
    }
  }
  EXPECT_FALSE(std::filesystem::exists(copied.parent_path()));
  // Windows removes no file that may not be written.
  std::filesystem::permissions(file, perms::owner_read | perms::owner_write);
}

#ifndef _WIN32
TEST(ATemporaryCopy, ThatCannotBeMadeForLackOfATemporaryFolderSaysHowToNameOne) {
  const TemporaryFolder folder;
  WriteFile(folder / "file", "books");
  setenv("TMPDIR", (folder / "gone").c_str(), 1);

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { const TemporaryCopy copy(folder / "file"); }),
              testing::AllOf(testing::HasSubstr("cannot be copied to a temporary folder"), testing::HasSubstr("TMPDIR"),
                             testing::Not(testing::HasSubstr("disk"))));
}
#endif

}  // namespace
}  // namespace standalone
