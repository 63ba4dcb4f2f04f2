// What becomes of today's companies when the next version of the program is installed.
#include <algorithm>
#include <future>

#include "app/Books.h"
#include "app/RunningProgram.h"
#include "crash/Contents.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class TheNextVersion : public Books {
 protected:
  TheNextVersion() {
    RelateBirch();
    ImportMarch();
  }

  Outcome RunNext(const std::vector<std::string>& arguments) const { return RunNextProgram(In("."), arguments); }
  Json NoteOf(const Outcome& outcome) const { return Json::parse(outcome.err).at("note"); }
  std::string Listed() const { return Run(kListing).out; }
  bool IsKeptAsItWas(const char* folder = ".") const {
    const auto isCopy = [](const auto& entry) {
      return entry.path().filename().string().starts_with(std::string(kFile) + ".before");
    };
    const std::filesystem::directory_iterator files(In(folder));
    return std::any_of(begin(files), end(files), isCopy);
  }

  const std::vector<std::string> kListing{"transactions", kFile, "--from", "2024-01-01"};
};

TEST_F(TheNextVersion, BringsACompanyForwardAndSaysSo) {
  const std::string listed = Listed();

  const Outcome outcome = RunNext(kListing);

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, listed);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("note: alder.company was brought from schema version"),
                                 HasSubstr("alder.company.before-"), Not(HasSubstr("multientity:"))));
  EXPECT_THAT(RunNext(kListing).err, IsEmpty());
}

TEST_F(TheNextVersion, TellsProgramsWhatItDid) {
  const Json note = NoteOf(RunNext({"accounts", kFile, "--json"}));

  EXPECT_EQ(note.at("file"), kFile);
  EXPECT_LT(note.at("from"), note.at("to"));
  EXPECT_FALSE(note.at("readsACopy"));
  EXPECT_THAT(note.at("left"), IsEmpty());
  EXPECT_TRUE(std::filesystem::exists(In(std::string(kFile) + ".before-" + note.at("to").dump())));
}

TEST_F(TheNextVersion, SaysWhatItDidToACompanyThatItThenRefuses) {
  const Outcome outcome = RunNext({"accounts", kFile, "--user", "Nobody"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("was brought from schema version"), HasSubstr("Nobody")));
}

TEST_F(TheNextVersion, LeavesTheCompanyAsItWasToTheProgramOfBefore) {
  const std::string listed = Listed();
  const Json note = NoteOf(RunNext({"accounts", kFile, "--json"}));

  EXPECT_EQ(Run(kListing).exitCode, 3);
  std::filesystem::rename(In(std::string(kFile) + ".before-" + note.at("to").dump()), In(kFile));
  EXPECT_EQ(Run(kListing).out, listed);
}

TEST_F(TheNextVersion, BringsACompanyForwardOnceWhenManyOpenIt) {
  constexpr int kPrograms = 10;
  const auto run = [&](int number) {
    const std::filesystem::path place = In("place-" + std::to_string(number));
    std::filesystem::create_directory(place);
    return RunNextProgram(place, {"accounts", In(kFile).string()});
  };

  std::vector<std::future<Outcome>> running;
  for (int number = 0; number < kPrograms; ++number) running.push_back(std::async(std::launch::async, run, number));
  std::vector<Outcome> outcomes;
  for (std::future<Outcome>& outcome : running) outcomes.push_back(outcome.get());

  EXPECT_THAT(outcomes, Each(Field(&Outcome::exitCode, 0)));
  EXPECT_EQ(std::ranges::count_if(outcomes, [](const Outcome& outcome) { return !outcome.err.empty(); }), 1);
}

TEST_F(TheNextVersion, OpensWhatItsFormerSelfWroteAfterACrash) {
  for (const char* name : {"crashed.company", "crashed.company-wal"}) {
    std::filesystem::copy_file(std::filesystem::path(MULTIENTITY_OLD_COMPANY_FILES) / "version-1" / name, In(name));
  }

  const Outcome outcome = RunNext({"transactions", "crashed.company", "--from", "2026-01-01"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("in-the-log-1"), HasSubstr("in-the-log-2")));
}

TEST_F(TheNextVersion, BringsACompanyForwardOnWindowsForThisSystemToo) {
  if (!IsWindowsProgram()) GTEST_SKIP() << "the program for Windows is not the one that is tested";
  const std::string listed = Listed();
  RunNext(kListing);

  const Outcome outcome = RunNextProgramOfThisSystem(In("."), kListing);

  EXPECT_EQ(outcome.out, listed);
  EXPECT_THAT(outcome.err, IsEmpty());
}

// It would go on by the rules of its own version.
TEST_F(TheNextVersion, WaitsForTheOlderProgramToCloseTheCompanyAndThenSaysSo) {
  RunningProgram older(In("."), {"open", kFile});
  older.WaitFor("Opened");

  const Outcome outcome = RunNext(kListing);

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr(kFile), HasSubstr("is as it was"), HasSubstr("open in another program"),
                                 HasSubstr("Close it there")));
  EXPECT_FALSE(IsKeptAsItWas());
  older.EndInput();
  EXPECT_EQ(older.End().exitCode, 0);
  EXPECT_EQ(RunNext(kListing).exitCode, 0);
}

TEST_F(TheNextVersion, LeavesACompanyAsItWasUntilItsDiskHasRoom) {
  constexpr int kMostBlocks = 4000;
  const std::string listed = Listed();
  std::vector<std::string> complaints;
  int failures = 0;
  Outcome outcome;
  for (int blocks = 1; blocks < kMostBlocks && outcome.exitCode != 0; blocks += 1 + blocks / 8) {
    outcome = RunNextProgramOnAFullDisk(blocks, In("."), {"accounts", kFile});
    if (outcome.exitCode == 0) break;
    ++failures;
    const std::string room = std::to_string(blocks) + " blocks: ";
    if (outcome.exitCode != 3 || outcome.err.find("Check that") == std::string::npos) {
      complaints.push_back(room + outcome.err);
    }
    if (IsKeptAsItWas()) complaints.push_back(room + "a copy was left");
    if (Listed() != listed) complaints.push_back(room + "the older program does not open it as it was");
  }

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(complaints, IsEmpty());
  EXPECT_GT(failures, 10);
  EXPECT_EQ(RunNext(kListing).out, listed);
}

class OnASmallDisk : public TheNextVersion {
 protected:
  void SetUp() override {
    if (!MayMountASmallDisk()) GTEST_SKIP() << "this user may not mount a disk, or its mount is not seen by Wine";
  }
};

// From room for the copy alone to as much as is needed: the disk is also full while it is committed.
TEST_F(OnASmallDisk, ACompanyIsAsItWasUntilThereIsRoom) {
  constexpr std::uintmax_t kStep = 4;
  constexpr std::uintmax_t kMost = 2000;
  const std::string listed = Listed();
  std::uintmax_t room = 2 * std::filesystem::file_size(In(kFile)) / 1024;
  std::vector<std::string> complaints;
  int failures = 0;
  Outcome outcome;
  for (; room < kMost; room += kStep) {
    outcome = RunNextProgramOnASmallDisk(room, In("."), kFile, {"accounts", kFile});
    // What comes after it may need more room.
    if (outcome.err.find("was brought from") != std::string::npos) break;
    ++failures;
    const std::string size = std::to_string(room) + " KiB: ";
    if (outcome.exitCode != 3 || outcome.err.find("is as it was") == std::string::npos) {
      complaints.push_back(size + outcome.err);
    }
    if (IsKeptAsItWas("after")) complaints.push_back(size + "a copy was left");
    const Outcome older = Run({"transactions", "after/alder.company", "--from", "2024-01-01"});
    if (older.out != listed) complaints.push_back(size + "the older program does not open it as it was");
  }

  EXPECT_LT(room, kMost);
  EXPECT_THAT(complaints, IsEmpty());
  EXPECT_GT(failures, 5);
  EXPECT_TRUE(IsKeptAsItWas("after"));
  EXPECT_EQ(RunNext({"transactions", "after/alder.company", "--from", "2024-01-01"}).out, listed);
}

class OnAReadOnlyMedium : public TheNextVersion {
 protected:
  void SetUp() override {
    if (!MayMountASmallDisk()) GTEST_SKIP() << "this user may not mount a disk, or its mount is not seen by Wine";
  }
};

TEST_F(OnAReadOnlyMedium, AnOlderCompanyIsReadFromACopyThatWasBroughtForward) {
  const std::string listed = Listed();

  const Outcome outcome = RunNextProgramOnAReadOnlyDisk(In("."), kListing);

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, listed);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("note: alder.company lies on a read-only medium"), HasSubstr("temporary"),
                                 HasSubstr("was brought from schema version"), HasSubstr("nothing can be saved")));
}

TEST_F(OnAReadOnlyMedium, ProgramsAreToldThatACopyIsRead) {
  const Json note = NoteOf(RunNextProgramOnAReadOnlyDisk(In("."), {"accounts", kFile, "--json"}));

  EXPECT_TRUE(note.at("readsACopy"));
  EXPECT_TRUE(note.at("before").is_null());
  EXPECT_LT(note.at("from"), note.at("to"));
}

TEST_F(OnAReadOnlyMedium, WhatACrashLeftBesideAnOlderCompanyIsReadToo) {
  for (const char* name : {"crashed.company", "crashed.company-wal"}) {
    std::filesystem::copy_file(std::filesystem::path(MULTIENTITY_OLD_COMPANY_FILES) / "version-1" / name, In(name));
  }

  const Outcome outcome =
      RunNextProgramOnAReadOnlyDisk(In("."), {"transactions", "crashed.company", "--from", "2026-01-01"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("in-the-log-1"), HasSubstr("in-the-log-2")));
}

TEST_F(OnAReadOnlyMedium, NothingIsSavedForAnOlderCompany) {
  const Outcome outcome = RunNextProgramOnAReadOnlyDisk(In("."), {"settings", "set", kFile, "company-name", "Other"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Nothing was saved"), HasSubstr(kFile), HasSubstr("read-only medium"),
                                 HasSubstr("Copy it to a disk")));
}

TEST_F(OnAReadOnlyMedium, ATemporaryFolderWithoutRoomIsNamedWhateverItHasRoomFor) {
  const std::uintmax_t size = std::filesystem::file_size(In(kFile)) / 1024;
  const std::string folder = "Make room in the temporary folder " + In("temporary").string();

  for (const std::uintmax_t room : {size / 2, size + 8}) {
    const Outcome outcome = RunNextProgramOnAReadOnlyDiskWithLittleRoom(room, In("."), kListing);

    EXPECT_EQ(outcome.exitCode, 3) << room;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr(folder), HasSubstr("TMPDIR"), testing::Not(HasSubstr("its disk"))))
        << room;
  }
}

TEST_F(OnAReadOnlyMedium, NoCopyIsLeftBehind) {
  const Outcome outcome = RunNextProgramOnAReadOnlyDisk(In("."), kListing);

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(std::filesystem::is_empty(In("temporary")));
}

}  // namespace
