// What a folder of envelopes meets on systems with rights, pipes and links.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "exchange/FolderUnderTest.h"
#include "support/NobodysRights.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using standalone::ReadFile;
using standalone::WriteFile;
using std::filesystem::perms;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AFolderOnAPosixSystem : public ::testing::Test, protected FolderOfEnvelopes {
 protected:
  // Also for whoever is not root.
  void LetAllEnter(perms folder) const {
    std::filesystem::permissions(parent / ".", perms::all);
    std::filesystem::permissions(path, folder);
  }
};

TEST_F(AFolderOnAPosixSystem, NeverWaitsForAPipe) {
  const std::string name = NameFor("1");
  ASSERT_EQ(mkfifo((path / name).c_str(), S_IRUSR | S_IWUSR), 0);

  const TakenEnvelope taken = mailbox.Take(name, kMost);
  mailbox.SetAside(name, taken.reason);

  EXPECT_EQ(taken.finding, Finding::kNoFile);
  EXPECT_THAT(mailbox.List(kBirch), IsEmpty());
  EXPECT_TRUE(std::filesystem::is_fifo(aside / name));
}

TEST_F(AFolderOnAPosixSystem, ReadsNothingOfAFileThatIsTooLarge) {
  const std::string name = WriteEnvelope("1", "");
  std::filesystem::resize_file(path / name, std::uintmax_t{1} << 40U);

  const TakenEnvelope taken = mailbox.Take(name, kMost);

  EXPECT_EQ(taken.finding, Finding::kTooLarge);
  EXPECT_THAT(taken.reason, AllOf(HasSubstr("1099511627776 bytes"), HasSubstr("at most 1000")));
}

TEST_F(AFolderOnAPosixSystem, FollowsNoLinkAndSetsAsideTheLinkItself) {
  WriteFile(parent / "secret", "5:hello,");
  const std::string toAFile = NameFor("1");
  const std::string toADevice = NameFor("2");
  const std::string toNothing = NameFor("3");
  std::filesystem::create_symlink(parent / "secret", path / toAFile);
  std::filesystem::create_symlink("/dev/zero", path / toADevice);
  std::filesystem::create_symlink("nowhere", path / toNothing);

  for (const std::string& name : mailbox.List(kBirch)) {
    const TakenEnvelope taken = mailbox.Take(name, kMost);
    EXPECT_EQ(taken.finding, Finding::kNoFile) << name;
    mailbox.SetAside(name, taken.reason);
    EXPECT_TRUE(std::filesystem::is_symlink(aside / name)) << name;
  }

  EXPECT_EQ(ReadFile(parent / "secret"), "5:hello,");
}

TEST_F(AFolderOnAPosixSystem, RemovesNoMoreThanALink) {
  WriteFile(parent / "secret", "5:hello,");
  const std::string name = NameFor("1");
  std::filesystem::create_symlink(parent / "secret", path / name);

  mailbox.Acknowledge(name);

  EXPECT_TRUE(std::filesystem::exists(parent / "secret"));
}

TEST_F(AFolderOnAPosixSystem, SetsNothingAsideWhereALinkLeads) {
  const std::string name = WriteEnvelope("1", "a");
  std::filesystem::create_directory(parent / "elsewhere");
  std::filesystem::create_directory_symlink(parent / "elsewhere", aside);

  EXPECT_THROW(mailbox.SetAside(name, "It is forged."), MailboxError);

  EXPECT_TRUE(std::filesystem::is_empty(parent / "elsewhere"));
  EXPECT_TRUE(mailbox.LiesThere(name));
}

TEST_F(AFolderOnAPosixSystem, WritesNoReasonWhereALinkLeads) {
  const std::string name = WriteEnvelope("1", "a");
  WriteFile(parent / "precious", "precious");
  std::filesystem::create_directory(aside);
  std::filesystem::create_symlink(parent / "precious", aside / (name + ".why.txt"));

  mailbox.SetAside(name, "It is forged.");

  EXPECT_EQ(ReadFile(parent / "precious"), "precious");
  EXPECT_EQ(ReadFile(aside / (name + ".why.txt")), "It is forged.\n");
  EXPECT_THAT(FilesIn(aside), SizeIs(2));
}

TEST_F(AFolderOnAPosixSystem, TellsAFileThatItMayNotReadForLongAndLeavesIt) {
  const std::string name = WriteEnvelope("1", "5:hello,");
  LetAllEnter(perms::all);
  std::filesystem::permissions(path / name, perms::none);
  const NobodysRights nobodys;

  const Finding early = mailbox.Take(name, kMost).finding;
  clock.now += std::chrono::hours(1);
  const TakenEnvelope taken = mailbox.Take(name, kMost);

  EXPECT_EQ(early, Finding::kUnfinished);
  EXPECT_EQ(taken.finding, Finding::kUnreadable);
  EXPECT_THAT(taken.reason, HasSubstr("Permission denied"));
  EXPECT_TRUE(mailbox.LiesThere(name));
}

TEST_F(AFolderOnAPosixSystem, TellsWhenNothingCanBeWrittenIntoIt) {
  const std::string name = WriteEnvelope("1", "5:hello,");
  LetAllEnter(perms::all & ~(perms::owner_write | perms::group_write | perms::others_write));
  {
    const NobodysRights nobodys;

    EXPECT_EQ(mailbox.Take(name, kMost).bytes, "hello");
    EXPECT_THAT(MessageOf<MailboxError>([&] { mailbox.Put(kBirch, "a"); }), HasSubstr("Permission denied"));
    EXPECT_THAT(MessageOf<MailboxError>([&] { mailbox.Acknowledge(name); }), HasSubstr("Permission denied"));
    EXPECT_THROW(mailbox.SetAside(name, "It is forged."), MailboxError);
  }

  EXPECT_THAT(FilesIn(path), ElementsAre(name));
}

TEST_F(AFolderOnAPosixSystem, IsReadByAllWhomTheUsersMaskLets) {
  const mode_t before = umask(S_IWGRP | S_IWOTH);

  const std::string name = mailbox.Put(kBirch, "hello");

  umask(before);
  EXPECT_EQ(std::filesystem::status(path / name).permissions(),
            perms::owner_read | perms::owner_write | perms::group_read | perms::others_read);
}

TEST_F(AFolderOnAPosixSystem, HasNothingOfAnEnvelopeThatFindsNoRoom) {
  constexpr rlim_t kRoom = 4'096;
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{.rlim_cur = kRoom, .rlim_max = before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);

  const std::string message = MessageOf<MailboxError>([&] { mailbox.Put(kBirch, std::string(1'000'000, 'a')); });

  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_THAT(message, HasSubstr("File too large"));
  EXPECT_THAT(FilesIn(path), IsEmpty());
}

TEST_F(AFolderOnAPosixSystem, TakesAFileWhoseNameHoldsAnyBytes) {
  const std::string name = WriteEnvelope("\x1b[31m\n\xff 'x' *?", "5:hello,");

  EXPECT_THAT(mailbox.List(kBirch), ElementsAre(name));
  EXPECT_EQ(mailbox.Take(name, kMost).bytes, "hello");
  mailbox.SetAside(name, "It is forged.");
  EXPECT_EQ(ReadFile(aside / name), "5:hello,");
}

TEST_F(AFolderOnAPosixSystem, ShowsNoByteOfANameThatCouldMoveACursor) {
  const std::string name = WriteEnvelope("\x1b[31m", "5:hello,");
  WriteFile(aside, "");

  const std::string message = MessageOf<MailboxError>([&] { mailbox.SetAside(name, "It is forged."); });

  EXPECT_THAT(message, HasSubstr("\\x1B[31m"));
  EXPECT_THAT(message, ::testing::Not(HasSubstr("\x1b")));
}

TEST_F(AFolderOnAPosixSystem, HasOnlyWholeEnvelopesWhileWhoPutsThemIsKilledAtAnyMoment) {
  constexpr int kKills = 30;
  const std::string bytes(200'000, 'a');
  std::size_t whole = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const pid_t child = fork();
    if (child == 0) {
      for (;;) mailbox.Put(kBirch, bytes);
    }
    // As soon as there is anything, in whatever state.
    while (std::filesystem::is_empty(path)) std::this_thread::yield();
    ::kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    for (const std::string& name : mailbox.List(kBirch)) {
      const TakenEnvelope taken = mailbox.Take(name, bytes.size());
      EXPECT_EQ(taken.finding, Finding::kWhole) << taken.reason;
      EXPECT_EQ(taken.bytes, bytes);
      mailbox.Acknowledge(name);
      ++whole;
    }
    clock.now += std::chrono::hours(25);
    mailbox.List(kBirch);
    EXPECT_THAT(FilesIn(path), IsEmpty());
  }
  RecordProperty("whole", static_cast<int>(whole));
}

TEST_F(AFolderOnAPosixSystem, IsListedAndReadWhileOthersPutAndTake) {
  constexpr int kPuts = 100;
  std::atomic<bool> isDone = false;
  std::jthread putter([&] {
    FolderMailbox own(path, platform::SystemClock());
    for (int count = 0; count < kPuts; ++count) own.Put(kBirch, std::string(1'000, 'a'));
    isDone = true;
  });
  std::size_t taken = 0;
  std::size_t other = 0;
  for (bool isLast = false; !isLast;) {
    isLast = isDone;
    for (const std::string& name : mailbox.List(kBirch)) {
      const TakenEnvelope found = mailbox.Take(name, kMost);
      ++(found.finding == Finding::kWhole && found.bytes.size() == 1'000 ? taken : other);
      mailbox.Acknowledge(name);
    }
  }

  EXPECT_EQ(taken, kPuts);
  EXPECT_EQ(other, 0U);
}

}  // namespace
}  // namespace exchange
