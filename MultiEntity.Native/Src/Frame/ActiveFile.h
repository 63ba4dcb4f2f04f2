#pragma once

#include "Frame/AttachedHost.h"

// Whether a company file is open whose database may be used.
inline bool MayUseDatabase() {
  DBMgr::FileMgr* file = Host().application.GetActiveFileMgr();
  return file != nullptr && file->GetFileState() != DBMgr::kFileStateNoDatabaseWork;
}
