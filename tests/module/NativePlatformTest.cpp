#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "platform/NativePlatform.h"

namespace {

using testing::Each;

// The library under test is a library that is sure to lie beside this program.
constexpr const char* kLibraryBesideTheProgram = MULTIENTITY_LIBRARY_NAME;

class LoadedLibrary {
 public:
  explicit LoadedLibrary(const char* fileName) : handle(NativePlatform().LoadLibraryA(fileName)) {}
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  ~LoadedLibrary() {
    if (handle != nullptr) NativePlatform().FreeLibrary(handle);
  }

  const LibraryHandle handle;
};

TEST(TheSystem, LoadsALibraryFromBesideTheProgram) {
  const LoadedLibrary library(kLibraryBesideTheProgram);

  ASSERT_NE(library.handle, nullptr);
  EXPECT_NE(NativePlatform().GetProcAddress(library.handle, "AttachHost"), nullptr);
}

TEST(TheSystem, FindsNoEntryThatALibraryDoesNotHave) {
  const LoadedLibrary library(kLibraryBesideTheProgram);

  ASSERT_NE(library.handle, nullptr);
  EXPECT_EQ(NativePlatform().GetProcAddress(library.handle, "NeedDataSyncUp"), nullptr);
}

TEST(TheSystem, LoadsNoLibraryThatIsNotThere) {
  const LoadedLibrary library("NoSuchBridge.DLL");

  EXPECT_EQ(library.handle, nullptr);
}

// A block that was given back is handed out again, and has nothing left of what stood in it.
TEST(TheSystem, HandsOutBlocksOfZeros) {
  constexpr int kRounds = 16;
  std::array<unsigned char, 4096> contents{};

  for (int round = 0; round < kRounds; ++round) {
    void* block = NativePlatform().LocalAlloc(kLocalAllocZeroInitialised, contents.size());
    std::memcpy(contents.data(), block, contents.size());
    std::memset(block, 'x', contents.size());
    NativePlatform().LocalFree(block);
    ASSERT_THAT(contents, Each(0));
  }
}

}  // namespace
