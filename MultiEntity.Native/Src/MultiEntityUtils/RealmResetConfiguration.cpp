#include "Frame/Operations.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

bool MultiEntityUtils::NeedToCheckForMERealmReset() {
  const OperationLog log{operations::NeedToCheckForMERealmReset};
  try {
    Util::TString value;
    Host().remoteValues.GetValue2(kRemoteValues, kCheckForRealmReset, value);
    return value.view() != "0";
  } catch (...) {
    log.Error("DCE check failed for NeedToCheckForMERealmReset");
    return true;
  }
}
