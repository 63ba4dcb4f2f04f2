#pragma once

#include <cstdint>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/TString.h"
#include "MultiEntityHost/TargetLines.h"

// What the driver's operations share: the remote switches and the texts of the display records. Nothing here is
// exported.
class MultiEntityUtils {
 public:
  // Reads the three switches into the table. False when they could not all be read; those before stay in it.
  static bool InitializeMEKillSwitchLookUpTable();

  // Whether a switch is on. The first question of the process reads the table; it is never read again.
  static bool IsFeatureEnabled(MEKillSwitchKey key);

  // Whether accounts of that type may be used, asked of the host each time. A type without a switch may not.
  static bool IsAccountTypeEnabled(KrEnumerations::AccntTypeType type);

  // Whether a realm reset is to be looked for; the remote configuration can switch that off at any time.
  static bool NeedToCheckForMERealmReset();

  // MM/DD/year with the year unpadded; empty for a date that is none.
  static Util::TString FormatDate(DateType32 date);

  // The home currency's code; USD unless multiple currencies are in use and the home currency is known.
  static Util::TString GetHomeCurrencyCode();

  // A journal entry's memo; otherwise the transaction's name after its parents, separated by colons.
  static Util::TString GetQualifiedTxnName(const TargType& line, std::int16_t txnType);

  // Puts the formatted text into `target`, which stays as it was when the host cannot format it.
  template <class... Arguments>
  static void FormatString(Util::TString& target, Util::TString pattern, Arguments... arguments) {
    FormatWithHost(target, pattern.c_str(), arguments...);
  }

 private:
  static void FormatWithHost(Util::TString& target, const char* pattern, ...);
};
