#include <algorithm>

#include "app/Books.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(EmptyDirectory, ACompanyFileIsMadeWithItsAdministrator) {
  Done({"init", kFile, "--name", "Alder Supply Company"});

  const Json users = Answer({"users", "list", kFile}).at("users");

  ASSERT_EQ(users.size(), 1U);
  EXPECT_EQ(users[0].at("name"), "Admin");
  EXPECT_EQ(users[0].at("administrator"), true);
}

TEST_F(EmptyDirectory, AnExistingFileIsNeverOverwrittenByANewCompany) {
  WriteFile(kFile, "last year's books");

  const Outcome outcome = Run({"init", kFile, "--name", "Alder Supply Company"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr(kFile));
  EXPECT_EQ(Contents(kFile), "last year's books");
}

TEST_F(EmptyDirectory, ACompanyNameThatIsTooLongIsRefusedAndNoFileIsLeft) {
  const std::string name(60, 'a');

  const Outcome outcome = Run({"init", kFile, "--name", name});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("59"));
  EXPECT_FALSE(std::filesystem::exists(In(kFile)));
}

TEST_F(EmptyDirectory, ACurrencyThatIsNoCurrencyCodeIsNamed) {
  const Outcome outcome = Run({"init", kFile, "--name", "Alder", "--home-currency", "dollars"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("dollars"));
}

TEST_F(EmptyDirectory, AMissingCompanyFileIsReportedAndNotMade) {
  const Outcome outcome = Run({"accounts", "missing.company"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("missing.company"));
  EXPECT_FALSE(std::filesystem::exists(In("missing.company")));
}

TEST_F(EmptyDirectory, AFileThatIsNoCompanyFileIsLeftAsItWas) {
  WriteFile("letter.txt", "Dear auditor,\n");

  const Outcome outcome = Run({"accounts", "letter.txt"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("letter.txt"));
  EXPECT_EQ(Contents("letter.txt"), "Dear auditor,\n");
}

TEST_F(EmptyDirectory, AnErrorAboutTheFileComesAsJsonWhenAskedFor) {
  const Json error = ErrorOf({"accounts", "missing.company"});

  EXPECT_EQ(error.at("exit"), 3);
  EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr("missing.company"));
}

TEST_F(Books, ACompanyFileOfANewerProgramIsLeftAsItWas) {
  std::string bytes = Contents(kFile);
  constexpr std::size_t kUserVersionOffset = 60;
  bytes[kUserVersionOffset + 2] = '\x7F';
  WriteFile(kFile, bytes);

  const Outcome outcome = Run({"accounts", kFile});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("newer"));
  EXPECT_EQ(Contents(kFile), bytes);
}

TEST_F(Books, ACompanyFileThatWasCutOffIsLeftAsItWas) {
  const std::string bytes = Contents(kFile).substr(0, 6000);
  WriteFile(kFile, bytes);

  const Outcome outcome = Run({"accounts", kFile});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(Contents(kFile), bytes);
}

TEST_F(Books, WorkThatDoesNotFitOnTheDiskIsReportedAndNothingOfItIsKept) {
  RelateBirch();
  const std::string before = Contents(kFile);

  const Outcome outcome =
      RunProgramOnAFullDisk(64, In("."),
                            {"journal", "record", kFile, "--realm", "1001", "--amount", "10", "--request", "r",
                             "--new-expense", "Insurance", "--new-name", "Stone Insurance"});

  // To the engine a write beyond the limit is one that failed, of which it does not say how much is there.
  EXPECT_EQ(outcome.exitCode, 5);
  EXPECT_THAT(outcome.err, HasSubstr(kFile));
  EXPECT_EQ(Contents(kFile), before);
}

// The database engine has a meaning of its own for some.
class AnyFileName : public EmptyDirectory, public testing::WithParamInterface<std::string> {
 protected:
  std::vector<std::string> CompanyFiles() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(In("."))) {
      std::string name = entry.path().filename().string();
      if (!name.starts_with("standard-")) names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    return names;
  }
};

INSTANTIATE_TEST_SUITE_P(Every, AnyFileName,
                         testing::Values(":memory:", "file:alder", "file:alder?mode=memory", "file::memory:",
                                         "file:alder?immutable=1", "file:///alder", "alder?mode=ro", "50%25 of alder"),
                         [](const auto& name) { return "number" + std::to_string(name.index); });

TEST_P(AnyFileName, IsThatOfAFile) {
  const std::string file = GetParam();
  if (IsWindowsProgram() && file.find_first_of(":?") != std::string::npos) GTEST_SKIP() << "no file has such a name";
  if (file.find('/') != std::string::npos) std::filesystem::create_directory(In("file:"));

  Done({"init", file, "--name", "Alder"});
  Done({"settings", "set", file, "company-name", "Alder Supply"});

  EXPECT_EQ(Answer({"settings", "show", file}).at("settings").at("company-name"), "Alder Supply");
  EXPECT_TRUE(std::filesystem::is_regular_file(In(file)));
  if (file.find('/') == std::string::npos) {
    EXPECT_THAT(CompanyFiles(), ElementsAre(file, file + ".log"));
  }
}

TEST_F(EmptyDirectory, ANameThatNoFileHasIsNamed) {
  if (!IsWindowsProgram()) GTEST_SKIP() << "files have any name here";

  for (const char* const file : {":memory:", "file:alder", "alder?mode=ro"}) {
    for (const Outcome& outcome : {Run({"init", file, "--name", "Alder"}), Run({"accounts", file})}) {
      EXPECT_NE(outcome.exitCode, 0);
      EXPECT_THAT(outcome.err, HasSubstr(file));
    }
  }
}

TEST_F(EmptyDirectory, AStreamWithinAFileIsNoCompanyFile) {
  if (!IsWindowsProgram()) GTEST_SKIP() << "files have no streams";
  WriteFile("letter", "Dear auditor,\n");

  for (const Outcome& outcome : {Run({"init", "letter:alder", "--name", "Alder"}), Run({"accounts", "letter:alder"})}) {
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("letter:alder"), HasSubstr("colon")));
  }
  EXPECT_EQ(Contents("letter"), "Dear auditor,\n");
}
