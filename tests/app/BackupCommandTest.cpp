#include <algorithm>

#include "app/Books.h"
#include "app/OtherProgram.h"
#include "app/RunningProgram.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kBackup = "alder.backup";

class BackedUpBooks : public Books {
 public:
  BackedUpBooks() {
    RelateBirch();
    ImportMarch();
  }

 protected:
  Json Transactions() const {
    return Answer({"transactions", kFile, "--from", "2000-01-01", "--to", "2999-12-31"}).at("transactions");
  }
  void Spoil(const std::string& name) const {
    std::string bytes = Contents(name);
    std::fill(bytes.begin() + 4096, bytes.begin() + 8192, 'x');
    WriteFile(name, bytes);
  }
};

}  // namespace

TEST_F(BackedUpBooks, ABackupIsReportedWithItsTrail) {
  const Json made = Answer({"backup", kFile, kBackup});

  const Json trail = Answer({"audit", "verify", kBackup}).at("audit");
  EXPECT_EQ(made.at("file"), kBackup);
  EXPECT_EQ(made.at("bytes"), std::filesystem::file_size(In(kBackup)));
  EXPECT_EQ(made.at("auditLines"), trail.at("lines"));
  EXPECT_EQ(made.at("head"), trail.at("head"));
}

TEST_F(BackedUpBooks, ABackupIsToldToPeople) {
  const Outcome outcome = Run({"backup", kFile, kBackup});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Made the backup alder.backup of alder.company, "),
                                 HasSubstr("found it sound"), HasSubstr("the SHA-256 of the last one is\n")));
  EXPECT_THAT(Run({"audit", "show", kBackup, "--what", "company"}).out, HasSubstr(" began the backup alder.backup."));
}

TEST_F(BackedUpBooks, ABackupThatIsThereIsKept) {
  Done({"backup", kFile, kBackup});
  const std::string before = Contents(kBackup);

  const Outcome outcome = Run({"backup", kFile, kBackup});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("The backup alder.backup was not made. There is a file of that name"));
  EXPECT_EQ(Contents(kBackup), before);
}

TEST_F(BackedUpBooks, ABackupOnADiskThatIsFullLeavesNothingButALineInTheTrail) {
  const Outcome outcome = RunProgramOnAFullDisk(200, In("."), {"backup", kFile, kBackup});

  EXPECT_EQ(outcome.exitCode, 3) << outcome.out;
  EXPECT_THAT(outcome.err, HasSubstr("The backup alder.backup was not made."));
  for (const auto& entry : std::filesystem::directory_iterator(In("."))) {
    EXPECT_THAT(entry.path().filename().string(), Not(HasSubstr("alder.backup")));
  }
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "company"}).out,
              HasSubstr(" could not finish the backup alder.backup."));
}

TEST_F(BackedUpBooks, BooksComeBackFromTheirBackup) {
  const Json before = Transactions();
  Done({"backup", kFile, kBackup});
  Book("request-new");

  const Outcome refused = Run({"restore", kBackup, kFile});
  const Json restored = Answer({"restore", kBackup, kFile, "--replace"});

  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.err,
              AllOf(HasSubstr("has 1 line that the backup lacks"), HasSubstr("journal.record journal entry 4"),
                    HasSubstr("multientity backup FILE TO"), HasSubstr("--replace")));
  EXPECT_EQ(restored.at("auditLinesGivenUp"), 1);
  EXPECT_EQ(restored.at("movedAside"), Json());
  EXPECT_EQ(Transactions(), before);
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "company"}).out,
              AllOf(HasSubstr(" restored the company from the backup alder.backup: audit lines "),
                    HasSubstr("audit lines given up 1")));
}

TEST_F(BackedUpBooks, AProgramThatKeepsTheCompanyOpenGoesOnWithWhatIsRestored) {
  Done({"backup", kFile, kBackup});
  Done({"settings", "set", kFile, "multi-currency", "yes"});
  RunningProgram program(In("."), {"open", kFile, "--json"});
  program.WaitFor("\"message-delivered\"");

  Done({"restore", kBackup, kFile, "--replace"});

  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("multi-currency"), false);
  program.EndInput();
  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  Done({"audit", "verify", kFile});
}

TEST_F(BackedUpBooks, ADamagedCompanyIsToldHowToComeBack) {
  Done({"backup", kFile, kBackup});
  Spoil(kFile);

  const Outcome outcome = Run({"names", kFile});
  const Json error = ErrorOf({"names", kFile});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Restore it from a backup."),
                                 HasSubstr("\n  multientity restore BACKUP FILE --replace\n")));
  EXPECT_EQ(error.at("hint"), "multientity restore BACKUP FILE --replace");
}

TEST_F(BackedUpBooks, ADamagedCompanyComesBackAndIsKept) {
  const Json before = Transactions();
  Done({"backup", kFile, kBackup});
  Spoil(kFile);
  const std::string damaged = Contents(kFile);

  const Outcome refused = Run({"restore", kBackup, kFile});
  const Outcome restored = Run({"restore", kBackup, kFile, "--replace"});

  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("is damaged"), HasSubstr("add --replace")));
  EXPECT_EQ(restored.exitCode, 0) << restored.err;
  EXPECT_THAT(restored.out, HasSubstr("What was there lies in alder.company.damaged."));
  EXPECT_EQ(Contents("alder.company.damaged"), damaged);
  EXPECT_EQ(Transactions(), before);
}

TEST_F(BackedUpBooks, ADamagedBackupChangesNothing) {
  Done({"backup", kFile, kBackup});
  Spoil(kBackup);
  const std::string before = Contents(kFile);

  const Outcome outcome = Run({"restore", kBackup, kFile, "--replace"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("The backup alder.backup is damaged"), HasSubstr("Choose another one.")));
  EXPECT_EQ(Contents(kFile), before);
}

TEST_F(BackedUpBooks, ABackupOfAnOlderProgramIsBroughtForwardAsItIsRestored) {
  std::filesystem::copy_file(std::filesystem::path(MULTIENTITY_OLD_COMPANY_FILES) / "version-1" / "birch.company",
                             In("birch.backup"));
  const std::string before = Contents("birch.backup");

  Done({"restore", "birch.backup", "birch.company"});

  EXPECT_EQ(Contents("birch.backup"), before);
  EXPECT_FALSE(std::filesystem::exists(In("birch.backup.before-4")));
  EXPECT_THAT(Run({"audit", "show", "birch.company"}).out, HasSubstr("schema version 4, was 1"));
  Done({"accounts", "birch.company"});
}
