// What a company is made of belongs to whoever made it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <string>

#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using std::filesystem::perms;
using testing::Each;
using testing::Pair;
using testing::SizeIs;

constexpr perms kOwner = perms::owner_read | perms::owner_write;

// Masks that take nothing from new files, what is usual, and everything.
class AUserWithAnyMask : public testing::TestWithParam<mode_t> {
 protected:
  AUserWithAnyMask() { umask(GetParam()); }
  ~AUserWithAnyMask() override { umask(mask_); }

  std::map<std::string, perms> RightsOfAll() const {
    std::map<std::string, perms> rights;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / ".")) {
      rights.emplace(entry.path().filename().string(), entry.status().permissions());
    }
    return rights;
  }

  const mode_t mask_ = umask(0);
  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "birch.company";
};

INSTANTIATE_TEST_SUITE_P(Of, AUserWithAnyMask, testing::Values(0, 022, 0777),
                         [](const auto& mask) { return "number" + std::to_string(mask.index); });

TEST_P(AUserWithAnyMask, KeepsACompanyAndAllThatBelongsToItToHimself) {
  NewCompany company;
  company.name = "Birch Services";
  CompanyFile::Create(path_, company);
  HostOptions options;
  options.log.fileBytes = 1;
  StandaloneHost host(path_, kAdministratorName, std::move(options));

  host.Request(Access::kWrite, [&] { host.Settings().Set("company-name", "Birch"); });
  for (int line = 0; line < 3; ++line) {
    Util::Ops::MessageFunctor(host.Log(), Util::Ops::Level::kError, Util::Ops::EventType::kFlow, "test", 1, "Test",
                              "Test")("noted");
  }

  const std::map<std::string, perms> rights = RightsOfAll();
  EXPECT_THAT(rights, Each(Pair(testing::_, kOwner)));
  // The company, its write-ahead log and the index of it, the log and the one before.
  EXPECT_THAT(rights, SizeIs(testing::Ge(5U)));
}

TEST_P(AUserWithAnyMask, LeavesALogThatIsThereToWhoMayReadIt) {
  NewCompany company;
  company.name = "Birch Services";
  CompanyFile::Create(path_, company);
  WriteFile(CompanyFile::LogPath(path_), "");
  std::filesystem::permissions(CompanyFile::LogPath(path_), kOwner | perms::group_read);

  const StandaloneHost host(path_);

  EXPECT_EQ(std::filesystem::status(CompanyFile::LogPath(path_)).permissions(), kOwner | perms::group_read);
}

TEST_P(AUserWithAnyMask, KeepsATemporaryCopyToHimself) {
  WriteFile(path_, "books");
  std::filesystem::permissions(path_, perms::all);

  const TemporaryCopy copy(path_);

  EXPECT_EQ(std::filesystem::status(copy.File()).permissions(), kOwner);
  EXPECT_EQ(std::filesystem::status(copy.File().parent_path()).permissions(), perms::owner_all);
}

}  // namespace
}  // namespace standalone
