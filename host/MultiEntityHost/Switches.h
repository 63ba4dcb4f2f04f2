#pragma once

#include <array>

#include "MultiEntityHost/TString.h"

// The sections of the remote switches and their flags: the feature for all, for bills and for checks, and one flag for
// each account type from 0 to 15.
inline constexpr const char* kFeatureSwitches = "MultiEntityFeature";
inline constexpr const char* kSwitchForAll = "ME_FOR_ALL";
inline constexpr const char* kSwitchForBills = "ME_FOR_BILLS";
inline constexpr const char* kSwitchForChecks = "ME_FOR_CHECKS";
inline constexpr const char* kAccountSwitches = "MultiEntityAccounts";
inline constexpr std::array<const char*, 16> kAccountTypeSwitches{
    "Bank",
    "Accounts_Receivable",
    "Other_Current_Asset",
    "Fixed_Asset",
    "Other_Asset",
    "Accounts_Payable",
    "Credit_Card",
    "Other_Current_Liability",
    "Long_Term_Liability",
    "Equity",
    "Income",
    "Cost_of_Goods_Sold",
    "Expense",
    "Other_Income",
    "Other_Expense",
    "Non_Posting",
};

// The section of the remote values and its keys: "0" turns the look for another realm off; the least delay of the
// reminder in seconds; the hour of the day at which it comes.
inline constexpr const char* kRemoteValues = "MultiEntity";
inline constexpr const char* kCheckForRealmReset = "CheckForRealmReset";
inline constexpr const char* kInitialDelayInSeconds = "InitialDelayInSeconds";
inline constexpr const char* kHoursToLaunchDay = "HoursToLaunchDay";

// The remote feature switches. A host implements it; the module calls it on the user-interface thread.
class KillSwitchHelper {
 public:
  // Whether that switch is on. Both texts are ASCII and outlive the call. Throws when the switches cannot be read.
  virtual bool IsFeatureEnabled(const char* section, const char* flag) = 0;

 protected:
  ~KillSwitchHelper() = default;
};

namespace FileSystem {

// The remote configuration values. A host implements it; the module calls it on the user-interface thread.
class DCE {
 public:
  // Puts the value into `value`, or leaves it as it is when there is none. The answer, whether there is one, is not
  // looked at. Throws when the values cannot be read.
  virtual bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) = 0;

 protected:
  ~DCE() = default;
};

}  // namespace FileSystem
