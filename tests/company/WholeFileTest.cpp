#include <gmock/gmock.h>

#include "standalone/company/WholeFile.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::HasSubstr;

class AFileForOtherPrograms : public CompanyFixture {
 protected:
  std::ptrdiff_t FilesInTheFolder() const {
    return std::distance(std::filesystem::directory_iterator(folder_ / "."), std::filesystem::directory_iterator());
  }

  const std::filesystem::path file_ = folder_ / "birch.journal";
};

TEST_F(AFileForOtherPrograms, IsThereOnceItIsComplete) {
  WholeFile whole(file_, path_);
  whole.Write("one ");
  whole.Write("two");
  const bool wasThere = std::filesystem::exists(file_);

  const bool isPublished = whole.Publish(/*replaces=*/false);

  EXPECT_FALSE(wasThere);
  EXPECT_TRUE(isPublished);
  EXPECT_EQ(ReadFile(file_), "one two");
}

TEST_F(AFileForOtherPrograms, LeavesNothingBehindWhenItIsGivenUp) {
  const std::ptrdiff_t before = FilesInTheFolder();
  {
    WholeFile whole(file_, path_);
    whole.Write("one");
  }

  EXPECT_EQ(FilesInTheFolder(), before);
}

TEST_F(AFileForOtherPrograms, NeverReplacesOneThatCameMeanwhile) {
  WholeFile whole(file_, path_);
  whole.Write("one");
  WriteFile(file_, "another's");

  const bool isPublished = whole.Publish(/*replaces=*/false);

  EXPECT_FALSE(isPublished);
  EXPECT_EQ(ReadFile(file_), "another's");
}

TEST_F(AFileForOtherPrograms, ReplacesOneOnRequest) {
  WriteFile(file_, "before");
  const std::ptrdiff_t before = FilesInTheFolder();
  {
    WholeFile whole(file_, path_);
    EXPECT_TRUE(whole.IsTaken());
    whole.Write("after");

    EXPECT_TRUE(whole.Publish(/*replaces=*/true));
  }

  EXPECT_EQ(ReadFile(file_), "after");
  EXPECT_EQ(FilesInTheFolder(), before);
}

TEST_F(AFileForOtherPrograms, IsNeverTheCompanyOrWhatLiesBesideIt) {
  for (const char* const name : {"birch.company", "birch.company-wal", "birch.company.log", "birch.company.identity"}) {
    EXPECT_THAT(MessageOf<InvalidInput>([&] { WholeFile(folder_ / name, path_); }), HasSubstr("belongs to it")) << name;
  }
}

TEST_F(AFileForOtherPrograms, IsNeverAFolder) {
  std::filesystem::create_directory(file_);

  const WholeFile whole(file_, path_);

  EXPECT_THAT(MessageOf<InvalidInput>([&] { static_cast<void>(whole.IsTaken()); }), HasSubstr("is no file"));
}

TEST_F(AFileForOtherPrograms, NeedsItsFolder) {
  WholeFile whole(folder_ / "missing" / "birch.journal", path_);

  EXPECT_THAT(MessageOf<std::runtime_error>([&] { whole.Write("one"); }),
              HasSubstr("was not written. Check that its folder exists"));
}

}  // namespace
}  // namespace standalone
