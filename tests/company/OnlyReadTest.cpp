// Companies that are only read, as to work on them where they lie would not be safe.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "standalone/values/Text.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Key;
using testing::Not;

using Contents = std::map<std::string, std::string>;

class AnUnsafePlace : public CompanyFixture {
 protected:
  // Of the folder in which the company lies, by their names.
  Contents Files() const {
    Contents files;
    for (const auto& entry : std::filesystem::directory_iterator(path_.parent_path())) {
      files.emplace(entry.path().filename().string(), ReadFile(entry.path()));
    }
    return files;
  }

  static std::string NameIn(StandaloneHost& host) {
    return host.Request(Access::kRead, [&] { return host.Settings().Get().companyName; });
  }
  static void Rename(StandaloneHost& host, const char* name) {
    host.Request(Access::kWrite, [&] { host.Settings().Set("company-name", name); });
  }
  static std::string Refusal(StandaloneHost& host) {
    return MessageOf<UnitOfWorkError>([&] { Rename(host, "Cedar"); });
  }

  // The company as a program leaves it that is killed right after it gave it this name.
  void LeaveInTheLog(const char* name) const {
    Contents files;
    {
      StandaloneHost host(path_);
      Rename(host, name);
      for (const char* const suffix : {"", "-wal"}) files.emplace(suffix, ReadFile(WithSuffix(path_, suffix)));
    }
    for (const auto& [suffix, bytes] : files) WriteFile(WithSuffix(path_, suffix), bytes);
  }
};

class AHardLink : public AnUnsafePlace {
 protected:
  void SetUp() override {
    std::error_code error;
    std::filesystem::create_hard_link(path_, other_, error);
    if (error) GTEST_SKIP() << "no hard links here";
  }

  const std::filesystem::path other_ = folder_ / "other.company";
};

TEST_F(AHardLink, LeavesACompanyThatIsRead) {
  std::filesystem::remove(other_);
  LeaveInTheLog("Dogwood");
  std::filesystem::create_hard_link(path_, other_);
  const Contents before = Files();

  StandaloneHost host(path_);

  EXPECT_EQ(NameIn(host), "Dogwood");
  EXPECT_EQ(Files(), before);
}

TEST_F(AHardLink, LetsNobodyWorkOnTheCompanyUnderEitherName) {
  const Contents before = Files();

  for (const std::filesystem::path& name : {path_, other_}) {
    StandaloneHost host(name);

    EXPECT_THAT(Refusal(host), AllOf(HasSubstr("Nothing was saved"), HasSubstr(PathText(name)), HasSubstr("hard link"),
                                     HasSubstr("two write-ahead logs"), HasSubstr("Remove the other name, or copy")));
  }
  EXPECT_EQ(Files(), before);
}

TEST_F(AHardLink, IsToldOfAtOpening) {
  std::optional<OnlyRead> told;
  OpenOptions options;
  options.tell = [&](const Opening& opening) {
    told = opening.onlyRead;
  };

  const CompanyFile file(path_, options);

  EXPECT_EQ(told, OnlyRead::kOtherNames);
}

TEST_F(AHardLink, LetsTheCompanyBeWorkedOnOnceItIsRemoved) {
  std::filesystem::remove(other_);

  StandaloneHost host(path_);
  Rename(host, "Cedar");

  EXPECT_EQ(NameIn(host), "Cedar");
}

class ANetworkShare : public AnUnsafePlace {
 protected:
  static NetworkShares Shares(bool mayBeWorkedOn) {
    return {.mayBeWorkedOn = mayBeWorkedOn, .isOne = [](const std::filesystem::path&) {
              return true;
            }};
  }
  static HostOptions Here() {
    HostOptions options;
    options.file.busyTimeout = std::chrono::milliseconds(20);
    options.file.networkShares = Shares(false);
    return options;
  }
  static HostOptions Insisting() {
    HostOptions options = Here();
    options.file.networkShares = Shares(true);
    return options;
  }
};

TEST_F(ANetworkShare, HasCompaniesThatAreRead) {
  LeaveInTheLog("Dogwood");
  const Contents before = Files();

  StandaloneHost host(path_, kAdministratorName, Here());

  EXPECT_EQ(NameIn(host), "Dogwood");
  EXPECT_EQ(Files(), before);
}

TEST_F(ANetworkShare, HasCompaniesThatNobodyWorksOn) {
  const Contents before = Files();
  StandaloneHost host(path_, kAdministratorName, Here());

  EXPECT_THAT(Refusal(host),
              AllOf(HasSubstr("Nothing was saved"), HasSubstr(PathText(path_)), HasSubstr("network share"),
                    HasSubstr("Move it to a disk of this machine"), HasSubstr("--network-share")));

  EXPECT_EQ(Files(), before);
}

TEST_F(ANetworkShare, IsNoPlaceForANewCompany) {
  NewCompany company;
  company.name = "Cedar";
  const std::filesystem::path cedar = folder_ / "cedar.company";

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile::Create(cedar, company, Shares(false)); }),
              AllOf(HasSubstr("cedar.company"), HasSubstr("network share"), HasSubstr("--network-share")));
  EXPECT_THAT(Files(), Not(Contains(Key("cedar.company"))));

  CompanyFile::Create(cedar, company, Shares(true));
  EXPECT_THAT(Files(), Contains(Key("cedar.company")));
}

// Memory that programs have in common ends at the machine.
TEST_F(ANetworkShare, HasCompaniesThatAnAdministratorWorksOnWithoutCommonMemory) {
  StandaloneHost host(path_, kAdministratorName, Insisting());

  Rename(host, "Cedar");

  EXPECT_EQ(NameIn(host), "Cedar");
  EXPECT_THAT(Files(), Contains(Key("birch.company-wal")));
  EXPECT_THAT(Files(), Not(Contains(Key("birch.company-shm"))));
}

TEST_F(ANetworkShare, HasCompaniesThatOneProgramAtATimeWorksOn) {
  std::optional<StandaloneHost> host(std::in_place, path_, kAdministratorName, Insisting());
  Rename(*host, "Cedar");

  EXPECT_THAT(MessageOf<FileInUse>([&] { StandaloneHost(path_, kAdministratorName, Insisting()); }),
              HasSubstr("in use by another program"));

  StandaloneHost reader(path_, kAdministratorName, Here());
  EXPECT_EQ(NameIn(reader), "Cedar");
  host.reset();
  host.emplace(path_, kAdministratorName, Insisting());
  EXPECT_EQ(NameIn(*host), "Cedar");
}

TEST_F(ANetworkShare, IsInsistedOnByAdministratorsOnly) {
  {
    StandaloneHost host(path_);
    User clerk;
    clerk.name = "Clerk";
    host.Request(Access::kWrite, [&] { host.Users().Add(clerk); });
  }

  EXPECT_THAT(MessageOf<InvalidInput>([&] { StandaloneHost(path_, "Clerk", Insisting()); }),
              AllOf(HasSubstr("Clerk"), HasSubstr("no administrator"), HasSubstr("network share")));
  StandaloneHost reader(path_, "Clerk", Here());
  EXPECT_EQ(NameIn(reader), "Birch Services");
}

}  // namespace
}  // namespace standalone
