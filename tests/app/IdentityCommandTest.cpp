#include <chrono>
#include <thread>

#include "app/RunningProgram.h"
#include "app/TwoCompanies.h"
#include "support/EnvironmentVariable.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kPassphrase = "correct horse battery staple";
constexpr const char* kIdentity = "alder.company.identity";
constexpr const char* kOnlyOneWorks = "Two companies of one identity must not both work";

}  // namespace

// Alder has invited Birch, and so has an identity.
class MovedCompany : public TwoCompanies {
 protected:
  MovedCompany() {
    InviteBirch();
    WriteFile("passphrase", std::string(kPassphrase) + "\r\nnothing else counts\n");
  }

  void Export() const {
    Done({"identity", "export", kFile, "--output", "identity.txt", "--passphrase-file", "passphrase"});
  }
  Outcome Import(const std::string& passphrase) const {
    WriteFile("typed", passphrase);
    return Run({"identity", "import", kFile, "identity.txt", "--passphrase-file", "typed"});
  }
  // On another machine the file beside the company is not there.
  void LeaveTheIdentityBehind() const { std::filesystem::rename(In(kIdentity), In("left-behind")); }

  // What a running program says on standard error is in a file.
  void WaitForErrors(const std::string& text) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (Contents("standard-error-of-the-running-program").find(text) == std::string::npos) {
      ASSERT_LT(std::chrono::steady_clock::now(), end) << text;
      std::this_thread::yield();
    }
  }
};

TEST_F(MovedCompany, ShowsWhoItIsToItsPartners) {
  const std::string fingerprint = FingerprintOf(kFile);

  const Json identity = Answer({"identity", "show", kFile}).at("identity");
  const Outcome outcome = Run({"identity", "show", kFile});

  EXPECT_EQ(identity.at("fingerprint"), fingerprint);
  EXPECT_EQ(identity.at("realm"), Answer({"realm", "show", kFile}).at("remembered"));
  EXPECT_THAT(identity.at("file").get<std::string>(), HasSubstr(kIdentity));
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Fingerprint: " + fingerprint + '\n'), HasSubstr(kIdentity)));
}

TEST_F(MovedCompany, HasNoIdentityBeforeItsFirstPartner) {
  const Outcome outcome = Run({"identity", "show", kBirchFile});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, StartsWith("The company has no identity yet"));
  EXPECT_EQ(Answer({"identity", "show", kBirchFile}).at("identity"), nullptr);
}

TEST_F(MovedCompany, IsTheSameToItsPartnersWithTheIdentityThatWasExported) {
  const std::string fingerprint = FingerprintOf(kFile);
  Export();
  LeaveTheIdentityBehind();

  const Outcome missing = Run({"identity", "show", kFile});
  const Outcome imported = Import(kPassphrase);

  EXPECT_EQ(missing.exitCode, 2);
  EXPECT_THAT(missing.err, HasSubstr("multientity identity import FILE TEXT"));
  EXPECT_EQ(imported.exitCode, 0) << imported.err;
  EXPECT_THAT(imported.out, HasSubstr("Fingerprint: " + fingerprint));
  EXPECT_THAT(imported.err, HasSubstr(kOnlyOneWorks));
  EXPECT_EQ(FingerprintOf(kFile), fingerprint);
}

TEST_F(MovedCompany, IsExportedAsATextThatTellsNothing) {
  const Outcome outcome = Run({"identity", "export", kFile, "--passphrase-file", "passphrase"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(StartsWith("-----BEGIN MULTIENTITY IDENTITY-----\n"), Not(HasSubstr("seed"))));
  EXPECT_THAT(outcome.err, HasSubstr(kOnlyOneWorks));
}

TEST_F(MovedCompany, IsExportedAsOneObjectForPrograms) {
  const Json exported = Answer({"identity", "export", kFile, "--passphrase-file", "passphrase"});

  EXPECT_THAT(exported.at("identity").get<std::string>(), StartsWith("-----BEGIN MULTIENTITY IDENTITY-----\n"));
  EXPECT_THAT(exported.at("warning").get<std::string>(), StartsWith(kOnlyOneWorks));
}

TEST_F(MovedCompany, DoesNotWriteItsIdentityOverAFile) {
  WriteFile("identity.txt", "before");

  const Outcome outcome =
      Run({"identity", "export", kFile, "--output", "identity.txt", "--passphrase-file", "passphrase"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(Contents("identity.txt"), "before");
}

TEST_F(MovedCompany, IsNotGivenAnIdentityByAnotherPassphrase) {
  Export();
  LeaveTheIdentityBehind();

  const Outcome outcome = Import("correct horse battery");

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_FALSE(std::filesystem::exists(In(kIdentity)));
}

TEST_F(MovedCompany, KeepsTheIdentityThatItHas) {
  Export();
  const std::string before = Whole(kFile);

  const Outcome outcome = Import(kPassphrase);

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(Whole(kFile), before);
}

TEST_F(MovedCompany, TakesNoTextOfWhateverLength) {
  WriteFile("identity.txt", std::string((128 << 20) + 1, 'x'));
  LeaveTheIdentityBehind();

  const Outcome outcome = Import(kPassphrase);

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("which no identity has"));
}

TEST_F(MovedCompany, NeedsAPassphraseWhereNobodyCanTypeIt) {
  const Outcome outcome = Run({"identity", "export", kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("--passphrase-file"), HasSubstr("MULTIENTITY_PASSPHRASE")));
}

TEST_F(MovedCompany, NeedsAPassphraseThatIsSomething) {
  WriteFile("passphrase", "\nsecond line\n");

  const Outcome outcome = Run({"identity", "export", kFile, "--passphrase-file", "passphrase"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("the passphrase is empty"));
}

TEST_F(MovedCompany, TakesThePassphraseFromTheEnvironment) {
  if (IsWindowsProgram()) GTEST_SKIP() << "Wine has the environment of its own";
  const EnvironmentVariable passphrase("MULTIENTITY_PASSPHRASE", kPassphrase);
  Done({"identity", "export", kFile, "--output", "identity.txt"});
  LeaveTheIdentityBehind();

  EXPECT_EQ(Import(kPassphrase).exitCode, 0);
}

TEST_F(MovedCompany, AsksAtATerminalForThePassphraseTwiceAndDoesNotShowIt) {
  RunningProgram program(In("."), {"identity", "export", kFile, "--output", "identity.txt"}, Console::kTerminal);

  WaitForErrors("Passphrase: ");
  program.Type(std::string(kPassphrase) + '\n');
  WaitForErrors("The same once more: ");
  program.Type(std::string(kPassphrase) + '\n');
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, Not(HasSubstr("horse")));
  LeaveTheIdentityBehind();
  EXPECT_EQ(Import(kPassphrase).exitCode, 0);
}

TEST_F(MovedCompany, ExportsNothingByAPassphraseThatIsTypedInTwoWays) {
  RunningProgram program(In("."), {"identity", "export", kFile, "--output", "identity.txt"}, Console::kTerminal);

  WaitForErrors("Passphrase: ");
  program.Type("correct horse\n");
  WaitForErrors("The same once more: ");
  program.Type("correct hose\n");
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("the two passphrases differ"));
  EXPECT_FALSE(std::filesystem::exists(In("identity.txt")));
}

TEST_F(MovedCompany, IsMovedByAdministratorsOnly) {
  Done({"users", "add", kFile, "Robin", "--accountant"});

  const Json error = ErrorOf({"identity", "export", kFile, "--passphrase-file", "passphrase", "--user", "Robin"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "ask-an-administrator");
}
