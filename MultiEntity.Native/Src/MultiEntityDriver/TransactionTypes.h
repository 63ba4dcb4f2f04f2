#pragma once

#include <cstdint>

#include "MultiEntityHost/Enumerations.h"

// The program feature whose rights guard transactions of a type; kFeatureNone for types that no right guards.
constexpr ProgramFeature FeatureOfTxnType(std::int16_t txnType) noexcept {
  switch (txnType) {
    case kTxnTypeBill:
      return kFeatureBills;
    case kTxnTypeCheck:
      return kFeatureChecks;
    case kTxnTypeJournalEntry:
      return kFeatureJournalEntries;
    default:
      return kFeatureNone;
  }
}
