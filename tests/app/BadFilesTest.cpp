#include <memory>

#include "app/Books.h"
#include "app/OtherProgram.h"
#include "crash/Contents.h"

namespace {

using std::filesystem::perms;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr perms kReadOnly = perms::owner_read | perms::group_read | perms::others_read;
constexpr perms kReadAndWrite = kReadOnly | perms::owner_write | perms::group_write | perms::others_write;
constexpr perms kEnter = perms::owner_exec | perms::group_exec | perms::others_exec;

class BadFile : public Books {
 protected:
  // Runs a command that only reads and one that writes, and returns what both complained about; fails the test unless
  // both end with 3 and leave the file as it is.
  std::string Refusal(const std::string& file) const {
    const std::string before = std::filesystem::is_regular_file(In(file)) ? Contents(file) : "";
    const Outcome reading = Run({"accounts", file});
    const Outcome writing = Run({"settings", "set", file, "company-name", "Other"});
    EXPECT_EQ(reading.exitCode, 3);
    EXPECT_EQ(writing.exitCode, 3);
    EXPECT_EQ(reading.err, writing.err);
    EXPECT_EQ(std::filesystem::is_regular_file(In(file)) ? Contents(file) : "", before);
    return reading.err;
  }
};

TEST_F(BadFile, AFolderIsNoCompanyFile) {
  std::filesystem::create_directory(In("folder"));

  EXPECT_THAT(Refusal("folder"), AllOf(HasSubstr("folder is not a company file"), HasSubstr("made by 'init'")));
}

TEST_F(BadFile, AnEmptyFileIsNoCompanyFile) {
  WriteFile("empty", "");

  EXPECT_THAT(Refusal("empty"), AllOf(HasSubstr("empty is not a company file"), HasSubstr("made by 'init'")));
}

TEST_F(BadFile, ADatabaseOfAnotherProgramIsNoCompanyFile) {
  OtherProgram(In("other")).Runs("CREATE TABLE track (title TEXT)");

  EXPECT_THAT(Refusal("other"), AllOf(HasSubstr("other is not a company file"), HasSubstr("made by 'init'")));
}

TEST_F(BadFile, ACompanyFileOfANewerProgramAsksForThatProgram) {
  OtherProgram(In(kFile)).Runs("PRAGMA user_version = 99");

  EXPECT_THAT(Refusal(kFile), AllOf(HasSubstr(kFile), HasSubstr("schema version 99"), HasSubstr("newer program")));
}

TEST_F(BadFile, ACompanyFileThatLostItsVersionIsDamaged) {
  OtherProgram(In(kFile)).Runs("PRAGMA user_version = 0");

  EXPECT_THAT(Refusal(kFile), AllOf(HasSubstr(kFile), HasSubstr("is damaged"), HasSubstr("Restore it from a backup")));
}

TEST_F(BadFile, ACompanyFileWithoutOneOfItsRulesIsDamaged) {
  OtherProgram(In(kFile)).Runs("DROP TRIGGER txn_post");

  EXPECT_THAT(Refusal(kFile), AllOf(HasSubstr(kFile), HasSubstr("its trigger txn_post is missing"),
                                    HasSubstr("Restore it from a backup")));
}

TEST_F(BadFile, ACompanyFileWhoseBooksDoNotBalanceIsDamaged) {
  RelateBirch();
  ImportMarch();
  OtherProgram(In(kFile)).Runs(
      "DROP TRIGGER txn_line_update_posted; UPDATE txn_line SET amount = amount + 1 WHERE id = 1;"
      "CREATE TRIGGER txn_line_update_posted BEFORE UPDATE ON txn_line\n"
      "    WHEN (SELECT max(posted) FROM txn WHERE id IN (OLD.txn_id, NEW.txn_id)) = 1 BEGIN\n"
      "  SELECT RAISE(ABORT, 'a line of a posted transaction does not change');\n"
      "END");

  EXPECT_THAT(Refusal(kFile), AllOf(HasSubstr(kFile), HasSubstr("do not sum to zero"), HasSubstr("backup")));
}

TEST_F(BadFile, ACompanyFileThatAnotherProgramHoldsIsReportedAsInUse) {
  RelateBirch();
  const OtherProgram other(In(kFile));
  other.Runs("BEGIN IMMEDIATE");

  const Outcome outcome = Run({"settings", "set", kFile, "company-name", "Other"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr(kFile), HasSubstr("in use by another program"), HasSubstr("Try again")));
  other.Runs("ROLLBACK");
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("company-name"), "Alder Supply Company");
}

TEST_F(BadFile, ACompanyFileThatAnotherProgramHoldsForItselfAloneCannotEvenBeRead) {
  auto other = std::make_unique<OtherProgram>(In(kFile));
  other->Runs("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");

  const Outcome outcome = Run({"settings", "show", kFile});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr(kFile), HasSubstr("is in use by another program"), HasSubstr("Try again")));
  other.reset();
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("company-name"), "Alder Supply Company");
}

// A user of this machine who has no rights but those that everybody has, also when the tests are run by root.
class WithoutRights : public Books {
 public:
  WithoutRights() {
    RelateBirch();
    std::filesystem::create_directory(In("books"));
    std::filesystem::rename(In(kFile), In("books") / kFile);
    Allow("books", kReadAndWrite | kEnter);
    Allow(kHere, kReadAndWrite);
    before_ = Contents(kHere);
  }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;
  void SetUp() override {
    if (!MayRunWithoutRights()) GTEST_SKIP() << "Wine's files are root's, so it runs for nobody else";
  }
  ~WithoutRights() override {
    std::error_code ignored;
    std::filesystem::permissions(In("books"), perms::all, ignored);
  }

 protected:
  static constexpr const char* kHere = "books/alder.company";

  void Allow(const char* name, perms allowed) const { std::filesystem::permissions(In(name), allowed); }
  Outcome Try(const std::vector<std::string>& arguments) const { return RunProgramWithoutRights(In("."), arguments); }
  Outcome TryToBook() const {
    return Try({"journal", "record", kHere, "--realm", "1001", "--amount", "1", "--request", "r", "--expense",
                "Utilities", "--name", "Walker"});
  }
  void ExpectUnchanged() const {
    Allow("books", perms::all);
    Allow(kHere, perms::all);
    EXPECT_EQ(Contents(kHere), before_);
  }

 private:
  std::string before_;
};

TEST_F(WithoutRights, ACompanyFileThatMayBeWrittenIsWorkedOn) {
  EXPECT_EQ(TryToBook().exitCode, 0);
}

TEST_F(WithoutRights, ACompanyFileThatMayNotBeReadIsNamed) {
  Allow(kHere, perms::none);

  const Outcome outcome = TryToBook();

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr(kHere), HasSubstr("Check that you may read and write it")));
  ExpectUnchanged();
}

TEST_F(WithoutRights, AFolderThatMayNotBeEnteredDoesNotMakeTheFileLookMissing) {
  Allow("books", perms::none);

  const Outcome outcome = TryToBook();

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr(kHere), HasSubstr("enter its folder")));
  ExpectUnchanged();
}

TEST_F(WithoutRights, ACompanyIsNotMadeInAWriteProtectedFolder) {
  Allow("books", kReadOnly | kEnter);

  const Outcome outcome = Try({"init", "books/new.company", "--name", "New"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("books/new.company"), HasSubstr("you may write there")));
  EXPECT_FALSE(std::filesystem::exists(In("books/new.company")));
}

TEST_F(WithoutRights, AnOperationsLogThatMayNotBeWrittenStopsNoWork) {
  WriteFile("books/alder.company.log", "");
  Allow("books/alder.company.log", kReadOnly);

  EXPECT_EQ(TryToBook().exitCode, 0);
}

// No file may grow beyond some size, as on a disk that is full; from almost nothing to as much as the command needs.
class FullDisk : public Books {
 public:
  FullDisk() { RelateBirch(); }

 protected:
  static constexpr int kMostBlocks = 4000;

  static std::vector<std::string> Booking() {
    return {"journal",   "record", kFile,           "--realm",   "1001",       "--amount",       "10",
            "--request", "r",      "--new-expense", "Insurance", "--new-name", "Stone Insurance"};
  }

  // Runs the command with more and more room until it is done; what was wrong with the runs before.
  std::vector<std::string> ComplaintsUntilDone(const std::vector<std::string>& arguments) {
    std::vector<std::string> complaints;
    const ::Contents before = Look();
    for (int blocks = 1; blocks < kMostBlocks; blocks += 1 + blocks / 4) {
      const Outcome outcome = RunProgramOnAFullDisk(blocks, In("."), arguments);
      const std::string room = std::to_string(blocks) + " blocks: ";
      if (outcome.exitCode == 0) return complaints;
      ++failures_;
      if (!SaysWhatBecameOfIt(outcome)) {
        complaints.push_back(room + "exit code " + std::to_string(outcome.exitCode) + ", " + outcome.err);
      }
      if (outcome.err.find(arguments[2]) == std::string::npos || outcome.err.find("Check that") == std::string::npos) {
        complaints.push_back(room + outcome.err);
      }
      if (Look() != before) complaints.push_back(room + "the books have changed");
    }
    complaints.emplace_back("it was never done");
    return complaints;
  }

  // What cannot be opened or begun was not saved either. That a write failed does not tell what of it is there.
  static bool SaysWhatBecameOfIt(const Outcome& outcome) {
    const bool isKnown = outcome.err.find("It is not known whether the work was saved") == std::string::npos;
    return isKnown ? outcome.exitCode == 1 || outcome.exitCode == 3 : outcome.exitCode == 5;
  }

  ::Contents Look() const {
    const Inspection found = InspectCopy(In(kFile));
    EXPECT_THAT(found.faults, IsEmpty());
    return found.contents;
  }

  std::vector<std::string> FilesLike(const std::string& name) const {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(In("."))) {
      if (entry.path().filename().string().starts_with(name)) files.push_back(entry.path().filename().string());
    }
    return files;
  }

  int failures_ = 0;
};

TEST_F(FullDisk, KeepsNothingOfABookingUntilAllOfItFits) {
  EXPECT_THAT(ComplaintsUntilDone(Booking()), IsEmpty());

  EXPECT_GT(failures_, 3);
  EXPECT_EQ(Look().transactions.size(), 1U);
}

TEST_F(FullDisk, KeepsNothingOfAnImportUntilAllOfItFits) {
  std::string rows = "transaction,type,date,name,memo,account,amount\n";
  for (int number = 0; number < 600; ++number) {
    const std::string key = std::to_string(number);
    rows += key + ",bill,2024-03-01,Walker,Bill " + key + ",Payables,-1.00\n" + key + ",bill,,,,Utilities,1.00\n";
  }
  WriteFile("rows.csv", rows);

  EXPECT_THAT(ComplaintsUntilDone({"import", "transactions", kFile, "rows.csv"}), IsEmpty());

  EXPECT_GT(failures_, 3);
  EXPECT_EQ(Look().transactions.size(), 600U);
}

TEST_F(FullDisk, MakesNoCompanyUntilAllOfItFits) {
  const std::vector<std::string> init = {"init", "new.company", "--name", "New Company"};

  const Outcome outcome = RunProgramOnAFullDisk(16, In("."), init);

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("new.company"), HasSubstr("has room")));
  EXPECT_FALSE(std::filesystem::exists(In("new.company")));
  EXPECT_THAT(FilesLike("new.company"), IsEmpty());
  Done(init);
}

TEST_F(Books, ADiskThatFailsLeavesOpenWhetherTheWorkWasSaved) {
  RelateBirch();
  const std::vector<std::string> booking = {"journal",   "record", kFile,       "--realm",   "1001",   "--amount", "1",
                                            "--request", "r",      "--expense", "Utilities", "--name", "Walker"};

  const Outcome outcome = RunProgramOnABadDisk(In("."), booking);

  EXPECT_EQ(outcome.exitCode, 5);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("It is not known whether the work was saved"), HasSubstr(kFile),
                                 HasSubstr("Check that its disk"), HasSubstr("multientity transaction exists"),
                                 Not(HasSubstr("Nothing was saved"))));
  // As the hint says.
  if (Run({"transaction", "exists", kFile, "--realm", "1001", "--request", "r"}).exitCode != 0) Done(booking);
  EXPECT_EQ(Answer({"transactions", kFile, "--from", "2024-01-01"}).at("transactions").size(), 1U);
}

TEST_F(Books, ADiskThatFailsIsToldToPrograms) {
  const Outcome outcome = RunProgramOnABadDisk(In("."), {"settings", "set", kFile, "company-name", "Other", "--json"});

  const Json error = Json::parse(outcome.err).at("error");
  EXPECT_EQ(error.at("exit"), 5);
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("do it again only if it is not"));
}

class SmallDisk : public FullDisk {
 protected:
  void SetUp() override {
    if (!MayMountASmallDisk()) GTEST_SKIP() << "this user may not mount a small disk, or its mount is not seen by Wine";
  }
};

TEST_F(SmallDisk, KeepsNothingOfABookingThatDoesNotFit) {
  const std::string before = Contents(kFile);

  const Outcome outcome = RunProgramOnASmallDisk(In("."), kFile, Booking());

  EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
  EXPECT_THAT(outcome.err, AllOf(HasSubstr(kFile), HasSubstr("has room")));
  EXPECT_EQ(Contents(kFile), before);
}

}  // namespace
