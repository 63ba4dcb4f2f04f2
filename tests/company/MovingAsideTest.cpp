#include <gmock/gmock.h>

#include <map>
#include <system_error>

#include "standalone/company/Backup.h"
#include "standalone/company/FileNames.h"
#include "standalone/company/MovingAside.h"
#include "standalone/company/Restore.h"
#include "standalone/values/Text.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

class MovingADamagedFileAside : public CompanyFixture {
 protected:
  using Parts = std::map<std::string, std::string>;

  MovingADamagedFileAside() {
    SqliteDatabase company(path_, std::chrono::milliseconds::zero());
    MakeBackup(company, backup_);
  }

  // The company's file is no one any more.
  void LeaveDamagedFile() const {
    for (const auto& [suffix, bytes] : kDamaged) WriteFile(WithSuffix(path_, suffix), bytes);
  }
  static Parts PartsOf(const std::filesystem::path& file) {
    Parts parts;
    for (const auto& [suffix, bytes] : kDamaged) {
      if (IsThere(WithSuffix(file, suffix))) parts[suffix] = ReadFile(WithSuffix(file, suffix));
    }
    return parts;
  }
  void Remove(const std::filesystem::path& file) const {
    for (const auto& [suffix, bytes] : kDamaged) std::filesystem::remove(WithSuffix(file, suffix));
  }
  std::int64_t LinesOfTheTrail() const {
    StandaloneHost host(path_);
    return Count(host, "SELECT count(*) FROM audit");
  }
  // False when there are no more steps than that.
  bool StopAfter(int steps) const {
    MovingAside moving(path_);
    bool isTaken = true;
    for (int step = 0; step < steps && isTaken; ++step) isTaken = moving.Step();
    return isTaken;
  }

  static inline const Parts kDamaged = {
      {"", "the books"}, {"-journal", "what to undo"}, {"-shm", "index"}, {"-wal", "the last bookings"}};
  const std::filesystem::path backup_ = folder_ / "birch.backup";
  const std::filesystem::path aside_ = folder_ / "birch.company.damaged";
};

TEST_F(MovingADamagedFileAside, LeavesItWholeUnderOneNameWhereverItStops) {
  int stops = 0;
  for (LeaveDamagedFile(); StopAfter(stops); ++stops) {
    const std::filesystem::path there = IsThere(path_) ? path_ : aside_;
    EXPECT_EQ(PartsOf(there), kDamaged) << "after " << stops << " steps";

    Remove(path_);
    Remove(aside_);
    LeaveDamagedFile();
  }

  EXPECT_EQ(stops, 8);
}

TEST_F(MovingADamagedFileAside, IsTakenUpAgainByTheNextRestoreWhereverItStopped) {
  int stops = 0;
  for (LeaveDamagedFile(); StopAfter(stops); ++stops) {
    const Restored done = BackupCopy(backup_, {}).PutInPlaceOf(path_, kAdministratorName);

    EXPECT_EQ(PartsOf(aside_), kDamaged) << "after " << stops << " steps";
    EXPECT_FALSE(IsThere(WithSuffix(aside_, ".1")) || !LeftBeside(WithSuffix(aside_, ".1")).empty());
    EXPECT_EQ(LeftBeside(path_), std::filesystem::path());
    EXPECT_EQ(LinesOfTheTrail(), done.auditLines);

    Remove(path_);
    Remove(aside_);
    LeaveDamagedFile();
  }

  EXPECT_EQ(stops, 8);
}

TEST_F(MovingADamagedFileAside, LeavesNothingUnderTheOtherNameWhenItIsGivenUp) {
  LeaveDamagedFile();
  MovingAside moving(path_);
  ASSERT_TRUE(moving.Step());
  ASSERT_EQ(moving.Name(), aside_);
  WriteFile(aside_, "of another one");

  EXPECT_THROW(
      {
        while (moving.Step()) continue;
      },
      std::system_error);
  moving.GiveUp();

  EXPECT_EQ(PartsOf(path_), kDamaged);
  EXPECT_EQ(PartsOf(aside_), (Parts{{"", "of another one"}}));
}

TEST_F(MovingADamagedFileAside, LeavesAloneWhatAnEarlierOneKept) {
  LeaveDamagedFile();
  WriteFile(WithSuffix(aside_, "-wal"), "of an earlier time");

  const Restored done = BackupCopy(backup_, {}).PutInPlaceOf(path_, kAdministratorName);

  EXPECT_EQ(done.aside, WithSuffix(aside_, ".1"));
  EXPECT_EQ(PartsOf(done.aside), kDamaged);
  EXPECT_EQ(ReadFile(WithSuffix(aside_, "-wal")), "of an earlier time");
}

}  // namespace
}  // namespace standalone
