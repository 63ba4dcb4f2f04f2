#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "standalone/books/SettingsTable.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/storage/sqlite/TemporaryCopy.h"
#include "standalone/values/Errors.h"
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
  setenv("TMPDIR", (folder / "gone").c_str(), 1);

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { const TemporaryCopy copy(folder / "file"); }),
              testing::AllOf(testing::HasSubstr("cannot be copied to a temporary folder"), testing::HasSubstr("TMPDIR"),
                             testing::Not(testing::HasSubstr("disk"))));
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

  for (int number = 0; number < kCopies; ++number) {
    const TemporaryCopy copy(path, std::chrono::minutes(1));
    CompanyFile file(copy.File());
    UnitOfWork unit(file.Data(), Access::kRead);
    const Settings settings = SettingsTable(file.Data()).Get();
    if (settings.homeCurrency != (settings.companyName == "0" ? "AAA" : "BBB")) torn.push_back(settings.companyName);
  }

  EXPECT_TRUE(torn.empty());
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
  while (message.empty()) {
    try {
      const TemporaryCopy copy(file);
    } catch (const FileInUse& error) {
      message = error.what();
    }
  }

  EXPECT_NE(message.find("is being changed by another program. Try again later."), std::string::npos);
}

}  // namespace
}  // namespace standalone
