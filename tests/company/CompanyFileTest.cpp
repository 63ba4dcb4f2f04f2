#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "standalone/company/CompanyFile.h"
#include "standalone/storage/sqlite/CompanyFileHeader.h"
#include "standalone/values/Text.h"
#include "tests/company/CompanyFixture.h"

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace standalone {
namespace {

using testing::HasSubstr;

#ifndef _WIN32
// As on a disk without room for a file that is any larger.
template <typename Work>
std::string WithSmallFiles(Work&& work) {
  constexpr rlim_t kMostBytes = 64 << 10;
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{.rlim_cur = kMostBytes, .rlim_max = before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  std::string result = std::forward<Work>(work)();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  return result;
}
#endif

class TheCompanyFile : public CompanyFixture {
 protected:
  std::string Refusal(const std::filesystem::path& path) const {
    return MessageOf<CompanyFileError>([&] { CompanyFile file(path); });
  }

  // Runs SQL against the file as a foreign program would.
  void Tamper(const char* sql) const {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(PathText(path_).c_str(), &handle), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(handle);
    sqlite3_close(handle);
  }
};

// A restored company of fewer pages is moved into the file so: its header, then the new end.
TEST_F(TheCompanyFile, IsNotCalledDamagedWhileASmallerOneIsMovedIn) {
  constexpr int kMoves = 2'000;
  const std::size_t small = ReadFile(path_).size();
  const auto setPages = [this](std::size_t bytes) {
    const std::size_t pages = bytes / 4096;
    const char count[] = {0, 0, static_cast<char>(pages >> 8U), static_cast<char>(pages)};
    std::fstream(path_, std::ios::binary | std::ios::in | std::ios::out).seekp(28).write(count, sizeof count);
  };
  int refused = 0;

  for (int move = 0; move < kMoves; ++move) {
    std::filesystem::resize_file(path_, small + 4096);
    setPages(small + 4096);
    const std::jthread other([&] {
      setPages(small);
      std::filesystem::resize_file(path_, small);
    });
    for (int look = 0; look < 4; ++look) {
      try {
        RequireCompanyFileHeader(path_, SchemaSteps().size());
      } catch (const CompanyFileError&) {
        ++refused;
      }
    }
  }

  EXPECT_EQ(refused, 0);
}

#ifndef _WIN32
TEST_F(TheCompanyFile, IsNotBlamedForATemporaryFolderWithoutRoom) {
  CompanyFile file(path_);
  const UnitOfWork reading(file.Data(), Access::kRead);
  Statement sorted(file.Data(), Writes::kNothing,
                   "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50000) SELECT "
                   "printf('%0500d', i) AS text FROM n ORDER BY text DESC");
  const auto read = [&] {
    for (Rows rows = sorted.Query(); rows.Step();) continue;
  };

  EXPECT_THAT(WithSmallFiles([&] { return MessageOf<UnitOfWorkError>(read); }),
              testing::AllOf(HasSubstr("Make room in the temporary folder /"), HasSubstr("SQLITE_TMPDIR")));
}
#endif

TEST_F(TheCompanyFile, IsMadeWithItsSettingsAndAnAdministrator) {
  StandaloneHost host(path_);

  const Settings settings = host.Request(Access::kRead, [&] { return host.Settings().Get(); });
  const std::vector<User> users = host.Request(Access::kRead, [&] { return host.Users().List(); });

  EXPECT_EQ(settings.companyName, "Birch Services");
  EXPECT_EQ(settings.homeCurrency, "USD");
  ASSERT_EQ(users.size(), 1U);
  EXPECT_EQ(users[0].name, "Admin");
  EXPECT_TRUE(users[0].administrator);
}

TEST_F(TheCompanyFile, KeepsAWriteAheadLogAndItsReferences) {
  CompanyFile file(path_);

  EXPECT_EQ(file.Data().QueryText("PRAGMA journal_mode"), "wal");
  EXPECT_EQ(file.Data().QueryNumber("PRAGMA foreign_keys"), 1);
  EXPECT_EQ(file.Data().QueryNumber("SELECT count(*) FROM pragma_table_list WHERE type = 'table' AND schema = 'main' "
                                    "AND strict = 0 AND name NOT LIKE 'sqlite_%'"),
            0);
}

TEST_F(TheCompanyFile, BringsWhatIsCommittedToTheDisk) {
  constexpr int kFull = 2;

  CompanyFile file(path_);

  EXPECT_EQ(file.Data().QueryNumber("PRAGMA synchronous"), kFull);
}

TEST_F(TheCompanyFile, IsNotMadeBesideWhatIsLeftOfAnotherOne) {
  for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
    const std::filesystem::path company = folder_ / (std::string("cedar") + suffix + ".company");
    const std::filesystem::path left = WithSuffix(company, suffix);
    WriteFile(left, "left");
    NewCompany cedar;
    cedar.name = "Cedar Leasing";

    EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile::Create(company, cedar); }), HasSubstr(PathText(left)));

    EXPECT_FALSE(std::filesystem::exists(company));
    EXPECT_EQ(ReadFile(left), "left");
  }
}

TEST_F(TheCompanyFile, ThatAnotherProgramLocksAgainstReadersIsInUse) {
  SqliteDatabase other(path_, kBusyTimeout);
  other.Execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");

  EXPECT_THAT(
      MessageOf<CompanyFileError>([&] { CompanyFile file(path_, {.busyTimeout = std::chrono::milliseconds(20)}); }),
      AllOf(HasSubstr(path_.string()), HasSubstr("in use by another program")));
}

TEST_F(TheCompanyFile, MayBearANameInAnyScriptWithWhatLiesBesideIt) {
  const std::filesystem::path folder = folder_ / "";
  const std::filesystem::path place = folder / u8"M\u00fcller & S\u00f6hne \u682a\u5f0f\u4f1a\u793e";
  const std::filesystem::path path = place / u8"\u0411\u0443\u0445 2026.company";
  std::filesystem::create_directory(place);
  NewCompany company;
  company.name = "Birch Services";
  CompanyFile::Create(path, company);
  WriteFile(CompanyFile::RemotePath(path), "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  StandaloneHost host(path);
  const bool isOn = host.Services().killSwitches.IsFeatureEnabled("MultiEntityFeature", "ME_FOR_ALL");
  Util::Ops::MessageFunctor(host.Log(), Util::Ops::Level::kError, Util::Ops::EventType::kDiagnostic, "standalone", 1,
                            "Test", "void Test()")("%s", "written");

  EXPECT_FALSE(isOn);
  EXPECT_THAT(ReadFile(CompanyFile::LogPath(path)), HasSubstr("written"));
  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile::Create(path, company); }),
              HasSubstr("\u0411\u0443\u0445 2026.company"));
}

TEST_F(TheCompanyFile, IsNotMadeOverAnotherFile) {
  WriteFile(folder_ / "other", "precious");
  NewCompany company;
  company.name = "Birch Services";

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile::Create(folder_ / "other", company); }),
              HasSubstr("There is already a file"));

  EXPECT_EQ(ReadFile(folder_ / "other"), "precious");
}

TEST_F(TheCompanyFile, IsNotMadeInAFolderThatIsNotThere) {
  NewCompany company;
  company.name = "Birch Services";

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile::Create(folder_ / "no/such/folder", company); }),
              HasSubstr("cannot be made"));
}

TEST_F(TheCompanyFile, IsNotMadeOfBadValuesAndLeavesNothingBehind) {
  NewCompany unnamed;
  NewCompany badCurrency;
  badCurrency.name = "Birch";
  badCurrency.homeCurrency = "dollars";

  EXPECT_THROW(CompanyFile::Create(folder_ / "new", unnamed), InvalidInput);
  EXPECT_THAT(MessageOf<InvalidInput>([&] { CompanyFile::Create(folder_ / "new", badCurrency); }),
              HasSubstr("\"dollars\""));

  EXPECT_FALSE(std::filesystem::exists(folder_ / "new"));
}

TEST_F(TheCompanyFile, StandsAloneInItsFolderOnceItIsMade) {
  const auto files =
      std::distance(std::filesystem::directory_iterator(path_.parent_path()), std::filesystem::directory_iterator());

  EXPECT_EQ(files, 1);
}

TEST_F(TheCompanyFile, ThatIsNotThereIsNotOpenedAndNotMade) {
  EXPECT_THAT(Refusal(folder_ / "missing"), HasSubstr("There is no company file"));

  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
}

TEST_F(TheCompanyFile, IsNotAFolder) {
  std::filesystem::create_directory(folder_ / "folder");

  EXPECT_THAT(Refusal(folder_ / "folder"), HasSubstr("is not a company file"));
}

TEST_F(TheCompanyFile, IsNotATextAndTheTextStaysAsItIs) {
  const std::string text(500, 'x');
  WriteFile(folder_ / "letter", text);

  EXPECT_THAT(Refusal(folder_ / "letter"), HasSubstr("is not a company file"));

  EXPECT_EQ(ReadFile(folder_ / "letter"), text);
}

TEST_F(TheCompanyFile, IsNotAnEmptyFile) {
  WriteFile(folder_ / "empty", "");

  EXPECT_THAT(Refusal(folder_ / "empty"), HasSubstr("is not a company file"));

  EXPECT_EQ(std::filesystem::file_size(folder_ / "empty"), 0U);
}

TEST_F(TheCompanyFile, IsNotTheDatabaseOfAnotherProgram) {
  Tamper("PRAGMA application_id = 7");
  const std::string before = ReadFile(path_);

  EXPECT_THAT(Refusal(path_), HasSubstr("is not a company file"));

  EXPECT_EQ(ReadFile(path_), before);
}

TEST_F(TheCompanyFile, OfANewerProgramIsRefusedUntouched) {
  Tamper("PRAGMA user_version = 99");
  const std::string before = ReadFile(path_);

  EXPECT_THAT(Refusal(path_), AllOf(HasSubstr("schema version 99"), HasSubstr("newer program")));

  EXPECT_EQ(ReadFile(path_), before);
}

TEST_F(TheCompanyFile, WhoseEndIsMissingIsDamagedAndStaysAsItIs) {
  std::filesystem::resize_file(path_, std::filesystem::file_size(path_) / 2);
  const std::string before = ReadFile(path_);

  EXPECT_THAT(Refusal(path_), AllOf(HasSubstr("is damaged"), HasSubstr("Restore it from a backup")));

  EXPECT_EQ(ReadFile(path_), before);
}

TEST_F(TheCompanyFile, WithGarbageInItIsDamagedAndStaysAsItIs) {
  std::string bytes = ReadFile(path_);
  bytes.replace(4096, 4096, std::string(4096, '\x55'));
  WriteFile(path_, bytes);

  EXPECT_THAT(Refusal(path_), HasSubstr("is damaged"));

  EXPECT_EQ(ReadFile(path_), bytes);
}

TEST_F(TheCompanyFile, WithoutOneOfItsTablesIsDamaged) {
  Tamper("DROP TABLE me_rejected_transaction");

  EXPECT_THAT(Refusal(path_), HasSubstr("its table me_rejected_transaction is missing"));
}

TEST_F(TheCompanyFile, HasANameThatIsOneToTheSystem) {
  const std::filesystem::path withNul(std::string("birch\0.company", 14));
  NewCompany company;
  company.name = "Birch Services";

  for (const std::filesystem::path& name : {std::filesystem::path(), withNul}) {
    EXPECT_THAT(MessageOf<InvalidInput>([&] { CompanyFile::Create(name, company); }), HasSubstr("name"));
    EXPECT_THAT(MessageOf<InvalidInput>([&] { CompanyFile file(name); }), HasSubstr("name"));
  }
}

TEST_F(TheCompanyFile, MayHaveAnyCharactersInItsName) {
  const std::filesystem::path path = folder_ / "Bücher & Söhne 50%.company";
  NewCompany company;
  company.name = "Bücher & Söhne";
  CompanyFile::Create(path, company);

  StandaloneHost host(path);

  EXPECT_EQ(host.Request(Access::kRead, [&] { return host.Settings().Get().companyName; }), "Bücher & Söhne");
}

}  // namespace
}  // namespace standalone
