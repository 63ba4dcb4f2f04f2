// A write-ahead log that belongs to another state of the company than its file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "tests/company/CompanyFixture.h"
#include "tests/storage/InterruptedMove.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr std::uint32_t kPageSize = 4096;

class AfterACrash : public CompanyFixture {
 protected:
  // One unit of work with one line of the trail.
  static void Work(StandaloneHost& host, int times) {
    for (int unit = 0; unit < times; ++unit) {
      host.Request(Access::kWrite, [&] {
        host.Settings().Set("company-name", "Birch " + std::to_string(++serial_));
        host.Record({.action = "settings.change", .subject = "the settings", .transactions = {}, .changes = {}});
      });
    }
  }
  static void MoveLogIntoFile(StandaloneHost& host) { FileOf(host).QueryText("PRAGMA wal_checkpoint(TRUNCATE)"); }

  std::filesystem::path Log() const { return path_.string() + "-wal"; }
  std::filesystem::path CrashedFile() const { return folder_ / "crashed.company"; }
  std::filesystem::path CrashedLog() const { return CrashedFile().string() + "-wal"; }

  // The company as it lies on the disk now.
  void Crash() const {
    WriteFile(CrashedFile(), ReadFile(path_));
    WriteFile(CrashedLog(), ReadFile(Log()));
  }
  std::int64_t LinesAfterTheCrash() const {
    StandaloneHost host(CrashedFile());
    const AuditCheck check = host.Request(Access::kRead, [&] { return host.Audit().Check(); });
    EXPECT_FALSE(check.breakAt.has_value());
    return check.lines;
  }
  std::string RefusalAfterTheCrash() const {
    return MessageOf<CompanyFileError>([&] { const CompanyFile file(CrashedFile()); });
  }

  static inline int serial_ = 0;
};

TEST_F(AfterACrash, TheLogGoesOnFromItsFile) {
  StandaloneHost host(path_);
  Work(host, 3);
  MoveLogIntoFile(host);
  Work(host, 5);

  Crash();

  EXPECT_EQ(LinesAfterTheCrash(), 9);
}

TEST_F(AfterACrash, TheLogOfAManyPagedTrailGoesOnFromItsFile) {
  StandaloneHost host(path_);
  Work(host, 300);
  MoveLogIntoFile(host);
  Work(host, 150);

  Crash();

  EXPECT_EQ(LinesAfterTheCrash(), 451);
}

TEST_F(AfterACrash, AnOlderBackupInThePlaceOfTheFileIsNoticedBeforeAnythingIsWritten) {
  StandaloneHost host(path_);
  Work(host, 3);
  MoveLogIntoFile(host);
  const std::string backup = ReadFile(path_);
  Work(host, 2);
  MoveLogIntoFile(host);
  Work(host, 4);
  Crash();
  WriteFile(CrashedFile(), backup);
  const std::string log = ReadFile(CrashedLog());

  EXPECT_THAT(RefusalAfterTheCrash(), AllOf(HasSubstr("do not belong together"), HasSubstr("ends with line 4,"),
                                            HasSubstr("goes on with line 7 "), HasSubstr("crashed.company-wal")));

  EXPECT_EQ(ReadFile(CrashedFile()), backup);
  EXPECT_EQ(ReadFile(CrashedLog()), log);
}

TEST_F(AfterACrash, AnOlderBackupIsNoticedWhenTheLogBeginsWithWhatTheTrailDoesNotTell) {
  StandaloneHost host(path_);
  MoveLogIntoFile(host);
  const std::string backup = ReadFile(path_);
  Work(host, 2);
  MoveLogIntoFile(host);
  host.Request(Access::kWrite, [&] { host.Preferences().Set("MEPromptLaunchDate", "20240101"); });
  Work(host, 1);
  Crash();
  WriteFile(CrashedFile(), backup);

  EXPECT_THAT(RefusalAfterTheCrash(), HasSubstr("do not belong together"));
}

TEST_F(AfterACrash, AnOlderBackupIsNoticedThoughAPageIsWhatItOnceWas) {
  StandaloneHost host(path_);
  const auto remember = [&host](const char* day) {
    host.Request(Access::kWrite, [&] { host.Preferences().Set("MEPromptLaunchDate", day); });
  };
  remember("20240101");
  MoveLogIntoFile(host);
  const std::string backup = ReadFile(path_);
  remember("20240102");
  Work(host, 2);
  MoveLogIntoFile(host);
  remember("20240101");
  Work(host, 1);
  Crash();
  WriteFile(CrashedFile(), backup);

  EXPECT_THAT(RefusalAfterTheCrash(), HasSubstr("do not belong together"));
}

TEST_F(AfterACrash, AFileThatWentOnElsewhereIsNoticedThoughItsTrailIsAsLong) {
  StandaloneHost host(path_);
  Work(host, 3);
  MoveLogIntoFile(host);
  WriteFile(folder_ / "other.company", ReadFile(path_));
  {
    StandaloneHost other(folder_ / "other.company");
    Work(other, 2);
  }
  Work(host, 2);
  MoveLogIntoFile(host);
  Work(host, 4);
  Crash();
  WriteFile(CrashedFile(), ReadFile(folder_ / "other.company"));

  EXPECT_THAT(RefusalAfterTheCrash(), HasSubstr("do not belong together"));
}

TEST_F(AfterACrash, ABackupOfJustThatStateGoesOn) {
  StandaloneHost host(path_);
  Work(host, 3);
  MoveLogIntoFile(host);
  const std::string backup = ReadFile(path_);
  Work(host, 4);
  Crash();
  WriteFile(CrashedFile(), backup);

  EXPECT_EQ(LinesAfterTheCrash(), 8);
}

TEST_F(AfterACrash, TheLogThatAReaderKeptFromBeingMovedWhollyGoesOn) {
  StandaloneHost host(path_);
  Work(host, 2);
  {
    StandaloneHost reader(path_);
    UnitOfWork unit(reader.Data(), Access::kRead);
    reader.Settings().Get();
    Work(host, 200);
    FileOf(host).QueryText("PRAGMA wal_checkpoint(PASSIVE)");
    Crash();
  }

  EXPECT_EQ(LinesAfterTheCrash(), 203);
}

// A power failure may leave any of the pages that were being moved, and the trail may go on in pages that once held
// something else.
TEST_F(AfterACrash, WhateverAnInterruptedMoveLeftIsNeverRefused) {
  StandaloneHost host(path_);
  FileOf(host).Execute(
      "PRAGMA secure_delete = OFF; CREATE TABLE note (id INTEGER PRIMARY KEY, text TEXT) STRICT; WITH RECURSIVE n (i) "
      "AS (SELECT 1 UNION ALL "
      "SELECT "
      "i + 1 FROM n WHERE i < 100) INSERT INTO note SELECT i, printf('%01000d', i) FROM n; DROP TABLE note");
  Work(host, 120);
  MoveLogIntoFile(host);
  Work(host, 90);
  Crash();
  const std::string file = ReadFile(CrashedFile());
  const std::string log = ReadFile(CrashedLog());
  const std::map<std::uint32_t, std::string> last = LastPagesOf(CrashedFile(), kPageSize);
  ASSERT_GT(last.size(), 3U);
  const auto moved = [&](const auto& isMoved) {
    return PartlyMoved(file, last, kPageSize, isMoved);
  };
  std::vector<std::string> interrupted;
  for (const auto& [until, content] : last) {
    interrupted.push_back(moved([&](std::uint32_t page) { return page <= until; }));
  }
  std::minstd_rand random(7);
  for (int trial = 0; trial < 20; ++trial) {
    interrupted.push_back(moved([&](std::uint32_t) { return random() % 2 == 0; }));
  }

  for (const std::string& partly : interrupted) {
    WriteFile(CrashedFile(), partly);
    WriteFile(CrashedLog(), log);
    std::filesystem::remove(CrashedFile().string() + "-shm");

    EXPECT_EQ(LinesAfterTheCrash(), 211);
  }
}

// A disk writes a page in pieces. The trail lies on one page, or on many.
TEST_F(AfterACrash, APageOfWhichThePowerLeftTheBeginningIsNeverRefused) {
  constexpr std::size_t kSector = 512;
  struct Trail {
    int inFile = 0;
    int inLog = 0;
  };
  for (const Trail& trail : {Trail{1, 5}, Trail{4, 2}, Trail{120, 90}}) {
    StandaloneHost host(path_);
    const std::int64_t before = host.Request(Access::kRead, [&] { return host.Audit().Check().lines; });
    Work(host, trail.inFile);
    MoveLogIntoFile(host);
    Work(host, trail.inLog);
    Crash();
    const std::string file = ReadFile(CrashedFile());
    const std::string log = ReadFile(CrashedLog());
    const std::map<std::uint32_t, std::string> last = LastPagesOf(CrashedFile(), kPageSize);

    for (const auto& [torn, content] : last) {
      const std::string moved =
          PartlyMoved(file, last, kPageSize, [until = torn](std::uint32_t page) { return page < until; });
      for (std::size_t arrived = kSector; arrived < kPageSize; arrived += kSector) {
        std::string partly = moved;
        const std::size_t offset = std::size_t{torn - 1} * kPageSize;
        if (partly.size() < offset + arrived) partly.resize(offset + arrived);
        partly.replace(offset, arrived, content, 0, arrived);
        WriteFile(CrashedFile(), partly);
        WriteFile(CrashedLog(), log);
        std::filesystem::remove(CrashedFile().string() + "-shm");

        EXPECT_EQ(LinesAfterTheCrash(), before + trail.inFile + trail.inLog) << arrived << " bytes of page " << torn;
      }
    }
  }
}

TEST_F(AfterACrash, TheLogWithAWholeNewCompanyGoesOn) {
  StandaloneHost host(path_);
  Work(host, 1);
  MoveLogIntoFile(host);
  const std::filesystem::path other = folder_ / "other.company";
  WriteFile(other, ReadFile(path_));
  {
    StandaloneHost source(other);
    Work(source, 6);
  }
  SqliteDatabase(other, std::chrono::milliseconds::zero()).CopyInto(path_);
  Crash();

  EXPECT_EQ(LinesAfterTheCrash(), 8);
}

TEST_F(AfterACrash, AnotherProgramMayOpenTheCompanyWhileOneWrites) {
  StandaloneHost host(path_);
  for (int turn = 0; turn < 20; ++turn) {
    Work(host, 7);
    StandaloneHost other(path_);
    EXPECT_EQ(other.Request(Access::kRead, [&] { return other.Audit().Check().lines; }), 1 + 7 * (turn + 1));
  }
}

}  // namespace
}  // namespace standalone
