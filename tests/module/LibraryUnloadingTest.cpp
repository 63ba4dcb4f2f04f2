#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "MultiEntity/AttachHost.h"
#include "support/RuntimeLibrary.h"
#include "support/ScriptedHost.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

// The library itself, loaded at run time as a host does that has no import of it.
class LoadedLibrary {
 public:
  MEAttachResult Attach(const ScriptedHost& host) const {
    return library_.Entry<MEAttachResult(const HostServices&)>("AttachHost")(host.Services());
  }
  void Detach() const { library_.Entry<void()>("DetachHost")(); }
  void StartScheduler() const { library_.Entry<void()>("_ZN15MESchedulerUtil14StartSchedulerEv")(); }

  static bool IsLoaded() { return RuntimeLibrary::IsLoaded(MULTIENTITY_LIBRARY); }

 private:
  RuntimeLibrary library_{MULTIENTITY_LIBRARY};
};

// Loads the library, has a host use it with an armed timer, and lets go of it again.
void UseTheLibraryOnce(ScriptedHost& host) {
  const LoadedLibrary library;
  EXPECT_EQ(library.Attach(host), MEAttachDone);
  library.StartScheduler();
  EXPECT_THAT(host.platform.timers, SizeIs(1));
  EXPECT_THAT(host.application.closeListeners, SizeIs(1));
  library.Detach();
}

TEST(Library, IsThereAsLongAsItIsLoaded) {
  ASSERT_FALSE(LoadedLibrary::IsLoaded());

  auto library = std::make_unique<LoadedLibrary>();
  EXPECT_TRUE(LoadedLibrary::IsLoaded());
  library.reset();

  EXPECT_FALSE(LoadedLibrary::IsLoaded());
}

// The host has not let go, as at the end of a process, so that a call would still reach it.
TEST(Library, CallsNobodyWhileItIsUnloadedAndLoadedAgain) {
  ScriptedHost host;
  auto library = std::make_unique<LoadedLibrary>();
  ASSERT_EQ(library->Attach(host), MEAttachDone);
  library->StartScheduler();
  host.Forget();

  library.reset();
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
  library = std::make_unique<LoadedLibrary>();

  EXPECT_THAT(host.Events(), IsEmpty());
}

TEST(Library, IsGoneOnceItsHostHasLetGo) {
  ScriptedHost host;

  UseTheLibraryOnce(host);

  EXPECT_FALSE(LoadedLibrary::IsLoaded());
  EXPECT_THAT(host.platform.timers, IsEmpty());
  EXPECT_THAT(host.application.closeListeners, IsEmpty());
}

TEST(Library, IsUsedAnewEachTimeItIsLoaded) {
  ScriptedHost first;
  ScriptedHost second;
  ScriptedHost third;
  second.values.values[{"MultiEntity", "InitialDelayInSeconds"}] = "7";

  UseTheLibraryOnce(first);
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
  UseTheLibraryOnce(second);
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
  UseTheLibraryOnce(third);
  EXPECT_FALSE(LoadedLibrary::IsLoaded());

  EXPECT_THAT(first.CallsOf({"SetTimer", "KillTimer"}), testing::ElementsAre("SetTimer(0, 900000)", "KillTimer(1)"));
  EXPECT_THAT(second.CallsOf({"SetTimer", "KillTimer"}), testing::ElementsAre("SetTimer(0, 7000)", "KillTimer(1)"));
  EXPECT_THAT(third.CallsOf({"SetTimer", "KillTimer"}), testing::ElementsAre("SetTimer(0, 900000)", "KillTimer(1)"));
}

TEST(Library, CallsNoHostThatHasLetGoWhileItIsUnloaded) {
  ScriptedHost host;
  auto library = std::make_unique<LoadedLibrary>();
  ASSERT_EQ(library->Attach(host), MEAttachDone);
  library->StartScheduler();
  library->Detach();
  host.Forget();

  library.reset();

  EXPECT_THAT(host.Events(), IsEmpty());
}

}  // namespace
