#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "module/Arrangements.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

class CloseSystemListener : public testing::Test {
 protected:
  ~CloseSystemListener() override { DetachHost(); }

  ScriptedHost host;
};

TEST_F(CloseSystemListener, IsKnownToTheHostFromTheMomentItAttaches) {
  AttachHost(host.Services());

  EXPECT_THAT(host.Events(), InOrder("SubscribeCloseSystem()"));
  EXPECT_THAT(host.application.closeListeners, SizeIs(1));
}

TEST_F(CloseSystemListener, IsForgottenByTheHostThatDetaches) {
  AttachHost(host.Services());
  host.Forget();

  DetachHost();

  EXPECT_THAT(host.Events(), InOrder("UnsubscribeCloseSystem()"));
  EXPECT_THAT(host.application.closeListeners, IsEmpty());
}

TEST_F(CloseSystemListener, IsKnownAgainToTheNextHostOnly) {
  ScriptedHost second;
  AttachHost(host.Services());
  DetachHost();
  host.Forget();

  AttachHost(second.Services());

  EXPECT_THAT(second.Events(), InOrder("SubscribeCloseSystem()"));
  EXPECT_THAT(second.application.closeListeners, SizeIs(1));
  EXPECT_THAT(host.Events(), IsEmpty());
  DetachHost();
}

TEST_F(CloseSystemListener, IsKnownOnceToAHostThatAttachesAgain) {
  AttachHost(host.Services());
  DetachHost();

  AttachHost(host.Services());

  EXPECT_THAT(host.Events(), InOrder("SubscribeCloseSystem()", "UnsubscribeCloseSystem()", "SubscribeCloseSystem()"));
  EXPECT_THAT(host.application.closeListeners, SizeIs(1));
}

TEST_F(CloseSystemListener, IsNotGivenToAHostThatIsRefused) {
  ScriptedHost second;
  AttachHost(host.Services());

  AttachHost(second.Services());

  EXPECT_THAT(second.Events(), IsEmpty());
}

TEST_F(CloseSystemListener, KillsTheArmedTimerWhenTheCompanyIsClosed) {
  AttachHost(host.Services());
  MESchedulerUtil::StartScheduler();
  host.Forget();
  host.ops.lines.clear();

  host.application.NotifyClose();

  EXPECT_THAT(host.Events(), InOrder("KillTimer(1)"));
  EXPECT_THAT(host.platform.timers, IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(CloseSystemListener, KillsTheTimerOnce) {
  AttachHost(host.Services());
  MESchedulerUtil::StartScheduler();
  host.application.NotifyClose();
  host.Forget();

  host.application.NotifyClose();

  EXPECT_THAT(host.Events(), IsEmpty());
}

TEST_F(CloseSystemListener, DoesNothingWhileNoTimerIsArmed) {
  AttachHost(host.Services());
  host.Forget();

  host.application.NotifyClose();

  EXPECT_THAT(host.Events(), IsEmpty());
}

TEST_F(CloseSystemListener, StaysKnownAfterTheCompanyIsClosed) {
  AttachHost(host.Services());
  MESchedulerUtil::StartScheduler();
  host.application.NotifyClose();
  MESchedulerUtil::StartScheduler();

  host.application.NotifyClose();

  EXPECT_THAT(host.platform.timers, IsEmpty());
}

TEST_F(CloseSystemListener, IsForgottenOnceTheArmedTimerIsKilledByDetaching) {
  AttachHost(host.Services());
  MESchedulerUtil::StartScheduler();
  host.Forget();

  DetachHost();

  EXPECT_THAT(host.Events(), InOrder("KillTimer(1)", "UnsubscribeCloseSystem()"));
  EXPECT_THAT(host.platform.timers, IsEmpty());
}

TEST_F(CloseSystemListener, HasNoTimerOfAnEarlierHostToKill) {
  ScriptedHost second;
  AttachHost(host.Services());
  MESchedulerUtil::StartScheduler();
  DetachHost();
  AttachHost(second.Services());

  second.application.NotifyClose();

  EXPECT_THAT(second.CallsOf({"KillTimer"}), IsEmpty());
  DetachHost();
}

}  // namespace
