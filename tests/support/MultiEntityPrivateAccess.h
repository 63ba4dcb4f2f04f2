#pragma once

#include <vector>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"

// The one way for tests to the members that screens and hosts do not call.
struct MultiEntityPrivateAccess {
  static bool GetTxns(unsigned int selection, std::vector<unsigned long>& txns) {
    return MultiEntityDriver::GetTxns(selection, txns);
  }
  static bool GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection, unsigned int dateField,
                               std::vector<unsigned long>& txns) {
    return MultiEntityDriver::GetTxnsForPeriod(from, to, selection, dateField, txns);
  }
  static bool IsRealmReset(const Util::TString& realmId) { return MultiEntityDriver::IsRealmReset(realmId); }
  static bool IsTimerLaunchDateToday() { return MESchedulerUtil::IsTimerLaunchDateToday(); }
};
