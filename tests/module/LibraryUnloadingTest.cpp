#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "MultiEntity/AttachHost.h"
#include "support/ScriptedHost.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

// The shared library, loaded at run time as a host does that has no import of it.
class LoadedLibrary {
 public:
  LoadedLibrary() : handle_(dlopen(MULTIENTITY_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  ~LoadedLibrary() { dlclose(handle_); }

  template <class Signature>
  Signature* Entry(const char* name) const {
    void* entry = dlsym(handle_, name);
    EXPECT_NE(entry, nullptr) << dlerror();
    return reinterpret_cast<Signature*>(entry);
  }

  MEAttachResult Attach(const ScriptedHost& host) const {
    return Entry<MEAttachResult(const HostServices&)>("AttachHost")(host.Services());
  }
  void Detach() const { Entry<void()>("DetachHost")(); }
  void StartScheduler() const { Entry<void()>("_ZN15MESchedulerUtil14StartSchedulerEv")(); }

  static bool IsLoaded() {
    void* handle = dlopen(MULTIENTITY_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    const bool loaded = handle != nullptr;
    if (loaded) dlclose(handle);
    return loaded;
  }

 private:
  void* handle_;
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

TEST(Library, CallsNobodyWhileItIsLoadedAndUnloaded) {
  ASSERT_FALSE(LoadedLibrary::IsLoaded());

  auto library = std::make_unique<LoadedLibrary>();
  EXPECT_TRUE(LoadedLibrary::IsLoaded());
  library.reset();

  EXPECT_FALSE(LoadedLibrary::IsLoaded());
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

TEST(Library, CallsNoHostWhileItIsUnloaded) {
  ScriptedHost host;
  auto library = std::make_unique<LoadedLibrary>();
  library->Attach(host);
  library->StartScheduler();
  library->Detach();
  host.Forget();

  library.reset();

  EXPECT_THAT(host.Events(), IsEmpty());
}

}  // namespace
