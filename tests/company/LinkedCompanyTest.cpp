// A company that is opened by a symbolic link.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standalone/company/FileNames.h"
#include "standalone/values/Text.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAre;

class ALinkedCompany : public CompanyFixture {
 protected:
  ALinkedCompany() {
    std::filesystem::create_directory(links_);
    std::filesystem::create_symlink(path_, link_);
  }

  std::vector<std::string> NamesBesideTheLink() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(links_))
      names.push_back(entry.path().filename().string());
    return names;
  }

  // As a crash leaves it after three changes, with a changed byte in the first one's.
  void LeaveADamagedLog() const {
    const std::filesystem::path log = WithSuffix(path_, "-wal");
    std::string company;
    std::string changes;
    {
      StandaloneHost host(path_);
      for (const char* const name : {"Alder", "Birch", "Cedar"}) {
        host.Request(Access::kWrite, [&] { host.Settings().Set("company-name", name); });
      }
      company = ReadFile(path_);
      changes = ReadFile(log);
    }
    changes.at(kFirstPageInLog) ^= 1;
    WriteFile(path_, company);
    WriteFile(log, changes);
  }

  static constexpr std::size_t kFirstPageInLog = 32 + 24;
  const std::filesystem::path links_ = folder_ / "links";
  const std::filesystem::path link_ = links_ / "company";
};

TEST_F(ALinkedCompany, KeepsAllThatBelongsToItBesideItsFile) {
  StandaloneHost host(link_);

  host.Request(Access::kWrite, [&] { host.Settings().Set("company-name", "Birch"); });
  Util::Ops::MessageFunctor(host.Log(), Util::Ops::Level::kError, Util::Ops::EventType::kFlow, "test", 1, "Test",
                            "Test")("noted");

  EXPECT_THAT(NamesBesideTheLink(), UnorderedElementsAre("company"));
  EXPECT_TRUE(std::filesystem::exists(CompanyFile::LogPath(path_)));
  EXPECT_EQ(host.CompanyFilePath(), std::filesystem::canonical(path_));
}

TEST_F(ALinkedCompany, GoesByTheSwitchesBesideItsFile) {
  WriteFile(CompanyFile::RemotePath(path_), "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  WriteFile(CompanyFile::RemotePath(link_), "[switches.MultiEntityFeature]\nME_FOR_ALL = true\n");
  StandaloneHost host(link_);

  const bool isOn = host.Request(
      Access::kRead, [&] { return host.Services().killSwitches.IsFeatureEnabled("MultiEntityFeature", "ME_FOR_ALL"); });

  EXPECT_FALSE(isOn);
}

TEST_F(ALinkedCompany, HasTheIdentityOfItsFile) {
  EXPECT_EQ(IdentityOf(link_), std::filesystem::canonical(path_).concat(".identity"));
  EXPECT_EQ(IdentityOf(path_), folder_ / "birch.company.identity");
}

TEST_F(ALinkedCompany, WhoseWriteAheadLogIsDamagedIsRefusedLikeItsFile) {
  LeaveADamagedLog();

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile file(path_); }), HasSubstr("damaged"));
  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile file(link_); }), HasSubstr("damaged"));
}

}  // namespace
}  // namespace standalone
