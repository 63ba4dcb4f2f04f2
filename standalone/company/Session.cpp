#include "standalone/company/Session.h"

#include <stdexcept>
#include <string>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "standalone/company/StandaloneHost.h"

namespace standalone {

Session::Session(StandaloneHost& host) : host_(host) {
  const MEAttachResult result = AttachHost(host.Services());
  if (result != MEAttachDone) {
    throw std::runtime_error("The MultiEntity.Native library does not work with this program (answer " +
                             std::to_string(result) + "); install both from the same release.");
  }
  bridge_.emplace(host);
  host_.SetRemovalUnderWay(&MultiEntityDriver::GetGJEDeletionDueToFDPFailure);
}

Session::~Session() {
  host_.App().Close();
  host_.SetRemovalUnderWay({});
  DetachHost();
}

void Session::QueueReminder() {
  // The queue takes it over.
  new MultiEntityScheduler;
}

}  // namespace standalone
