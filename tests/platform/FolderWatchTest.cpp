#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/FolderWatch.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

using standalone::WriteFile;
using std::chrono::milliseconds;
using Woken = FolderWatch::Woken;

// That no slow machine needs.
constexpr std::chrono::minutes kLong{2};

// Letters are of interest; so is anything that may have changed unless a test says otherwise.
class AFolderWatch : public testing::Test {
 protected:
  AFolderWatch() { std::filesystem::create_directory(path_); }

  bool Matters(const std::filesystem::path& folder, const std::filesystem::path& name) {
    asked_.emplace_back(folder, name);
    return name.empty() ? isUnknownOfInterest_ : name.extension() == ".letter";
  }
  // What was there before it was watched is none of what a test waits for.
  void WatchQuietly(std::vector<std::filesystem::path> folders) {
    isUnknownOfInterest_ = false;
    watch_.Watch(std::move(folders));
    isUnknownOfInterest_ = true;
  }
  // How often it is woken until `count` files were seen.
  int WakesUntilAsked(std::size_t count) {
    int wakes = 0;
    while (asked_.size() < count && watch_.WaitFor(kLong) == Woken::kByChange) ++wakes;
    return wakes;
  }

  const standalone::TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "shared";
  bool isUnknownOfInterest_ = true;
  std::vector<std::pair<std::filesystem::path, std::filesystem::path>> asked_;
  FolderWatch watch_{[this](const auto& folder, const auto& name) {
    return Matters(folder, name);
  }};
};

TEST_F(AFolderWatch, IsWokenByAFileThatComes) {
  WatchQuietly({path_});

  WriteFile(path_ / "a.letter", "text");

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
  EXPECT_EQ(asked_.back(), std::pair(path_, std::filesystem::path("a.letter")));
}

TEST_F(AFolderWatch, IsWokenByAFileThatGetsItsName) {
  WriteFile(path_ / "a.tmp", "text");
  WatchQuietly({path_});

  std::filesystem::rename(path_ / "a.tmp", path_ / "a.letter");

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
}

TEST_F(AFolderWatch, IsWokenByAFileThatIsGoneOnWith) {
  WriteFile(path_ / "a.letter", "te");
  WatchQuietly({path_});

  WriteFile(path_ / "a.letter", "text");

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
}

TEST_F(AFolderWatch, IsNotWokenByFilesThatGoOrAreOfNoInterest) {
  WriteFile(path_ / "a.letter", "text");
  WatchQuietly({path_});

  std::filesystem::remove(path_ / "a.letter");
  WriteFile(path_ / "b.text", "text");
  while (asked_.empty() || asked_.back().second != "b.text") {
    ASSERT_EQ(watch_.WaitFor(milliseconds(1)), Woken::kByTime);
  }

  EXPECT_EQ(watch_.WaitFor(milliseconds(1)), Woken::kByTime);
}

TEST_F(AFolderWatch, TakesWhatComesTogetherForOneChange) {
  constexpr std::size_t kMany = 30;
  WatchQuietly({path_});
  asked_.clear();

  for (std::size_t i = 0; i < kMany; ++i) WriteFile(path_ / (std::to_string(i) + ".letter"), "text");

  EXPECT_LE(WakesUntilAsked(kMany), 2);
  EXPECT_GE(asked_.size(), kMany);
}

TEST_F(AFolderWatch, IsWokenWhileChangesDoNotEnd) {
  WatchQuietly({path_});
  std::atomic<bool> isOver = false;
  const std::jthread other([&] {
    for (int i = 0; !isOver; ++i) WriteFile(path_ / (std::to_string(i % 10) + ".letter"), "text");
  });

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);

  isOver = true;
}

TEST_F(AFolderWatch, IsWokenWhenTheTimeIsOver) {
  WatchQuietly({path_});
  const auto before = std::chrono::steady_clock::now();

  EXPECT_EQ(watch_.WaitFor(milliseconds(20)), Woken::kByTime);

  EXPECT_GE(std::chrono::steady_clock::now() - before, milliseconds(20));
}

TEST_F(AFolderWatch, IsWokenByItsEndFromAnotherThread) {
  WatchQuietly({path_});
  const std::jthread other([this] { watch_.End(); });

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByEnd);
  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByEnd);
}

TEST_F(AFolderWatch, ThatHasEndedIsNotWokenByChanges) {
  WatchQuietly({path_});
  watch_.End();

  WriteFile(path_ / "a.letter", "text");

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByEnd);
}

TEST_F(AFolderWatch, AsksOfAFolderThatIsWatchedFromNowOn) {
  WriteFile(path_ / "a.letter", "text");

  watch_.Watch({path_});

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
  EXPECT_EQ(asked_, (std::vector{std::pair(path_, std::filesystem::path())}));
}

TEST_F(AFolderWatch, DoesNotAskOfOneThatStays) {
  WatchQuietly({path_});
  asked_.clear();

  watch_.Watch({path_});

  EXPECT_EQ(watch_.WaitFor(milliseconds(1)), Woken::kByTime);
  EXPECT_TRUE(asked_.empty());
}

TEST_F(AFolderWatch, LeavesAFolderThatIsWatchedNoMore) {
  const std::filesystem::path other = folder_ / "other";
  std::filesystem::create_directory(other);
  WatchQuietly({path_, other});
  watch_.Watch({other});
  asked_.clear();

  WriteFile(path_ / "a.letter", "text");
  WriteFile(other / "b.letter", "text");
  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);

  for (const auto& asked : asked_) EXPECT_EQ(asked.first, other);
}

TEST_F(AFolderWatch, WaitsForAFolderThatIsNotThereYet) {
  const std::filesystem::path later = folder_ / "later";
  WatchQuietly({later});
  ASSERT_EQ(watch_.WaitFor(milliseconds(1)), Woken::kByTime);

  const std::jthread other([&] { std::filesystem::create_directory(later); });

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
}

TEST_F(AFolderWatch, ThatIsGoneKeepsNobodyFromWaiting) {
  WatchQuietly({path_});

  std::filesystem::remove_all(path_);

  EXPECT_EQ(watch_.WaitFor(milliseconds(20)), Woken::kByTime);
}

TEST_F(AFolderWatch, GoesOnWithAFolderThatIsThereAgain) {
  WatchQuietly({path_});
  std::filesystem::rename(path_, folder_ / "elsewhere");
  ASSERT_EQ(watch_.WaitFor(milliseconds(1)), Woken::kByTime);

  std::filesystem::create_directory(path_);
  ASSERT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
  asked_.clear();
  WriteFile(path_ / "a.letter", "text");

  EXPECT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
  EXPECT_EQ(asked_.front(), std::pair(path_, std::filesystem::path("a.letter")));
}

TEST_F(AFolderWatch, LooksAtNoFolderThatWasMovedAway) {
  WatchQuietly({path_});
  const std::filesystem::path elsewhere = folder_ / "elsewhere";
  std::filesystem::rename(path_, elsewhere);
  ASSERT_EQ(watch_.WaitFor(milliseconds(1)), Woken::kByTime);

  WriteFile(elsewhere / "a.letter", "text");

  EXPECT_EQ(watch_.WaitFor(milliseconds(20)), Woken::kByTime);
}

TEST_F(AFolderWatch, TellsOfOneFolderByAllNamesThatAreWatched) {
  const std::filesystem::path same = path_ / ".." / "shared";
  WatchQuietly({path_, same});
  asked_.clear();

  WriteFile(path_ / "a.letter", "text");

  for (const std::filesystem::path& name : {path_, same}) {
    const auto isIt = [&](const auto& asked) {
      return asked.first == name;
    };
    while (std::ranges::none_of(asked_, isIt)) ASSERT_EQ(watch_.WaitFor(kLong), Woken::kByChange);
  }
}

}  // namespace
}  // namespace platform
