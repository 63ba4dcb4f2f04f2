#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "standalone/books/SettingsTable.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/storage/sqlite/TemporaryCopy.h"
#include "standalone/values/Errors.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace standalone {
namespace {

using std::filesystem::perms;

// On Windows the folder says who may read a file.
#ifdef _WIN32
constexpr bool kKnowsRights = false;
#else
constexpr bool kKnowsRights = true;
#endif

perms RightsOf(const std::filesystem::path& file) {
  return std::filesystem::status(file).permissions();
}

TEST(ATemporaryCopy, HasTheJournalsAndLiesInAFolderOfItsOwner) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder / "file";
  WriteFile(file, "books");
  WriteFile(folder / "file-wal", "the last bookings");
  WriteFile(folder / "file-journal", "what is to be undone");
  std::filesystem::permissions(file, perms::owner_read);
  std::filesystem::path copied;
  {
    const TemporaryCopy copy(file);
    copied = copy.File();

    EXPECT_EQ(ReadFile(copied), "books");
    EXPECT_EQ(ReadFile(copied.string() + "-wal"), "the last bookings");
    EXPECT_EQ(ReadFile(copied.string() + "-journal"), "what is to be undone");
    EXPECT_NE(RightsOf(copied) & perms::owner_write, perms::none);
    if (kKnowsRights) {
      EXPECT_EQ(RightsOf(copied.parent_path()), perms::owner_all);
    }
  }
  EXPECT_FALSE(std::filesystem::exists(copied.parent_path()));
  // Windows removes no file that may not be written.
  std::filesystem::permissions(file, perms::owner_read | perms::owner_write);
}

#ifndef _WIN32
TEST(ATemporaryCopy, ThatCannotBeMadeForLackOfATemporaryFolderSaysHowToNameOne) {
  const TemporaryFolder folder;
  WriteFile(folder / "file", "books");
  const EnvironmentVariable temporary("TMPDIR", folder / "gone");

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { const TemporaryCopy copy(folder / "file"); }),
              testing::AllOf(testing::HasSubstr("cannot be copied to a temporary folder"), testing::HasSubstr("TMPDIR"),
                             testing::Not(testing::HasSubstr("disk"))));
}

TEST(ATemporaryCopy, AsksForRoomOnlyWhereRoomIsWhatIsMissing) {
  const TemporaryFolder folder;
  WriteFile(folder / "file", "books");
  // Nobody makes a folder there, root neither.
  const EnvironmentVariable temporary("TMPDIR", "/proc");

  EXPECT_THAT(
      MessageOf<CompanyFileError>([&] { const TemporaryCopy copy(folder / "file"); }),
      testing::AllOf(testing::HasSubstr("Check the temporary folder /proc, or let the environment name another one"),
                     testing::Not(testing::HasSubstr("room"))));
}

TEST(ATemporaryCopy, OfWhatCannotBeReadBlamesWhereThatLies) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "file");

  EXPECT_THAT(
      MessageOf<CompanyFileError>([&] { const TemporaryCopy copy(folder / "file"); }),
      testing::AllOf(testing::HasSubstr((folder / "file").string() + " cannot be read"),
                     testing::HasSubstr("Check the disk on which it lies"), testing::Not(testing::HasSubstr("room"))));
}
#endif

// Each change is one of both settings.
TEST(ATemporaryCopy, IsOfOneMomentWhileOthersWork) {
  constexpr int kCopies = 20;
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "birch.company";
  NewCompany company;
  company.name = "0";
  company.homeCurrency = "AAA";
  CompanyFile::Create(path, company);
  const std::jthread others([&](const std::stop_token& end) {
    CompanyFile file(path);
    for (int number = 0; !end.stop_requested(); ++number) {
      UnitOfWork unit(file.Data(), Access::kWrite);
      SettingsTable settings(file.Data());
      settings.Set("company-name", std::to_string(number % 2));
      settings.Set("home-currency", number % 2 == 0 ? "AAA" : "BBB");
      unit.Commit();
      if (number % 3 == 0) file.Data().Execute("PRAGMA wal_checkpoint(TRUNCATE)");
    }
  });
  std::vector<std::string> torn;
  std::set<std::string> seen;

  // Copies that are all of one state would not show that others were working.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  for (int number = 0; number < kCopies || seen.size() < 2; ++number) {
    if (std::chrono::steady_clock::now() >= deadline) break;
    const TemporaryCopy copy(path, std::chrono::minutes(1));
    CompanyFile file(copy.File());
    UnitOfWork unit(file.Data(), Access::kRead);
    const Settings settings = SettingsTable(file.Data()).Get();
    if (settings.homeCurrency != (settings.companyName == "0" ? "AAA" : "BBB")) torn.push_back(settings.companyName);
    seen.insert(settings.companyName);
  }

  EXPECT_TRUE(torn.empty());
  EXPECT_THAT(seen, testing::SizeIs(2));
}

TEST(ATemporaryCopy, OfAFileThatIsNeverTheSameIsGivenUp) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder / "file";
  WriteFile(file, std::string(1 << 20, 'a'));
  const std::jthread other([&](const std::stop_token& end) {
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    for (char byte = 'a'; !end.stop_requested(); ++byte) stream.seekp(0).put(byte).flush();
  });

  std::string message;
  for (const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
       message.empty() && std::chrono::steady_clock::now() < deadline;) {
    try {
      const TemporaryCopy copy(file);
    } catch (const FileInUse& error) {
      message = error.what();
    }
  }

  EXPECT_THAT(message, testing::HasSubstr("is being changed by another program. Try again later."));
}

}  // namespace
}  // namespace standalone
