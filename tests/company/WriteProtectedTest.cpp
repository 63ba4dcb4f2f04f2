// Companies of which a user may read everything and write nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "standalone/values/Text.h"
#include "tests/company/CompanyFixture.h"
#include "tests/support/NobodysRights.h"

namespace standalone {
namespace {

using std::filesystem::perms;
using testing::AllOf;
using testing::HasSubstr;

constexpr perms kMayRead = perms::owner_read | perms::group_read | perms::others_read;
constexpr perms kMayWrite = kMayRead | perms::owner_write | perms::group_write | perms::others_write;
constexpr perms kMayEnter = perms::owner_exec | perms::group_exec | perms::others_exec;

class AnAuditor : public CompanyFixture {
 protected:
  AnAuditor() {
    std::filesystem::permissions(path_.parent_path(), kMayWrite | kMayEnter);
    std::filesystem::permissions(path_, kMayWrite);
  }
  ~AnAuditor() override { std::filesystem::permissions(path_.parent_path(), perms::all); }

  // What an auditor reads, and what he is told when he changes something; the company stays as it is.
  std::string Refusal() const {
    const std::string before = ReadFile(path_);
    std::string refusal;
    {
      const NobodysRights rights;
      StandaloneHost host(path_);
      EXPECT_EQ(host.Request(Access::kRead, [&] { return host.Settings().Get().companyName; }), "Birch Services");
      refusal = MessageOf<UnitOfWorkError>(
          [&] { host.Request(Access::kWrite, [&] { host.Settings().Set("company-name", "Cedar"); }); });
    }
    EXPECT_EQ(ReadFile(path_), before);
    return refusal;
  }
};

TEST_F(AnAuditor, ReadsACompanyThatIsWriteProtected) {
  std::filesystem::permissions(path_, kMayRead);

  EXPECT_THAT(Refusal(), AllOf(HasSubstr("Nothing was saved"), HasSubstr(PathText(path_) + " is write-protected"),
                               HasSubstr("Give yourself the right to write it")));
}

TEST_F(AnAuditor, ReadsACompanyInAWriteProtectedFolder) {
  std::filesystem::permissions(path_.parent_path(), kMayRead | kMayEnter);

  EXPECT_THAT(Refusal(), AllOf(HasSubstr("Nothing was saved"), HasSubstr("write-protected folder"),
                               HasSubstr("Give yourself the right to write in " + PathText(path_.parent_path()))));
}

TEST_F(AnAuditor, ReadsACompanyWhoseLogIsWriteProtected) {
  const std::filesystem::path log = WithSuffix(path_, "-wal");
  WriteFile(log, "");
  std::filesystem::permissions(log, kMayRead);

  EXPECT_THAT(Refusal(), HasSubstr(PathText(log) + " is write-protected"));
}

TEST_F(AnAuditor, IsToldWhichPartOfACompanyMayNotBeRead) {
  const std::filesystem::path log = WithSuffix(path_, "-wal");
  WriteFile(log, "what a crash left");
  std::filesystem::permissions(log, perms::none);
  const NobodysRights rights;

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile file(path_); }),
              AllOf(HasSubstr(PathText(log) + " cannot be read"), HasSubstr("Give yourself the right to read it")));
}

TEST_F(AnAuditor, WorksOnACompanyThatMayBeWritten) {
  const NobodysRights rights;
  StandaloneHost host(path_);

  host.Request(Access::kWrite, [&] { host.Settings().Set("company-name", "Cedar"); });

  EXPECT_EQ(host.Request(Access::kRead, [&] { return host.Settings().Get().companyName; }), "Cedar");
}

}  // namespace
}  // namespace standalone
