#include <memory>

#include "MultiEntity/AttachHost.h"
#include "module/Arrangements.h"

namespace {

using testing::Contains;
using testing::Not;

class Listener final : public CNotify<CNotifyDataCloseSystem> {
 public:
  void HandleNotification(const CNotifyDataCloseSystem& /*data*/) override { ++closings; }

  int closings = 0;
};

class Notification : public testing::Test {
 protected:
  ~Notification() override { DetachHost(); }

  ScriptedHost host;
};

TEST_F(Notification, ReachesAListenerThatIsMadeWhileAHostIsAttached) {
  AttachHost(host.Services());
  Listener listener;

  host.application.NotifyClose();

  EXPECT_EQ(listener.closings, 1);
  DetachHost();
}

TEST_F(Notification, ReachesAListenerThatWasMadeBeforeTheHostAttaches) {
  Listener listener;
  AttachHost(host.Services());

  host.application.NotifyClose();

  EXPECT_EQ(listener.closings, 1);
  DetachHost();
}

TEST_F(Notification, DoesNotReachAListenerAfterTheHostHasDetached) {
  Listener listener;
  AttachHost(host.Services());
  DetachHost();

  host.application.NotifyClose();

  EXPECT_EQ(listener.closings, 0);
}

TEST_F(Notification, IsNotSubscribedForAListenerThatIsGone) {
  auto listener = std::make_unique<Listener>();
  const CNotify<CNotifyDataCloseSystem>* address = listener.get();
  listener.reset();

  AttachHost(host.Services());

  EXPECT_THAT(host.application.closeListeners, Not(Contains(address)));
}

TEST_F(Notification, ReachesAListenerThroughEveryHostThatAttaches) {
  ScriptedHost second;
  Listener listener;
  AttachHost(host.Services());
  host.application.NotifyClose();
  DetachHost();
  AttachHost(second.Services());

  second.application.NotifyClose();

  EXPECT_EQ(listener.closings, 2);
  DetachHost();
}

}  // namespace
