#include <sys/stat.h>

#include <cstdlib>

#include "app/Books.h"
#include "app/RunningProgram.h"

using testing::AllOf;
using testing::HasSubstr;

namespace {

constexpr const char* kBridge = "AddinBridge.DLL";

// A company that needs the reminder, and a program that lies in a folder of its own, without its bridge library.
class WithoutABridge : public Books {
 public:
  WithoutABridge() { RelateBirch(); }

 protected:
  void SetUp() override {
    if (IsWindowsProgram()) GTEST_SKIP() << "the program for Windows is started where it was built";
    const std::filesystem::path program = ProgramUnderTest();
    std::filesystem::create_directory(In("program"));
    for (const std::filesystem::path& name : {program.filename(), std::filesystem::path("libMultiEntity.Native.so")}) {
      std::filesystem::copy_file(program.parent_path() / name, In("program") / name);
    }
    built_ = program.parent_path();
    setenv("MULTIENTITY_PROGRAM", (In("program") / program.filename()).c_str(), 1);
  }

  std::filesystem::path BridgePath() const { return In("program") / kBridge; }
  std::string Refused() const {
    const Outcome outcome = Run({"reminder", "show", kFile});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("The bridge library " + std::filesystem::canonical(In("program")).string()),
                      HasSubstr("install the one of the same release")));
    return outcome.err;
  }

  std::filesystem::path built_;
};

TEST_F(WithoutABridge, NoReminderIsSaidToCome) {
  EXPECT_EQ(Answer({"reminder", "show", kFile}).at("comes"), false);
  EXPECT_EQ(Answer({"reminder", "show", kFile}).at("obstacle"), "no-bridge");
  EXPECT_THAT(Run({"reminder", "show", kFile}).out,
              AllOf(HasSubstr("Reminder:   does not come\n"), HasSubstr("Delay:      none\n"),
                    HasSubstr("Why:        the bridge library is not beside the program\n")));
}

TEST_F(WithoutABridge, ACompanyThatStaysOpenArmsNoReminder) {
  RunningProgram program(In("."), {"open", kFile});

  const std::string printed =
      program.WaitFor("No reminder comes; multientity reminder show alder.company tells why.\n");
  program.EndInput();
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(printed, HasSubstr("The bridge library is not beside the program, so no reminder comes.\n"));
  EXPECT_THAT(printed + outcome.out, testing::Not(HasSubstr("The reminder comes in")));
}

TEST_F(WithoutABridge, NobodyManagesRelationsAsAnAccountant) {
  Done({"users", "add", kFile, "Vera", "--accountant"});

  EXPECT_EQ(Answer({"reminder", "show", kFile, "--user", "Vera"}).at("obstacle"), "no-bridge");
  EXPECT_EQ(Run({"relation", "delete", kFile, "--realm", "1001", "--user", "Vera"}).exitCode, 1);
}

TEST_F(WithoutABridge, ABridgeOfTheReleaseIsTaken) {
  std::filesystem::copy_file(built_ / kBridge, BridgePath());

  EXPECT_EQ(Answer({"reminder", "show", kFile}).at("comes"), true);
}

TEST_F(WithoutABridge, ABridgeInTheCurrentFolderOrNamedByTheEnvironmentIsNotTaken) {
  std::filesystem::copy_file(built_ / kBridge, In(kBridge));
  setenv("LD_LIBRARY_PATH", In(".").c_str(), 1);
  RunningProgram program(In("."), {"open", kFile, "--json"});

  EXPECT_THAT(program.WaitFor("}\n"), HasSubstr("\"bridge\":false"));
}

TEST_F(WithoutABridge, ATextInItsPlaceIsNamed) {
  Write(BridgePath(), "no library\n");

  EXPECT_THAT(Refused(), HasSubstr("cannot be loaded"));
}

TEST_F(WithoutABridge, ALibraryWithoutItsEntriesIsNamed) {
  std::filesystem::copy_file(built_ / "libMultiEntity.Native.so", BridgePath());

  EXPECT_THAT(Refused(), HasSubstr("has no entry IsSybaseAccountant"));
}

TEST_F(WithoutABridge, AFolderInItsPlaceIsNamed) {
  std::filesystem::create_directory(BridgePath());

  EXPECT_THAT(Refused(), HasSubstr("is no file"));
}

TEST_F(WithoutABridge, APipeInItsPlaceIsNamedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(BridgePath().c_str(), 0600), 0);

  EXPECT_THAT(Refused(), HasSubstr("is no file"));
}

}  // namespace
