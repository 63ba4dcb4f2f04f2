// The answers that the module works out once per process may be asked for first by several threads at a time. Built
// with ThreadSanitizer, these tests also show that nobody reads such an answer while it is being worked out.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHostHelpers/AbsentServices.h"
#include "platform/SystemTime.h"
#include "support/AbsentPlatform.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::Each;

constexpr std::size_t kThreads = 8;
constexpr std::uint32_t kSlowness = 2000;

// Gives the other threads time to ask while this one is still being answered.
void Dawdle() {
  for (std::uint32_t i = 0; i < kSlowness; ++i) std::this_thread::yield();
}

// A host that several threads may call at a time and that counts what they ask. It is half past eight; beyond that the
// host answers like none at all.
class CountingHost final : public Absent::Host, public Absent::MultiEntityDBManager, public AbsentPlatform {
 public:
  HostServices Services() noexcept { return Absent::Host::Services(*this, this); }

  bool Wants(Level) const noexcept override { return true; }

  bool IsFeatureEnabled(const char* /*section*/, const char* flag) override {
    ++switchesAsked;
    Dawdle();
    return std::string_view(flag) != "ME_FOR_CHECKS";
  }

  bool GetValue2(Util::TString /*section*/, Util::TString /*key*/, Util::TString& value) override {
    ++valuesAsked;
    Dawdle();
    value = Util::TString("11");
    return true;
  }

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

  std::atomic<int> switchesAsked = 0;
  std::atomic<int> valuesAsked = 0;
};

class FirstCalls : public testing::Test {
 protected:
  FirstCalls() { EXPECT_EQ(AttachHost(host.Services()), MEAttachDone); }
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

  CountingHost host;
};

TEST_F(FirstCalls, ReadTheRemoteSwitchesOnceForAllThreads) {
  const auto answers =
      FromAllThreads([] { return MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchChecks); });

  EXPECT_THAT(answers, Each(false));
  EXPECT_EQ(host.switchesAsked, 3);
}

TEST_F(FirstCalls, FindTheFeatureSupportedFromEveryThread) {
  const auto answers =
      FromAllThreads([] { return MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchBills); });

  EXPECT_THAT(answers, Each(true));
}

TEST_F(FirstCalls, ReadTheLaunchHourOfTheDelayOnceForAllThreads) {
  const auto delays = FromAllThreads([] { return MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(); });

  EXPECT_THAT(delays, Each(150U * 60U));
  EXPECT_EQ(host.valuesAsked, 1);
}

TEST_F(FirstCalls, ReadTheLaunchHourOfTodayOnceForAllThreads) {
  const auto answers = FromAllThreads([] { return MultiEntityPrivateAccess::IsTimerLaunchDateToday(); });

  EXPECT_THAT(answers, Each(true));
  EXPECT_EQ(host.valuesAsked, 1);
}

}  // namespace
