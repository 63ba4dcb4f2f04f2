// The answers that the module works out once per process may be asked for first by several threads at a time. Built
// with ThreadSanitizer, these tests also show that nobody reads such an answer while it is being worked out.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

#include "Frame/NullHost.h"
#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "platform/SystemTime.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::Each;

constexpr std::size_t kThreads = 8;
constexpr std::uint32_t kSlowness = 2000;

// Gives the other threads time to ask while this one is still being answered.
void Dawdle() {
  for (std::uint32_t i = 0; i < kSlowness; ++i) std::this_thread::yield();
}

class CountingSwitches final : public KillSwitchHelper {
 public:
  bool IsFeatureEnabled(const char* /*section*/, const char* flag) override {
    ++asked;
    Dawdle();
    return std::string_view(flag) != "ME_FOR_CHECKS";
  }

  std::atomic<int> asked = 0;
};

class CountingValues final : public FileSystem::DCE {
 public:
  bool GetValue2(Util::TString /*section*/, Util::TString /*key*/, Util::TString& value) override {
    ++asked;
    Dawdle();
    value = Util::TString("11");
    return true;
  }

  std::atomic<int> asked = 0;
};

class CountingOps final : public Util::Ops {
 public:
  bool Wants(Level /*level*/) const noexcept override { return true; }
  void Write(const Line& /*line*/) noexcept override { ++lines; }

  std::atomic<int> lines = 0;
};

// Half past eight; it has no timers and loads nothing.
class MorningPlatform final : public Platform {
 public:
  void GetLocalTime(_SYSTEMTIME& now) override {
    now = {.wYear = 2024,
           .wMonth = 3,
           .wDayOfWeek = 0,
           .wDay = 3,
           .wHour = 8,
           .wMinute = 30,
           .wSecond = 0,
           .wMilliseconds = 0};
  }
  TimerId SetTimer(TimerId /*timer*/, std::uint32_t /*milliseconds*/, TimerProcedure /*procedure*/) override {
    return 0;
  }
  void KillTimer(TimerId /*timer*/) noexcept override {}
  LibraryHandle LoadLibraryA(const char* /*fileName*/) override { return nullptr; }
  LibraryEntry GetProcAddress(LibraryHandle /*library*/, const char* /*entry*/) override { return nullptr; }
  void FreeLibrary(LibraryHandle /*library*/) noexcept override {}
  void* LocalAlloc(std::uint32_t /*flags*/, std::size_t /*bytes*/) override { throw std::bad_alloc(); }
  void LocalFree(void* /*block*/) noexcept override {}
};

// A host that several threads may call at a time, and that beyond the above answers like none at all.
class FirstCalls : public testing::Test {
 protected:
  FirstCalls() { EXPECT_EQ(AttachHost(services_), MEAttachDone); }
  ~FirstCalls() override { DetachHost(); }

  // Calls `operation` once from each of the threads, all at the same moment.
  template <class Operation>
  static auto FromAllThreads(Operation operation) {
    std::array<decltype(operation()), kThreads> answers{};
    // Not a std::barrier, whose wait may sleep for good where the system has no futex, as on Windows.
    std::atomic<std::size_t> ready = 0;
    std::array<std::thread, kThreads> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
      threads.at(i) = std::thread([&, i] {
        ++ready;
        while (ready < kThreads) std::this_thread::yield();
        answers.at(i) = operation();
      });
    }
    for (std::thread& thread : threads) thread.join();
    return answers;
  }

  CountingSwitches switches;
  CountingValues values;
  CountingOps ops;

 private:
  MorningPlatform platform_;
  const HostServices& none_ = NullHostServices();
  HostServices services_{.ops = ops,
                         .runtime = none_.runtime,
                         .killSwitches = switches,
                         .remoteValues = values,
                         .databasePreferences = none_.databasePreferences,
                         .preferences = none_.preferences,
                         .multiEntity = none_.multiEntity,
                         .permissions = none_.permissions,
                         .accounts = none_.accounts,
                         .names = none_.names,
                         .journal = none_.journal,
                         .lines = none_.lines,
                         .queries = none_.queries,
                         .money = none_.money,
                         .application = none_.application,
                         .messages = none_.messages,
                         .platform = &platform_};
};

TEST_F(FirstCalls, ReadTheRemoteSwitchesOnceForAllThreads) {
  const auto answers =
      FromAllThreads([] { return MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchChecks); });

  EXPECT_THAT(answers, Each(false));
  EXPECT_EQ(switches.asked, 3);
}

TEST_F(FirstCalls, FindTheFeatureSupportedFromEveryThread) {
  const auto answers =
      FromAllThreads([] { return MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchBills); });

  EXPECT_THAT(answers, Each(true));
}

TEST_F(FirstCalls, ReadTheLaunchHourOfTheDelayOnceForAllThreads) {
  const auto delays = FromAllThreads([] { return MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(); });

  EXPECT_THAT(delays, Each(150U * 60U));
  EXPECT_EQ(values.asked, 1);
}

TEST_F(FirstCalls, ReadTheLaunchHourOfTodayOnceForAllThreads) {
  const auto answers = FromAllThreads([] { return MultiEntityPrivateAccess::IsTimerLaunchDateToday(); });

  EXPECT_THAT(answers, Each(true));
  EXPECT_EQ(values.asked, 1);
}

}  // namespace
