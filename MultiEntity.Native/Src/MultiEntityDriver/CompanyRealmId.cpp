#include <cstring>

#include "Frame/ActiveFile.h"
#include "Frame/Operations.h"
#include "MultiEntity/MultiEntityDriver.h"

namespace {

char* CopyToLocalBlock(const Util::TString& text) {
  auto* block = static_cast<char*>(Host().platform->LocalAlloc(kLocalAllocZeroInitialised, text.size() + 1));
  std::memcpy(block, text.c_str(), text.size());
  return block;
}

}  // namespace

char* MultiEntityDriver::GetMECacheRealmId(Util::TString realmId, bool& ok) {
  const OperationLog log{operations::GetMECacheRealmId};
  ok = true;
  try {
    if (!MayUseDatabase()) return nullptr;

    Util::TString remembered;
    const Util::Status status = Host().databasePreferences.GetCompanyDBPreference(kRealmIdPreference, remembered);
    if (status.Succeeded()) return CopyToLocalBlock(remembered);

    // Whoever asks first gives the file the id that it remembers from then on.
    if (status.GetStatusCode() == Util::Status::kPreferenceMissing) {
      ok = Host().databasePreferences.SetCompanyDBPreference(kRealmIdPreference, realmId).Succeeded();
      return nullptr;
    }
    log.Error("MULTIENTITY_ERROR::In %s, Unable to read CDB Preferences", log.Name());
    ok = false;
    return nullptr;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR::Exiting %s, due to generic exception", log.Name());
    return nullptr;
  }
}

bool MultiEntityDriver::SetMECacheRealmId(char* realmId) {
  const OperationLog log{operations::SetMECacheRealmId};
  try {
    return MayUseDatabase() &&
           Host().databasePreferences.SetCompanyDBPreference(kRealmIdPreference, realmId).Succeeded();
  } catch (...) {
    log.Error("MULTIENTITY_ERROR::Exiting %s, due to generic exception", log.Name());
    return false;
  }
}
