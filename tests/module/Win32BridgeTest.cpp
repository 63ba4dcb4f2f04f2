// The library with no platform handed in asks the bridge library that lies beside the program.
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "module/OnWindows.h"
#include "standalone/bridge/AddinBridge.h"
#include "support/RuntimeLibrary.h"

namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* kBridge = "AddinBridge.DLL";

// The bridge as a host loads it, answering for an accountant with intercompany transactions to look at.
class AnsweringBridge {
 public:
  AnsweringBridge() {
    const BridgeAnswers answers{nullptr, [](void*) -> std::uint8_t { return 1; },
                                [](void*) -> std::int32_t {
                                  return 1;
                                }};
    HandOver(&answers);
  }
  AnsweringBridge(const AnsweringBridge&) = delete;
  AnsweringBridge& operator=(const AnsweringBridge&) = delete;
  ~AnsweringBridge() { HandOver(nullptr); }

 private:
  void HandOver(const BridgeAnswers* answers) const {
    library_.Entry<decltype(SetBridgeAnswers)>("SetBridgeAnswers")(answers);
  }

  RuntimeLibrary library_{kBridge};
};

bool MayManageRelations() {
  return MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureJournalEntries);
}

TEST_F(OnWindows, TheBridgeIsAskedWhetherTheUserIsAnAccountant) {
  EXPECT_FALSE(MayManageRelations());

  const AnsweringBridge bridge;

  EXPECT_TRUE(MayManageRelations());
}

TEST_F(OnWindows, TheBridgeIsLetGoOfAfterItWasAsked) {
  {
    const AnsweringBridge bridge;
    ASSERT_TRUE(MayManageRelations());
  }

  EXPECT_FALSE(RuntimeLibrary::IsLoaded(kBridge));
}

TEST_F(OnWindows, TheElapsedTimerEndsInTheReminderThatTheBridgeAsksFor) {
  {
    const AnsweringBridge bridge;
    MESchedulerUtil::StartScheduler();
    const auto timer = NextTimer();
    ASSERT_TRUE(timer.has_value());
    ::DispatchMessageA(&*timer);
    ASSERT_THAT(host.application.queue, SizeIs(1));
    host.application.DeliverMessages();
  }

  EXPECT_THAT(host.CallsOf({"YesNoInfoMsgO"}),
              ElementsAre("YesNoInfoMsgO(Src/MultiEntityScheduler, MESchedulerUIPrompt::ProcessMsg, 42, 14715, 1, 3, "
                          "true, true)"));
  EXPECT_FALSE(RuntimeLibrary::IsLoaded(kBridge));
}

}  // namespace
