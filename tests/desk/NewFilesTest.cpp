#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "standalone/desk/NewFiles.h"
#include "standalone/values/Errors.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

class ANewFile : public DeskFixture {
 protected:
  std::filesystem::path Named(const char* name) const { return path_.parent_path() / name; }
  static std::string ContentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
};

TEST_F(ANewFile, HasTheTextAndNothingElse) {
  RequireNewFile(*company_, Named("text"));
  EXPECT_FALSE(std::filesystem::exists(Named("text")));

  WriteNewFile(*company_, Named("text"), "one\ntwo\n");

  EXPECT_EQ(ContentsOf(Named("text")), "one\ntwo\n");
}

TEST_F(ANewFile, IsNotWrittenOverAnother) {
  std::ofstream(Named("text")) << "before";

  EXPECT_THROW(RequireNewFile(*company_, Named("text")), standalone::InvalidInput);
  EXPECT_THROW(WriteNewFile(*company_, Named("text"), "after"), standalone::InvalidInput);

  EXPECT_EQ(ContentsOf(Named("text")), "before");
}

TEST_F(ANewFile, IsNotWrittenWhereTheCompanyMayHaveOne) {
  const std::filesystem::path identity = path_.string() + ".identity";

  EXPECT_THROW(RequireNewFile(*company_, path_), standalone::InvalidInput);
  EXPECT_THROW(RequireNewFile(*company_, identity), standalone::InvalidInput);
}

TEST_F(ANewFile, IsToldBeforehandToBeImpossible) {
  EXPECT_THROW(RequireNewFile(*company_, Named("no-folder") / "text"), std::runtime_error);
}

}  // namespace
}  // namespace desk
