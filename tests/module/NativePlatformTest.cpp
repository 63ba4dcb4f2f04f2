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

TEST(TheSystem, HandsOutBlocksOfZeros) {
  void* block = NativePlatform().LocalAlloc(kLocalAllocZeroInitialised, 4096);

  std::array<unsigned char, 4096> contents{};
  std::memcpy(contents.data(), block, contents.size());
  EXPECT_THAT(contents, Each(0));
  NativePlatform().LocalFree(block);
}

}  // namespace
