#pragma once

#include "Frame/OperationLog.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/MultiEntityRows.h"

// The questions with which the operations begin. A refusal is noted in the operation's own words.

inline bool PassesFeatureGate(const OperationLog& log, MessageText<> disabledNote) {
  if (MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) return true;
  log.Note(disabledNote);
  return false;
}

inline bool MayManageRelations(const OperationLog& log, MessageText<> refusedNote) {
  if (MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone)) return true;
  log.Note(refusedNote);
  return false;
}

inline bool IsRealmIdValid(const Util::TString& realmId) noexcept {
  return !realmId.empty() && realmId.size() <= kRealmIdLength;
}
