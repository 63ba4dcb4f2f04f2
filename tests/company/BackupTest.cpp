#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "standalone/company/Backup.h"
#include "standalone/company/Restore.h"
#include "standalone/values/Errors.h"
#include "tests/company/CompanyFixture.h"
#include "tests/support/EnvironmentVariable.h"

namespace standalone {
namespace {

using std::chrono::milliseconds;
using std::filesystem::perms;
using testing::AllOf;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class ABackup : public CompanyFixture {
 protected:
  static OpenOptions Impatient() {
    OpenOptions options;
    options.busyTimeout = milliseconds::zero();
    return options;
  }
  static void Allow(const BeforeRestore& /*before*/) {}

  static void Add(StandaloneHost& host, const std::string& name) {
    host.Request(Access::kWrite, [&] {
      host.Names().Create(name, NameKind::kVendor);
      host.Record({.action = "name.add", .subject = name, .transactions = {}, .changes = {}});
    });
  }
  void Add(const std::string& name) {
    StandaloneHost host(path_);
    Add(host, name);
  }
  static std::vector<std::string> NamesIn(StandaloneHost& host) {
    std::vector<std::string> names;
    host.Request(Access::kRead, [&] {
      for (const Name& name : host.Names().List()) names.push_back(name.fullName);
    });
    return names;
  }
  static std::vector<std::string> NamesIn(const std::filesystem::path& file) {
    StandaloneHost host(file);
    return NamesIn(host);
  }
  // The last line of the trail.
  static AuditLine LastDeed(const std::filesystem::path& file) {
    StandaloneHost host(file);
    return host.Request(Access::kRead, [&] { return host.Audit().Last(); }).value();
  }
  std::vector<std::string> FilesThere() const {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(path_.parent_path())) {
      files.push_back(entry.path().filename().string());
    }
    return files;
  }
  Backup Make() {
    SqliteDatabase other(path_, milliseconds::zero());
    return MakeBackup(other, backup_);
  }
  Restored PutInto(const std::filesystem::path& file, const OpenOptions& options = {}) {
    BackupCopy copy(backup_, options);
    CompanyFile company(file, options);
    return copy.PutInto(company, kAdministratorName, Allow);
  }
  // What the engine cannot read.
  static void Spoil(const std::filesystem::path& file) {
    std::string bytes = ReadFile(file);
    std::fill(bytes.begin() + 4096, bytes.begin() + 8192, 'x');
    WriteFile(file, bytes);
  }

  const std::filesystem::path backup_ = folder_ / "birch.backup";
};

TEST_F(ABackup, HoldsWhatIsCommittedWhileSomebodyWrites) {
  StandaloneHost host(path_);
  Add(host, "Walker");

  const Backup made = host.Request(Access::kWrite, [&] {
    host.Names().Create("Not yet", NameKind::kVendor);
    return Make();
  });

  EXPECT_THAT(NamesIn(backup_), UnorderedElementsAre("Walker"));
  EXPECT_EQ(made.bytes, std::filesystem::file_size(backup_));
  EXPECT_EQ(made.auditLines, 2);
  StandaloneHost copy(backup_);
  EXPECT_EQ(copy.Request(Access::kRead, [&] { return copy.Audit().Check(); }).head, made.head);
}

TEST_F(ABackup, IsAFileOfItsOwnersWithNothingBesideIt) {
  Make();

  EXPECT_THAT(FilesThere(), UnorderedElementsAre("birch.company", "birch.backup"));
#ifndef _WIN32
  EXPECT_EQ(std::filesystem::status(backup_).permissions(), perms::owner_read | perms::owner_write);
#endif
}

TEST_F(ABackup, IsNeverMadeOverAFile) {
  WriteFile(backup_, "the last backup");

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { Make(); }),
              AllOf(HasSubstr("birch.backup"), HasSubstr("There is a file of that name")));

  EXPECT_EQ(ReadFile(backup_), "the last backup");
}

TEST_F(ABackup, IsNotMadeBesideTheLogOfAnotherOne) {
  WriteFile(backup_.string() + "-wal", "a log");

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { Make(); }), HasSubstr("birch.backup-wal is left"));

  EXPECT_THAT(FilesThere(), UnorderedElementsAre("birch.company", "birch.backup-wal"));
}

TEST_F(ABackup, OfADamagedCompanyIsNotKept) {
  {
    SqliteDatabase other(path_, milliseconds::zero());
    other.Execute("PRAGMA foreign_keys = OFF; INSERT INTO user_feature_right VALUES (77, 16, 2)");
  }

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { Make(); }),
              AllOf(HasSubstr("was not made"), HasSubstr("refers to one that is missing")));

  EXPECT_THAT(FilesThere(), UnorderedElementsAre("birch.company"));
}

TEST_F(ABackup, WithABrokenAuditTrailIsNotKept) {
  {
    SqliteDatabase other(path_, milliseconds::zero());
    const std::string rule = other.QueryText("SELECT sql FROM sqlite_schema WHERE name = 'audit_update'");
    other.Execute("DROP TRIGGER audit_update; UPDATE audit SET previous = replace(previous, '0', 'f')");
    other.Execute(rule.c_str());
  }

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { Make(); }), HasSubstr("its audit trail breaks at line 1"));

  EXPECT_THAT(FilesThere(), UnorderedElementsAre("birch.company"));
}

TEST_F(ABackup, IsRestoredUnderTheHandsOfWhoeverHasTheCompanyOpen) {
  Add("Walker");
  Make();
  StandaloneHost open(path_);
  Add(open, "Given up");
  ASSERT_THAT(NamesIn(open), UnorderedElementsAre("Walker", "Given up"));

  const Restored done = PutInto(path_);

  EXPECT_THAT(NamesIn(open), UnorderedElementsAre("Walker"));
  EXPECT_EQ(done.givenUp, 1);
  EXPECT_EQ(done.auditLines, 3);
  Add(open, "After it");
  EXPECT_THAT(NamesIn(path_), UnorderedElementsAre("Walker", "After it"));
}

TEST_F(ABackup, TellsInTheTrailOfWhatWasRestoredThatItWas) {
  Make();
  Add("Given up");

  PutInto(path_);

  const AuditLine line = LastDeed(path_);
  EXPECT_EQ(line.action, "company.restore");
  EXPECT_EQ(line.subject, "birch.backup");
  EXPECT_EQ(line.user, "Admin");
  ASSERT_EQ(line.changes.size(), 3U);
  EXPECT_EQ(line.changes[0].before, "2");
  EXPECT_EQ(line.changes[0].after, "1");
  EXPECT_EQ(line.changes[1].before->size(), 64U);
  EXPECT_EQ(line.changes[2].after, "1");
}

TEST_F(ABackup, StaysAsItIsWhenItIsRestored) {
  Make();
  const std::string before = ReadFile(backup_);

  PutInto(path_);

  EXPECT_EQ(ReadFile(backup_), before);
  EXPECT_THAT(FilesThere(), testing::Not(testing::Contains(HasSubstr("birch.backup-"))));
}

TEST_F(ABackup, IsNotRestoredWhenThatIsNotAllowed) {
  Make();
  Add("Walker");
  BackupCopy copy(backup_, {});
  CompanyFile company(path_);
  std::int64_t toGiveUp = 0;

  EXPECT_THROW(copy.PutInto(company, kAdministratorName,
                            [&](const BeforeRestore& before) {
                              toGiveUp = before.linesToGiveUp;
                              EXPECT_EQ(before.lastToGiveUp->subject, "Walker");
                              throw std::runtime_error("not allowed");
                            }),
               std::runtime_error);

  EXPECT_EQ(toGiveUp, 1);
  EXPECT_THAT(NamesIn(path_), UnorderedElementsAre("Walker"));
  EXPECT_EQ(LastDeed(path_).action, "name.add");
}

TEST_F(ABackup, SeesThatTheCompanyHasGoneAnotherWay) {
  Make();
  {
    StandaloneHost other(backup_);
    Add(other, "In the backup");
  }
  Add("In the company");
  BackupCopy copy(backup_, {});
  CompanyFile company(path_);
  std::int64_t toGiveUp = 0;

  copy.PutInto(company, kAdministratorName, [&](const BeforeRestore& before) { toGiveUp = before.linesToGiveUp; });

  EXPECT_EQ(toGiveUp, 1);
}

TEST_F(ABackup, IsNotRestoredWhileSomebodyWrites) {
  Make();
  StandaloneHost writing(path_);

  writing.Request(Access::kWrite, [&] {
    writing.Names().Create("Walker", NameKind::kVendor);
    EXPECT_THAT(MessageOf<UnitOfWorkError>([&] { PutInto(path_, Impatient()); }), HasSubstr("in use"));
  });

  EXPECT_THAT(NamesIn(path_), UnorderedElementsAre("Walker"));
}

TEST_F(ABackup, IsMadeAndRestoredWhereOneProgramHasTheCompanyForItselfAlone) {
  Add("Walker");
  OpenOptions onAShare = Impatient();
  onAShare.networkShares = {.mayBeWorkedOn = true, .isOne = [](const std::filesystem::path&) {
                              return true;
                            }};
  {
    CompanyFile company(path_, onAShare);
    MakeBackup(company.Data(), backup_);
  }
  Add("Given up");

  const Restored done = PutInto(path_, onAShare);

  EXPECT_EQ(done.givenUp, 1);
  EXPECT_THAT(NamesIn(path_), UnorderedElementsAre("Walker"));
}

TEST_F(ABackup, IsNotRestoredIntoACompanyThatIsOnlyRead) {
  Make();
  Add("Walker");
  OpenOptions onAShare = Impatient();
  onAShare.networkShares.isOne = [](const std::filesystem::path&) {
    return true;
  };

  EXPECT_THAT(MessageOf<UnitOfWorkError>([&] { PutInto(path_, onAShare); }), HasSubstr("network share"));

  EXPECT_THAT(NamesIn(path_), UnorderedElementsAre("Walker"));
}

class ABackupWhoseCopyIsSpoilt : public ABackup {
 protected:
  ABackupWhoseCopyIsSpoilt() {
    std::filesystem::create_directory(folder_ / "temporary");
    {
      StandaloneHost host(path_);
      const UnitOfWork unit(host.Data(), Access::kWrite);
      // More than the engine keeps in memory.
      for (int line = 0; line < 36'000; ++line) {
        host.Audit().Append({.at = line, .clock = "", .user = "Admin", .systemUser = "root"},
                            {.action = "name.add", .subject = "Walker", .transactions = {}, .changes = {}});
      }
      host.Data().Commit();
    }
    Make();
  }

  // What the disk of the temporary folder does to it.
  void SpoilCopy() const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / "temporary")) {
      if (entry.path().filename() != "birch.backup") continue;
      std::fstream stream(entry.path(), std::ios::binary | std::ios::in | std::ios::out);
      const std::string nothing(entry.file_size() - (std::size_t{20} << 12U), 'x');
      stream.seekp(std::streamoff{20} << 12U).write(nothing.data(), static_cast<std::streamsize>(nothing.size()));
    }
  }
  static std::string FailureOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const DamagedFile& blamed) {
      ADD_FAILURE() << blamed.what();
    } catch (const CompanyFileError& failure) {
      return failure.what();
    }
    return {};
  }
  auto NamesTheTemporaryFolder() const {
    return AllOf(HasSubstr("the copy of the backup"),
                 HasSubstr("Check the temporary folder " + (folder_ / "temporary").string()));
  }

#ifdef _WIN32
  static constexpr const char* kVariable = "TMP";
#else
  static constexpr const char* kVariable = "TMPDIR";
#endif
  const EnvironmentVariable temporary_{kVariable, (folder_ / "temporary").string()};
};

TEST_F(ABackupWhoseCopyIsSpoilt, IsNotTakenForADamagedCompany) {
  BackupCopy copy(backup_, {});
  CompanyFile company(path_);
  SpoilCopy();

  const std::string failure = FailureOf([&] { copy.PutInto(company, kAdministratorName, Allow); });

  EXPECT_THAT(failure, AllOf(HasSubstr("birch.company was not restored"), NamesTheTemporaryFolder()));
  EXPECT_EQ(RequireWhole(company.Data(), SchemaSteps()).lines, 36'001);
}

TEST_F(ABackupWhoseCopyIsSpoilt, IsNamedWhenWhatWasWrittenIsFoundDamaged) {
  BackupCopy copy(backup_, {});
  CompanyFile company(path_);

  const std::string failure = FailureOf(
      [&] { copy.PutInto(company, kAdministratorName, [&](const BeforeRestore& /*before*/) { SpoilCopy(); }); });

  EXPECT_THAT(failure, NamesTheTemporaryFolder());
}

TEST_F(ABackupWhoseCopyIsSpoilt, BecomesNoCompany) {
  BackupCopy copy(backup_, {});
  SpoilCopy();

  const std::string failure = FailureOf([&] { copy.PutInPlaceOf(folder_ / "new.company", kAdministratorName); });

  EXPECT_THAT(failure, AllOf(HasSubstr("new.company was not restored"), NamesTheTemporaryFolder()));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "new.company"));
}

TEST_F(ABackup, TellsWhoRestoredItAsTheCompanyCallsThem) {
  Make();
  BackupCopy copy(backup_, {});
  {
    CompanyFile company(path_);
    copy.PutInto(company, "aDMIN", Allow);
  }
  BackupCopy(backup_, {}).PutInPlaceOf(folder_ / "new.company", "aDMIN");

  EXPECT_EQ(LastDeed(path_).user, "Admin");
  EXPECT_EQ(LastDeed(folder_ / "new.company").user, "Admin");
}

TEST_F(ABackup, BecomesACompanyUnderANewName) {
  Add("Walker");
  Make();

  const Restored done = BackupCopy(backup_, {}).PutInPlaceOf(folder_ / "new.company", kAdministratorName);

  EXPECT_THAT(NamesIn(folder_ / "new.company"), UnorderedElementsAre("Walker"));
  EXPECT_EQ(LastDeed(folder_ / "new.company").action, "company.restore");
  EXPECT_EQ(done.aside, std::filesystem::path());
#ifndef _WIN32
  EXPECT_EQ(std::filesystem::status(folder_ / "new.company").permissions(), perms::owner_read | perms::owner_write);
#endif
}

TEST_F(ABackup, TakesThePlaceOfADamagedFileWhichIsKept) {
  Add("Walker");
  Make();
  Spoil(path_);
  WriteFile(path_.string() + "-wal", "a log");
  WriteFile(path_.string() + ".damaged", "of an earlier time");
  const std::string damaged = ReadFile(path_);
#ifndef _WIN32
  std::filesystem::permissions(path_, perms::owner_read | perms::owner_write | perms::group_read);
#endif

  const Restored done = BackupCopy(backup_, {}).PutInPlaceOf(path_, kAdministratorName);

  EXPECT_EQ(done.aside, path_.string() + ".damaged.1");
  EXPECT_EQ(ReadFile(done.aside), damaged);
  EXPECT_EQ(ReadFile(done.aside.string() + "-wal"), "a log");
  EXPECT_EQ(ReadFile(path_.string() + ".damaged"), "of an earlier time");
  EXPECT_THAT(NamesIn(path_), UnorderedElementsAre("Walker"));
#ifndef _WIN32
  EXPECT_EQ(std::filesystem::status(path_).permissions(), perms::owner_read | perms::owner_write | perms::group_read);
#endif
}

TEST_F(ABackup, DoesNotTakeADamagedFileAwayFromWhoWorksOnIt) {
  Make();
  StandaloneHost host(path_);
  FileOf(host).Execute("DROP TRIGGER txn_post");
  const std::string before = ReadFile(path_);

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { BackupCopy(backup_, {}).PutInPlaceOf(path_, kAdministratorName); }),
              HasSubstr("is in use by another program"));

  EXPECT_EQ(ReadFile(path_), before);
  EXPECT_THAT(FilesThere(), testing::Not(testing::Contains(HasSubstr(".damaged"))));
}

TEST_F(ABackup, ThatALinkNamesIsRestoredWithItsLog) {
#ifdef _WIN32
  GTEST_SKIP() << "who may make links on Windows is another matter";
#else
  const std::filesystem::path other = folder_ / "other.company";
  const std::filesystem::path crashed = folder_ / "crashed.company";
  {
    StandaloneHost host(path_);
    FileOf(host).QueryText("PRAGMA wal_checkpoint(TRUNCATE)");
    Add(host, "Walker");
    WriteFile(crashed, ReadFile(path_));
    WriteFile(crashed.string() + "-wal", ReadFile(path_.string() + "-wal"));
  }
  std::filesystem::create_directory(folder_ / "links");
  std::filesystem::create_symlink(crashed, folder_ / "links" / "latest.company");

  BackupCopy(folder_ / "links" / "latest.company", {}).PutInPlaceOf(other, kAdministratorName);

  EXPECT_THAT(NamesIn(other), UnorderedElementsAre("Walker"));
#endif
}

TEST_F(ABackup, ThatIsDamagedIsNotRestored) {
  Make();
  Spoil(backup_);

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { BackupCopy(backup_, {}); }),
              AllOf(HasSubstr("birch.backup"), HasSubstr("is damaged"), HasSubstr("Choose another one")));
}

}  // namespace
}  // namespace standalone
