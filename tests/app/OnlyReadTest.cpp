// What an auditor sees of a company that cannot be worked on where it lies.
#include <algorithm>
#include <iterator>
#include <map>

#include "app/Books.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

class OnlyReadBooks : public Books {
 protected:
  OnlyReadBooks() {
    RelateBirch();
    ImportMarch();
  }

  // All commands that list and report.
  static std::vector<std::vector<std::string>> Readings() {
    return {{"accounts", kFile},
            {"accounts", kFile, "--free"},
            {"names", kFile},
            {"users", "list", kFile},
            {"settings", "show", kFile},
            {"relation", "show", kFile, "--realm", "1001"},
            {"relation", "list", kFile},
            {"transactions", kFile, "--from", "2024-01-01"},
            {"transactions", kFile, "--txn", "1"},
            {"transaction", "exists", kFile, "--realm", "1001", "--request", "request-journal"},
            {"rejected", "list", kFile},
            {"realm", "show", kFile},
            {"persona", kFile, "--role", "0"},
            {"plugin", "check", kFile},
            {"reminder", "show", kFile},
            {"audit", "show", kFile},
            {"audit", "verify", kFile},
            {"log", kFile}};
  }
  static std::vector<std::string> Booking() {
    return {"journal",   "record", kFile,       "--realm",   "1001",   "--amount", "1",
            "--request", "r",      "--expense", "Utilities", "--name", "Walker"};
  }

  // By their names, without what the test itself writes.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(In("."))) {
      const std::string name = entry.path().filename().string();
      if (entry.is_regular_file() && !name.starts_with("standard-")) files.emplace(name, ContentsOf(entry.path()));
    }
    return files;
  }

  // Fails the test unless each command answers what it answers of the company where it can be worked on.
  template <typename Runner>
  void ExpectToReadAll(Runner&& run) const {
    for (const std::vector<std::string>& reading : Readings()) {
      const Outcome before = Run(reading);
      const Outcome outcome = run(reading);

      EXPECT_EQ(outcome.exitCode, before.exitCode) << reading[0] << " " << reading[1] << ": " << outcome.err;
      // Those go by the clock, or tell of commands that have run meanwhile.
      if (reading[0] != "log" && reading[0] != "reminder") {
        EXPECT_EQ(outcome.out, before.out) << reading[0];
      }
      EXPECT_THAT(outcome.err, AllOf(HasSubstr("note: "), HasSubstr("is read from a copy in a temporary folder")));
    }
  }
};

TEST_F(OnlyReadBooks, OnANetworkShareAreReadAndStayAsTheyAre) {
  ExpectToReadAll([this](const auto& reading) { return RunProgramOnANetworkShare(In("."), reading); });
  const auto before = Files();

  const Outcome outcome = RunProgramOnANetworkShare(In("."), Booking());

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Nothing was saved"), HasSubstr(kFile), HasSubstr("network share"),
                                 HasSubstr("--network-share")));
  for (const std::vector<std::string>& reading : Readings()) RunProgramOnANetworkShare(In("."), reading);
  EXPECT_EQ(Files(), before);
}

TEST_F(OnlyReadBooks, OnANetworkShareTellProgramsWhy) {
  const Json note = Json::parse(RunProgramOnANetworkShare(In("."), {"accounts", kFile, "--json"}).err).at("note");

  EXPECT_EQ(note.at("onlyRead"), "network-share");
  EXPECT_TRUE(note.at("readsACopy"));
}

TEST_F(OnlyReadBooks, OnANetworkShareAreWorkedOnWhenAnAdministratorInsists) {
  std::vector<std::string> booking = Booking();
  booking.emplace_back("--network-share");

  const Outcome outcome = RunProgramOnANetworkShare(In("."), booking);

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(Run({"transaction", "exists", kFile, "--realm", "1001", "--request", "r"}).exitCode, 0);
}

TEST_F(OnlyReadBooks, OnANetworkShareAreNotWorkedOnWhenSomebodyElseInsists) {
  Done({"users", "add", kFile, "Clerk", "--right", "journal:create"});
  std::vector<std::string> booking = Booking();
  booking.insert(booking.end(), {"--network-share", "--user", "Clerk"});

  const Outcome outcome = RunProgramOnANetworkShare(In("."), booking);

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Clerk"), HasSubstr("no administrator"), HasSubstr("network share")));
}

TEST_F(OnlyReadBooks, OnANetworkShareAreMadeOnlyWhenSomebodyInsists) {
  const Outcome outcome = RunProgramOnANetworkShare(In("."), {"init", "new.company", "--name", "New"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("new.company"), HasSubstr("network share"), HasSubstr("--network-share")));
  EXPECT_FALSE(std::filesystem::exists(In("new.company")));
  EXPECT_EQ(RunProgramOnANetworkShare(In("."), {"init", "new.company", "--name", "New", "--network-share"}).exitCode,
            0);
}

TEST_F(OnlyReadBooks, OnALocalDiskAreWorkedOnAsEver) {
  std::vector<std::string> booking = Booking();
  booking.emplace_back("--network-share");

  Done(booking);
}

TEST_F(OnlyReadBooks, WithAHardLinkAreReadAndStayAsTheyAre) {
  std::error_code error;
  const auto link = [&] {
    std::filesystem::create_hard_link(In(kFile), In("other.company"), error);
  };
  link();
  if (error) GTEST_SKIP() << "no hard links here";
  std::filesystem::remove(In("other.company"));
  ExpectToReadAll([&](const auto& reading) {
    link();
    const Outcome outcome = Run(reading);
    std::filesystem::remove(In("other.company"));
    return outcome;
  });
  link();
  const auto before = Files();

  const Outcome outcome = Run(Booking());

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Nothing was saved"), HasSubstr(kFile), HasSubstr("hard link"),
                                 HasSubstr("Remove the other name, or copy the file")));
  EXPECT_EQ(Files(), before);
}

TEST_F(OnlyReadBooks, OnAReadOnlyMediumAreRead) {
  if (!MayMountASmallDisk()) GTEST_SKIP() << "this user may not mount a disk, or its mount is not seen by Wine";

  ExpectToReadAll([this](const auto& reading) { return RunProgramOnAReadOnlyDisk(In("."), reading); });

  const Outcome outcome = RunProgramOnAReadOnlyDisk(In("."), Booking());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Nothing was saved"), HasSubstr("read-only medium")));
  EXPECT_TRUE(std::filesystem::is_empty(In("temporary")));
}

class AnAuditorsBooks : public OnlyReadBooks {
 protected:
  static constexpr std::filesystem::perms kMayRead =
      std::filesystem::perms::owner_read | std::filesystem::perms::group_read | std::filesystem::perms::others_read;
  static constexpr std::filesystem::perms kMayEnter =
      std::filesystem::perms::owner_exec | std::filesystem::perms::group_exec | std::filesystem::perms::others_exec;

  void SetUp() override {
    if (!MayRunWithoutRights()) GTEST_SKIP() << "Wine's files are root's, so it runs for nobody else";
    std::filesystem::create_directory(In("books"));
  }
  ~AnAuditorsBooks() override {
    std::error_code ignored;
    std::filesystem::permissions(In("books"), std::filesystem::perms::all, ignored);
  }

  // The company is moved to a place where these rights hold for all users but root, and back.
  Outcome Audit(std::vector<std::string> arguments, std::filesystem::perms ofFile,
                std::filesystem::perms ofFolder) const {
    const std::filesystem::path here = In("books") / kFile;
    const std::filesystem::perms before = std::filesystem::status(In(kFile)).permissions();
    std::filesystem::rename(In(kFile), here);
    std::filesystem::permissions(here, ofFile);
    std::filesystem::permissions(In("books"), ofFolder);
    std::ranges::replace(arguments, std::string(kFile), "books/" + std::string(kFile));
    const Outcome outcome = RunProgramWithoutRights(In("."), arguments);
    std::filesystem::permissions(In("books"), std::filesystem::perms::all);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(In("books")), {}), 1);
    std::filesystem::permissions(here, before);
    std::filesystem::rename(here, In(kFile));
    return outcome;
  }
};

TEST_F(AnAuditorsBooks, ThatAreWriteProtectedAreRead) {
  const auto audit = [this](const auto& arguments) {
    return Audit(arguments, kMayRead, std::filesystem::perms::all);
  };

  ExpectToReadAll(audit);

  const Outcome outcome = audit(Booking());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Nothing was saved"), HasSubstr("books/alder.company is write-protected")));
}

TEST_F(AnAuditorsBooks, InAWriteProtectedFolderAreRead) {
  const auto audit = [this](const auto& arguments) {
    return Audit(arguments, std::filesystem::perms::all, kMayRead | kMayEnter);
  };

  ExpectToReadAll(audit);

  const Outcome outcome = audit(Booking());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Nothing was saved"), HasSubstr("right to write in books")));
}

}  // namespace
