#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "standalone/company/LogFile.h"
#include "standalone/company/LogReader.h"
#include "standalone/company/OperationsLog.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class TheOperationsLog : public testing::Test {
 protected:
  static void Write(OperationsLog& log, std::string_view message, Util::Ops::Level level = Util::Ops::Level::kTrace) {
    log.Write({.level = level,
               .eventType = Util::Ops::EventType::kFlow,
               .sourceFile = "Src/MultiEntityDriver",
               .sourceLine = 42,
               .shortName = "MultiEntityDriver::GetRelation",
               .signature = "static MEStatusCode MultiEntityDriver::GetRelation(Util::TString)",
               .message = message});
  }

  std::filesystem::path NewCompanyFile() const {
    const std::filesystem::path company = folder_ / "birch.company";
    NewCompany values;
    values.name = "Birch";
    CompanyFile::Create(company, values);
    return company;
  }

  static bool AppendsInOneStep() {
#ifdef _WIN32
    return false;
#else
    return true;
#endif
  }

  static auto Message(const char* text) { return Field(&LogLine::message, text); }

  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "birch.company.log";
  LogReader reader_{path_};
};

TEST_F(TheOperationsLog, LeavesOutWhatIsBelowItsLeastLevel) {
  OperationsLog log(path_, "clerk", {.least = Util::Ops::Level::kWarning});
  EXPECT_FALSE(log.Wants(Util::Ops::Level::kNotice));
  EXPECT_TRUE(log.Wants(Util::Ops::Level::kWarning));

  Write(log, "a note");
  Write(log, "a warning", Util::Ops::Level::kWarning);
  log.Flush();

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("a warning")));
}

TEST_F(TheOperationsLog, IsObservedAsAWholeWhateverItsLeastLevel) {
  OperationsLog log(path_, "clerk", {.least = Util::Ops::Level::kWarning});
  std::vector<std::string> observed;
  log.SetObserver([&](const Util::Ops::Line& line) { observed.emplace_back(line.message); });
  EXPECT_TRUE(log.Wants(Util::Ops::Level::kTrace));

  Write(log, "a note");
  log.Flush();

  EXPECT_THAT(observed, ElementsAre("a note"));
  EXPECT_THAT(reader_.LastLines(10), IsEmpty());
}

TEST_F(TheOperationsLog, GivesEveryColumnBackAsItWasWritten) {
  OperationsLog log(path_, "clerk");
  Write(log, "MULTIENTITY::Entering GetRelation", Util::Ops::Level::kWarning);
  log.Flush();

  const std::vector<LogLine> lines = reader_.LastLines(10);

  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_THAT(lines[0].time, MatchesRegex("....-..-..T..:..:..\\....Z"));
  EXPECT_EQ(lines[0].user, "clerk");
  EXPECT_EQ(lines[0].level, 3);
  EXPECT_EQ(lines[0].eventType, 6);
  EXPECT_EQ(lines[0].sourceFile, "Src/MultiEntityDriver");
  EXPECT_EQ(lines[0].sourceLine, 42);
  EXPECT_EQ(lines[0].shortName, "MultiEntityDriver::GetRelation");
  EXPECT_EQ(lines[0].signature, "static MEStatusCode MultiEntityDriver::GetRelation(Util::TString)");
  EXPECT_EQ(lines[0].message, "MULTIENTITY::Entering GetRelation");
}

TEST_F(TheOperationsLog, KeepsALineThatHoldsLineBreaksTabsAndOtherControlCharactersOneLine) {
  const std::string message = "a\tb\nc\rd\\e\\n\x01\x7F \xC3\xBC trailing ";
  OperationsLog log(path_, "o\tk");
  Write(log, message);
  Write(log, "next");
  log.Flush();

  const std::vector<LogLine> lines = reader_.LastLines(10);

  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[0].message, message);
  EXPECT_EQ(lines[0].user, "o\tk");
  EXPECT_EQ(lines[1].message, "next");
}

TEST_F(TheOperationsLog, HoldsLinesBackUntilItIsFlushed) {
  OperationsLog log(path_, "clerk");

  Write(log, "one");
  EXPECT_THAT(reader_.LastLines(10), IsEmpty());
  log.Flush();

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("one")));
}

TEST_F(TheOperationsLog, WritesWhatHasComeTogether) {
  const std::string filler(15'000, 'x');
  OperationsLog log(path_, "clerk");

  for (int line = 0; line < 3; ++line) Write(log, filler);

  EXPECT_THAT(reader_.LastLines(10), SizeIs(2));
}

TEST_F(TheOperationsLog, WritesAnErrorAtOnceWithTheLinesBeforeIt) {
  OperationsLog log(path_, "clerk");

  Write(log, "one");
  Write(log, "error", Util::Ops::Level::kError);

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("one"), Message("error")));
}

TEST_F(TheOperationsLog, WritesWhatIsLeftWhenItIsClosed) {
  {
    Write(*std::make_unique<OperationsLog>(path_, "clerk"), "one");
  }

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("one")));
}

TEST_F(TheOperationsLog, IsContinuedByTheNextProgram) {
  {
    Write(*std::make_unique<OperationsLog>(path_, "clerk"), "one");
  }
  {
    Write(*std::make_unique<OperationsLog>(path_, "clerk"), "two");
  }

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("one"), Message("two")));
  EXPECT_THAT(reader_.LastLines(1), ElementsAre(Message("two")));
  EXPECT_THAT(reader_.LastLines(0), IsEmpty());
}

TEST_F(TheOperationsLog, IsRotatedAndReadAcrossItsFiles) {
  OperationsLog log(path_, "clerk", {.fileBytes = 1000, .olderFiles = 3});
  Write(log, "one");
  log.Flush();
  const std::string filler(600, 'x');
  Write(log, filler);
  log.Flush();
  Write(log, "three");
  log.Flush();
  Write(log, "four");
  log.Flush();

  EXPECT_TRUE(std::filesystem::exists(folder_ / "birch.company.1.log"));
  EXPECT_THAT(reader_.LastLines(3), ElementsAre(Message(filler.c_str()), Message("three"), Message("four")));
}

TEST_F(TheOperationsLog, IsRotatedOnceByTwoProgramsThatFindItFull) {
  const std::string filler(600, 'x');
  OperationsLog one(path_, "clerk", {.fileBytes = 1000, .olderFiles = 1});
  OperationsLog other(path_, "clerk", {.fileBytes = 1000, .olderFiles = 1});
  Write(one, filler);
  one.Flush();

  Write(one, "first of the new file");
  Write(other, "second of it");
  Write(one, std::string(100, 'y'));
  one.Flush();
  other.Flush();

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message(filler.c_str()), Message("first of the new file"),
                                                 Message(std::string(100, 'y').c_str()), Message("second of it")));
}

TEST_F(TheOperationsLog, LosesNoLineToProgramsThatRotateItAtTheSameTime) {
  if (!AppendsInOneStep()) GTEST_SKIP() << "lines may be lost when several programs write at once";
  constexpr std::size_t kFileBytes = 200'000;
  constexpr std::size_t kLongestPiece = 40'000;
  const auto write = [this](const char* user) {
    OperationsLog log(path_, user, {.fileBytes = kFileBytes, .olderFiles = 1000});
    for (std::size_t line = 0; line < 4000; ++line) {
      Write(log, std::string(100 + line % 900, 'x'));
      if (line % 40 == 0) log.Flush();
    }
  };
  std::thread second(write, "second");
  std::thread third(write, "third");

  write("first");
  second.join();
  third.join();

  EXPECT_THAT(reader_.LastLines(100'000), SizeIs(12'000));
  for (std::size_t older = 1; std::filesystem::exists(OlderLog(path_, older)); ++older) {
    EXPECT_GT(std::filesystem::file_size(OlderLog(path_, older)), kFileBytes - kLongestPiece) << older;
  }
}

// As of a program that was killed while it rotated the log.
TEST_F(TheOperationsLog, TakesTheFirstNameThatIsFreeForWhatIsOlder) {
  WriteFile(OlderLog(path_, 2), "second\n");
  WriteFile(OlderLog(path_, 3), "third\n");
  OperationsLog log(path_, "clerk", {.fileBytes = 1000, .olderFiles = 3});
  Write(log, std::string(900, 'x'));
  log.Flush();

  Write(log, std::string(200, 'y'));
  log.Flush();

  EXPECT_EQ(ReadFile(OlderLog(path_, 2)), "second\n");
  EXPECT_EQ(ReadFile(OlderLog(path_, 3)), "third\n");
  EXPECT_THAT(reader_.LastLines(10), SizeIs(2));
}

TEST_F(TheOperationsLog, GoesOnInANewFileWhenItsFileIsMovedAway) {
  OperationsLog log(path_, "clerk");
  Write(log, "one");
  log.Flush();
  std::filesystem::rename(path_, folder_ / "moved away");

  Write(log, "two");
  log.Flush();

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("two")));
}

TEST_F(TheOperationsLog, LeavesAloneWhatHasTheNameOfAnOlderOneAndIsNone) {
  const std::filesystem::path folder = OlderLog(path_, 1);
  std::filesystem::create_directory(folder);
  OperationsLog log(path_, "clerk", {.fileBytes = 1000, .olderFiles = 1});

  for (int line = 0; line < 10; ++line) {
    Write(log, std::string(300, 'x'));
    log.Flush();
  }

  EXPECT_TRUE(std::filesystem::is_directory(folder));
  EXPECT_FALSE(log.Wants(Util::Ops::Level::kError));
  EXPECT_THAT(reader_.LastLines(4), SizeIs(4));
  EXPECT_LT(std::filesystem::file_size(path_), 3000U);
}

TEST_F(TheOperationsLog, IsReadFromItsEndAsFarAsTheLimitGoes) {
  const std::string line = "2026-01-31T09:30:00.123Z\tclerk\t0\t6\tSrc/MultiEntityDriver\t42\tname\tsignature\t";
  WriteFile(path_, line + "one\n" + std::string(kMostLogBytes, 'x') + "\n" + line + "two\n");

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("two")));
  EXPECT_THAT(reader_.LastLines(1), ElementsAre(Message("two")));
}

TEST_F(TheOperationsLog, IsReadFromItsEndAsFarAsTheLimitGoesInItsOlderFilesToo) {
  const std::string line = "2026-01-31T09:30:00.123Z\tclerk\t0\t6\tSrc/MultiEntityDriver\t42\tname\tsignature\t";
  WriteFile(OlderLog(path_, 1), line + "one\n" + line + std::string(kMostLogBytes / 2, 'x') + "\n");
  WriteFile(path_, line + std::string(kMostLogBytes / 2, 'y') + "\n" + line + "four\n");

  const std::vector<LogLine> lines = reader_.LastLines(10);

  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[0].message, std::string(kMostLogBytes / 2, 'y'));
  EXPECT_EQ(lines[1].message, "four");
}

TEST_F(TheOperationsLog, ThatIsAFolderIsNotRead) {
  std::filesystem::create_directory(path_);

  EXPECT_THAT(MessageOf<std::runtime_error>([this] { reader_.LastLines(10); }),
              AllOf(HasSubstr("birch.company.log"), HasSubstr("a folder")));
}

TEST_F(TheOperationsLog, PassesOverTextsThatAreNoLinesOfIt) {
  WriteFile(path_, "garbage\n\t\t\t\nx\ty\tz\n");
  OperationsLog log(path_, "clerk");
  Write(log, "one");
  log.Flush();

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("one")));
}

TEST_F(TheOperationsLog, ThatCannotBeWrittenIsGivenUpSilently) {
  std::filesystem::create_directory(path_);

  OperationsLog log(path_, "clerk");
  Write(log, "one", Util::Ops::Level::kError);
  log.Flush();

  EXPECT_FALSE(log.Wants(Util::Ops::Level::kError));
}

TEST_F(TheOperationsLog, KeepsTheLinesOfAUnitThatWasUndone) {
  StandaloneHost host(NewCompanyFile());

  EXPECT_THROW(host.Request(Access::kWrite,
                            [&] {
                              Write(host.Log(), "tried");
                              throw std::runtime_error("no");
                            }),
               std::runtime_error);

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("tried")));
}

TEST_F(TheOperationsLog, HasTheLinesOfAUnitWhenTheUnitEnds) {
  StandaloneHost host(NewCompanyFile());

  host.Request(Access::kRead, [&] { Write(host.Log(), "read"); });

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("read")));
}

TEST_F(TheOperationsLog, IsWrittenTogetherWhereUnitsFollowEachOtherQuickly) {
  constexpr std::size_t kUnits = 2000;
  OperationsLog log(path_, "clerk");
  std::set<std::uintmax_t> sizes;
  for (std::size_t unit = 0; unit < kUnits; ++unit) {
    Write(log, "one");
    log.EndUnit();
    sizes.insert(std::filesystem::file_size(path_));
  }
  log.Flush();

  EXPECT_LT(sizes.size(), kUnits / 2);
  EXPECT_THAT(reader_.LastLines(2 * kUnits), SizeIs(kUnits));
}

TEST_F(TheOperationsLog, HasAllLinesOfALoneUnitAlsoAfterAnError) {
  OperationsLog log(path_, "clerk");
  Write(log, "error", Util::Ops::Level::kError);
  Write(log, "after it");

  log.EndUnit();

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("error"), Message("after it")));
}

TEST_F(TheOperationsLog, HasAllLinesWhenTheHostIsGone) {
  {
    StandaloneHost host(NewCompanyFile());
    host.Request(Access::kRead, [&] { Write(host.Log(), "first"); });
    host.Request(Access::kRead, [&] { Write(host.Log(), "second"); });
  }

  EXPECT_THAT(reader_.LastLines(10), ElementsAre(Message("first"), Message("second")));
}

TEST_F(TheOperationsLog, StaysWholeWhenTwoProgramsWriteIt) {
  if (!AppendsInOneStep()) GTEST_SKIP() << "lines may be lost when several programs write at once";
  const auto write = [this](const char* user) {
    OperationsLog log(path_, user);
    for (std::size_t line = 0; line < 2000; ++line) {
      Write(log, std::string(100 + line % 900, 'x'));
      if (line % 70 == 0) log.Flush();
    }
  };
  std::thread other(write, "second");
  write("first");
  other.join();

  EXPECT_THAT(reader_.LastLines(10'000), SizeIs(4000));
}

}  // namespace
}  // namespace standalone
