#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/ChildProcess.h"
#include "platform/NativePlatform.h"
#include "platform/SharedFile.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

#ifdef _WIN32
constexpr const char* kChild = "platform_child.exe";
#else
constexpr const char* kChild = "platform_child";
#endif

ChildProcess Start(const std::vector<std::string>& arguments) {
  return ChildProcess(BesideTheProgram(kChild).value(), arguments);
}

bool IsHeld(const std::filesystem::path& file) {
  SharedFile other = SharedFile::OpenToAppend(file);
  return !other.TryLock();
}

// Gives up after a time that no slow machine needs.
void WaitUntil(const std::function<bool()>& isSo) {
  const auto latest = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!isSo() && std::chrono::steady_clock::now() < latest) std::this_thread::yield();
  ASSERT_TRUE(isSo());
}

TEST(AChildProcess, IsGivenItsArgumentsAsTheyAre) {
  const std::vector<std::string> arguments{"tell",     "two words",    "",      "a\"quote\"", "C:\\folder\\", "\\\"x",
                                           "--option", "$HOME %PATH%", "a b\\", "'"};

  const EndedProcess ended = Start(arguments).Wait();

  EXPECT_EQ(ended.exitCode, 0);
  std::string told;
  for (std::size_t i = 1; i < arguments.size(); ++i) told += arguments[i] + '\n';
  std::string output = ended.output;
  std::erase(output, '\r');
  EXPECT_EQ(output, told);
  EXPECT_EQ(ended.errors, "");
}

TEST(AChildProcess, PrintsAsMuchAsItLikesToBoth) {
  constexpr std::size_t kMuch = 2048;

  const EndedProcess ended = Start({"print", std::to_string(kMuch)}).Wait();

  EXPECT_EQ(ended.output.size(), kMuch * 1024);
  EXPECT_EQ(ended.errors.size(), kMuch * 1024);
}

TEST(AChildProcess, TellsWithWhatItEnded) {
  EXPECT_EQ(Start({"end-with", "5"}).Wait().exitCode, 5);
}

TEST(AChildProcess, ThatCrashesEndsWithWhatNoProgramEndsWith) {
  const int exitCode = Start({"crash"}).Wait().exitCode;

  EXPECT_TRUE(exitCode < 0 || exitCode > 5 || exitCode == 3) << exitCode;
}

TEST(AChildProcess, HasNoInput) {
  EXPECT_EQ(Start({"read"}).Wait().exitCode, 0);
}

TEST(AChildProcess, ThatIsNotThereIsNotStarted) {
  const standalone::TemporaryFolder folder;

  EXPECT_THROW(ChildProcess(folder / "none", {}), std::system_error);
}

TEST(AChildProcess, IsEndedWhenItIsToldTo) {
  ChildProcess child = Start({"never-end"});

  child.End();

  EXPECT_NE(child.Wait().exitCode, 0);
  child.End();
}

TEST(AChildProcess, IsEndedWithWhatStandsForIt) {
  const standalone::TemporaryFolder folder;
  const std::filesystem::path file = folder / "held";
  {
    const ChildProcess child = Start({"hold", file.string()});
    WaitUntil([&] { return IsHeld(file); });
  }

  WaitUntil([&] { return !IsHeld(file); });
}

TEST(AChildProcess, IsEndedWithItsParentHoweverThatEnds) {
  const standalone::TemporaryFolder folder;
  const std::filesystem::path file = folder / "held";
  ChildProcess parent = Start({"have-held", file.string()});
  WaitUntil([&] { return IsHeld(file); });

  parent.End();
  parent.Wait();

  WaitUntil([&] { return !IsHeld(file); });
}

TEST(AChildProcess, DoesNotKeepAnotherOnesOutputOpen) {
  ChildProcess quick = Start({"tell", "done"});
  const ChildProcess slow = Start({"never-end"});

  EXPECT_EQ(quick.Wait().exitCode, 0);
}

}  // namespace
}  // namespace platform
