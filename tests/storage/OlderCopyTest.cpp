// A write-ahead log of a newer schema version than the file that it lies beside: left by a crash while that was brought
// forward, or by one of a company over which an older copy was put.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "standalone/books/AuditTable.h"
#include "standalone/company/Restore.h"
#include "tests/company/CompanyFixture.h"
#include "tests/storage/InterruptedMove.h"
#include "tests/storage/OldCompanyFiles.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t kBytesOfAPage = 4096;

struct OlderFile {
  const char* version;
  const char* name;
  std::size_t stepsTaken;
  std::int64_t linesBroughtForward;  // of the audit trail
};

class ACopyOfAnOlderVersion : public testing::TestWithParam<OlderFile> {
 protected:
  // Too large to be searched for damage at each opening.
  void MakeLarge() const {
    SqliteDatabase large(file_.Path(), kBusyTimeout);
    large.Execute(
        "CREATE TABLE note (text TEXT) STRICT; WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
        "WHERE i < 10000) INSERT INTO note SELECT printf('%01000d', i) FROM n");
  }
  static void Record(StandaloneHost& host) {
    host.Record({.action = "name.add", .subject = "Walker", .transactions = {}, .changes = {}});
  }
  static void AddNames(StandaloneHost& host) {
    for (int name = 0; name < 500; ++name) {
      host.Names().Create("Walker " + std::to_string(name), NameKind::kVendor);
    }
  }
  // Lays `backup` over the company as a crash would leave it now.
  void CrashUnder(const std::string& backup) const {
    WriteFile(CrashedFile(), backup);
    WriteFile(CrashedLog(), ReadFile(file_.Path().string() + "-wal"));
  }
  // Opens the company, which brings it forward, works in it, and lays a copy of before over it.
  void PutBackOver(const std::function<void(StandaloneHost& host)>& work) const {
    const std::string backup = ReadFile(file_.Path());
    StandaloneHost host(file_.Path());
    host.Request(Access::kWrite, [&] { work(host); });
    CrashUnder(backup);
  }
  static void BringForward(SqliteDatabase& database, SchemaSpan steps, std::size_t taken) {
    PrepareForSteps(database);
    UnitOfWork unit(database, Access::kWrite);
    TakeSteps(database, steps, taken);
    AuditTable(database).Append({.at = 1, .clock = "", .user = "", .systemUser = "root"},
                                {.action = "company.migrate", .subject = "", .transactions = {}, .changes = {}});
    unit.Commit();
  }
  // Leaves all of it in the log.
  void BringForwardUntilACrash() const {
    SqliteDatabase database(file_.Path(), kBusyTimeout);
    database.Execute("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0");
    database.AllowCheckpointOnClose(false);
    BringForward(database, SchemaSteps(), GetParam().stepsTaken);
    CrashUnder(ReadFile(file_.Path()));
  }

  std::filesystem::path CrashedFile() const { return file_.Path().string() + ".crashed"; }
  std::filesystem::path CrashedLog() const { return CrashedFile().string() + "-wal"; }
  std::int64_t LinesAfterTheCrash() const {
    StandaloneHost host(CrashedFile());
    return host.Request(Access::kRead, [&] { return host.Audit().Check().lines; });
  }
  std::string RefusalAfterTheCrash() const {
    return MessageOf<CompanyFileError>([&] { const CompanyFile opened(CrashedFile()); });
  }

  const OldCompanyFile file_{GetParam().version, GetParam().name};
};

TEST_P(ACopyOfAnOlderVersion, PutOverANewerOneThatCrashedIsNoticedAndStaysAsItIs) {
  MakeLarge();
  PutBackOver([](StandaloneHost& host) {
    AddNames(host);
    Record(host);
  });
  const std::string copy = ReadFile(CrashedFile());
  const std::string log = ReadFile(CrashedLog());

  EXPECT_THAT(RefusalAfterTheCrash(), AllOf(HasSubstr("do not belong together"), Not(HasSubstr("is damaged"))));

  EXPECT_EQ(ReadFile(CrashedFile()), copy);
  EXPECT_EQ(ReadFile(CrashedLog()), log);
  EXPECT_FALSE(std::filesystem::exists(CrashedFile().string() + ".before-4"));
}

TEST_P(ACopyOfAnOlderVersion, PutOverANewerOneIsNoticedThoughNothingThereToldOfWhatItsLogHolds) {
  MakeLarge();
  PutBackOver(AddNames);

  EXPECT_THAT(RefusalAfterTheCrash(),
              AllOf(HasSubstr("do not belong together"),
                    HasSubstr("is of schema version " + std::to_string(GetParam().stepsTaken) + ",")));
}

TEST_P(ACopyOfAnOlderVersion, PutOverANewerOneIsNotRestored) {
  MakeLarge();
  PutBackOver([](StandaloneHost& host) {
    AddNames(host);
    Record(host);
  });

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { const BackupCopy copy(CrashedFile(), {}); }),
              HasSubstr("do not belong together"));
}

TEST_P(ACopyOfAnOlderVersion, GoesOnFromTheLogThatBringsItForward) {
  BringForwardUntilACrash();

  EXPECT_EQ(LinesAfterTheCrash(), GetParam().linesBroughtForward);
}

TEST_P(ACopyOfAnOlderVersion, IsRestoredWithTheLogThatBringsItForward) {
  BringForwardUntilACrash();
  BackupCopy copy(CrashedFile(), {});

  const UnitOfWork unit(copy.Data(), Access::kRead);
  EXPECT_EQ(AuditTable(copy.Data()).Check().lines, GetParam().linesBroughtForward);
}

// A power failure may leave any of the pages that were being moved, and the trail may begin in one that once held
// something else.
TEST_P(ACopyOfAnOlderVersion, IsNeverRefusedWhateverAnInterruptedMoveOfThatLogLeft) {
  SqliteDatabase(file_.Path(), kBusyTimeout)
      .Execute(
          "PRAGMA secure_delete = OFF; CREATE TABLE note (id INTEGER PRIMARY KEY, text TEXT) STRICT; WITH RECURSIVE "
          "n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) INSERT INTO note SELECT i, "
          "printf('%01000d', i) FROM n; DROP TABLE note; CREATE TABLE kept (id INTEGER PRIMARY KEY) STRICT");
  BringForwardUntilACrash();
  const std::string file = ReadFile(CrashedFile());
  const std::string log = ReadFile(CrashedLog());
  const std::map<std::uint32_t, std::string> last = LastPagesOf(CrashedFile(), kBytesOfAPage);
  ASSERT_GT(last.size(), 10U);
  std::minstd_rand random(7);
  const auto moved = [&](const auto& isMoved) {
    return PartlyMoved(file, last, kBytesOfAPage, isMoved);
  };
  std::vector<std::string> interrupted;
  for (const auto& [until, content] : last) {
    interrupted.push_back(moved([&](std::uint32_t page) { return page <= until; }));
    interrupted.push_back(moved([&](std::uint32_t page) { return page >= until; }));
  }
  for (int trial = 0; trial < 20; ++trial) {
    interrupted.push_back(moved([&](std::uint32_t) { return random() % 2 == 0; }));
  }

  for (const std::string& partly : interrupted) {
    WriteFile(CrashedFile(), partly);
    WriteFile(CrashedLog(), log);
    std::filesystem::remove(CrashedFile().string() + "-shm");

    EXPECT_EQ(LinesAfterTheCrash(), GetParam().linesBroughtForward);
  }
}

class ACopyOfVersion1 : public ACopyOfAnOlderVersion {};

TEST_P(ACopyOfVersion1, PutOverOneThatCrashedWhenItWasBroughtForwardOnceMoreIsNoticed) {
  MakeLarge();
  const std::string backup = ReadFile(file_.Path());
  SqliteDatabase database(file_.Path(), kBusyTimeout);
  database.Execute("PRAGMA journal_mode = WAL");
  BringForward(database, SchemaSteps().first(2), 1);
  database.QueryText("PRAGMA wal_checkpoint(TRUNCATE)");
  BringForward(database, SchemaSteps(), 2);
  CrashUnder(backup);

  EXPECT_THAT(RefusalAfterTheCrash(), HasSubstr("do not belong together"));
}

// Then the trail no longer begins where it was begun.
TEST_P(ACopyOfVersion1, GoesOnFromTheLogThatAlsoWritesAllOfItAnew) {
  MakeLarge();
  SqliteDatabase database(file_.Path(), kBusyTimeout);
  database.Execute("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0");
  BringForward(database, SchemaSteps(), 1);
  database.Execute("DROP TABLE note; VACUUM");
  CrashUnder(ReadFile(file_.Path()));

  EXPECT_EQ(LinesAfterTheCrash(), 1);
}

TEST_P(ACopyOfVersion1, IsCalledDamagedThoughALogOfItsVersionLiesBesideIt) {
  std::string broken = ReadFile(file_.Path());
  broken.replace(kBytesOfAPage - 2000, 2000, 2000, 'x');
  WriteFile(CrashedFile(), broken);
  {
    SqliteDatabase database(file_.Path(), kBusyTimeout);
    database.Execute("PRAGMA journal_mode = WAL; UPDATE company SET name = 'Birch'");
    CrashUnder(broken);
  }

  EXPECT_THAT(RefusalAfterTheCrash(), HasSubstr("is damaged"));
}

class ACopyOfVersion2 : public ACopyOfAnOlderVersion {};

TEST_P(ACopyOfVersion2, IsToldByItsAuditTrailWhenTheLogDoesNotTellItsVersion) {
  MakeLarge();
  PutBackOver(Record);

  EXPECT_THAT(RefusalAfterTheCrash(), AllOf(HasSubstr("ends with line 5,"), HasSubstr("goes on with line 7 ")));
}

INSTANTIATE_TEST_SUITE_P(, ACopyOfVersion1, testing::Values(OlderFile{"version-1", "birch.company", 1, 1}));
INSTANTIATE_TEST_SUITE_P(, ACopyOfVersion2, testing::Values(OlderFile{"version-2", "birch.company", 2, 6}));
INSTANTIATE_TEST_SUITE_P(, ACopyOfAnOlderVersion,
                         testing::Values(OlderFile{"version-1", "birch.company", 1, 1},
                                         OlderFile{"version-1", "crashed.company", 1, 1},
                                         OlderFile{"version-2", "birch.company", 2, 6},
                                         OlderFile{"version-3", "birch.company", 3, 26}),
                         [](const auto& file) {
                           return "Version" + std::to_string(file.param.stepsTaken) +
                                  (file.param.name == std::string_view("crashed.company") ? "Crashed" : "");
                         });

}  // namespace
}  // namespace standalone
