// Whose an identity is, and what is left of it when a disk fails or its program is killed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "exchange/IdentityFixture.h"
#include "support/NobodysRights.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using std::filesystem::perms;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class AnIdentityOnAPosixSystem : public IdentityFixture {};

TEST_F(AnIdentityOnAPosixSystem, IsItsOwnersOnlyWhateverTheMask) {
  for (const mode_t mask : {0U, 022U, 0777U}) {
    const mode_t before = umask(mask);
    IdentityFile::Make(file_, KeysOf(10));
    const std::optional<CarrierLock> lock = CarrierLock::TryTake(file_, platform::SystemClock());
    umask(before);

    for (const std::string& name : FilesInTheFolder()) {
      EXPECT_EQ(std::filesystem::status(folder_ / name).permissions(), perms::owner_read | perms::owner_write) << name;
      std::filesystem::remove(folder_ / name);
    }
  }
}

TEST_F(AnIdentityOnAPosixSystem, IsNotMadeWhereALinkLeads) {
  std::filesystem::create_symlink(folder_ / "elsewhere", file_);

  EXPECT_THROW(IdentityFile::Make(file_, KeysOf(10)), IdentityError);

  EXPECT_FALSE(std::filesystem::exists(folder_ / "elsewhere"));
}

TEST_F(AnIdentityOnAPosixSystem, StaysAsItWasWhenTheDiskIsFull) {
  IdentityFile::Make(file_, KeysOf(10));
  IdentityFile identity(file_);
  AddLeft(identity, {HashFrom(1)});
  const std::string before = Content();
  // Room for two lines and a half.
  const std::optional<CarrierLock> lock = CarrierLock::TryTake(file_, platform::SystemClock());
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{.rlim_cur = before.size() + 175, .rlim_max = limit.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);

  const std::vector<Hash> three(3, HashFrom(2));
  const std::string message = MessageOf<IdentityError>([&] { identity.AddLeft(*lock, three); });

  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, handler);
  EXPECT_THAT(message, HasSubstr("has room"));
  EXPECT_EQ(Content(), before);
  identity.AddLeft(*lock, three);
  EXPECT_EQ(identity.LeftCount(), 4U);
}

TEST_F(AnIdentityOnAPosixSystem, StaysAsItWasWhenItMayNotBeWritten) {
  IdentityFile::Make(file_, KeysOf(10));
  std::filesystem::permissions(folder_ / ".", perms::all);
  std::filesystem::permissions(file_, perms::owner_read | perms::others_read);
  IdentityFile identity(file_);
  const std::optional<CarrierLock> lock = CarrierLock::TryTake(file_, platform::SystemClock());
  {
    const NobodysRights nobodys;
    EXPECT_THROW(identity.AddLeft(*lock, std::vector{HashFrom(1)}), IdentityError);
  }

  EXPECT_EQ(Content(), begin_);
  EXPECT_THAT(LeftOf(identity), IsEmpty());
}

TEST_F(AnIdentityOnAPosixSystem, IsThereWholeOrNotAtAllWhereverWhoMakesItIsKilled) {
  constexpr int kKills = 100;
  for (int kill = 0; kill < kKills; ++kill) {
    const pid_t child = fork();
    if (child == 0) {
      for (;;) {
        IdentityFile::Make(file_, KeysOf(10));
        std::filesystem::remove(file_);
      }
    }
    // As soon as there is anything, in whatever state.
    while (std::filesystem::is_empty(folder_ / ".")) std::this_thread::yield();
    ::kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    if (std::filesystem::exists(file_)) {
      EXPECT_EQ(Content(), begin_);
      std::filesystem::remove(file_);
    }
    IdentityFile::Make(file_, KeysOf(11));
    EXPECT_EQ(SeedOf(IdentityFile(file_)), Digits("0b"));
    for (const std::string& name : FilesInTheFolder()) std::filesystem::remove(folder_ / name);
  }
}

TEST_F(AnIdentityOnAPosixSystem, HasAllThatWasAddedWhereverWhoAddsIsKilled) {
  constexpr int kKills = 30;
  IdentityFile::Make(file_, KeysOf(10));
  std::uint64_t added = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    std::array<int, 2> told{};
    ASSERT_EQ(pipe(told.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
      const std::optional<CarrierLock> lock = CarrierLock::TryTake(file_, platform::SystemClock());
      IdentityFile identity(file_);
      for (;;) {
        identity.AddLeft(*lock, std::vector<Hash>(3, HashFrom(1)));
        const std::uint64_t count = identity.LeftCount();
        if (write(told[1], &count, sizeof count) < 0) _exit(1);
      }
    }
    close(told[1]);
    while (read(told[0], &added, sizeof added) == 0) std::this_thread::yield();
    ::kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (read(told[0], &added, sizeof added) > 0) {
    }
    close(told[0]);

    EXPECT_GE(IdentityFile(file_).LeftCount(), added);
    EXPECT_TRUE(CarrierLock::TryTake(file_, platform::SystemClock()).has_value());
  }
}

}  // namespace
}  // namespace exchange
