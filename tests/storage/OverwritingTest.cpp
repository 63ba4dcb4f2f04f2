#include <gtest/gtest.h>

#include <optional>

#include "standalone/storage/sqlite/Overwriting.h"
#include "standalone/values/Errors.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace standalone {
namespace {

using std::chrono::milliseconds;

// A file with one number, and another one to be put in its place.
class AnOverwriting : public testing::Test {
 protected:
  AnOverwriting() {
    Fill(target_, 1);
    Fill(source_, 2);
  }

  static SqliteDatabase Make(const std::filesystem::path& file) {
    WriteFile(file, "");
    return {file, milliseconds::zero()};
  }
  static void Fill(SqliteDatabase& database, int number) {
    database.Execute("PRAGMA journal_mode = WAL; CREATE TABLE held (number INTEGER)");
    database.Execute(("INSERT INTO held VALUES (" + std::to_string(number) + ")").c_str());
  }
  static std::int64_t NumberIn(SqliteDatabase& database) { return database.QueryNumber("SELECT number FROM held"); }

  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "target";
  SqliteDatabase target_ = Make(path_);
  SqliteDatabase source_ = Make(folder_ / "source");
};

TEST_F(AnOverwriting, IsSeenByWhoeverHasTheFileOpen) {
  SqliteDatabase other(path_, milliseconds::zero());
  EXPECT_EQ(NumberIn(other), 1);
  {
    Overwriting overwriting(source_, target_);
    EXPECT_EQ(NumberIn(other), 1);
    overwriting.Finish();
  }
  EXPECT_EQ(NumberIn(other), 2);
  other.Execute("UPDATE held SET number = 3");
  EXPECT_EQ(NumberIn(target_), 3);
}

TEST_F(AnOverwriting, TakesWhatItsSourceGetsMeanwhile) {
  Overwriting overwriting(source_, target_);
  source_.Execute("UPDATE held SET number = 5");
  overwriting.Finish();

  SqliteDatabase other(path_, milliseconds::zero());
  EXPECT_EQ(NumberIn(other), 5);
}

TEST_F(AnOverwriting, KeepsOthersFromWritingUntilItIsGivenUp) {
  SqliteDatabase other(path_, milliseconds::zero());
  {
    const Overwriting overwriting(source_, target_);
    EXPECT_THROW(other.Execute("UPDATE held SET number = 3"), FileInUse);
  }
  EXPECT_EQ(NumberIn(other), 1);
  other.Execute("UPDATE held SET number = 3");
  EXPECT_EQ(NumberIn(target_), 3);
}

TEST_F(AnOverwriting, DoesNotBeginWhileSomebodyElseWrites) {
  SqliteDatabase other(path_, milliseconds::zero());
  other.Execute("BEGIN IMMEDIATE");

  EXPECT_THROW(Overwriting(source_, target_), FileInUse);

  other.Execute("UPDATE held SET number = 3; COMMIT");
  EXPECT_EQ(NumberIn(target_), 3);
}

TEST_F(AnOverwriting, NeedsPagesOfOneSizeWhichTheSourceCanTake) {
  SqliteDatabase large = Make(folder_ / "large");
  large.Execute("PRAGMA page_size = 8192");
  Fill(large, 7);

  TakePageSizeOf(target_, large);
  Overwriting(large, target_).Finish();

  EXPECT_EQ(NumberIn(target_), 7);
}

}  // namespace
}  // namespace standalone
