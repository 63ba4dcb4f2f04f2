#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MultiEntityHost/DateType32.h"
#include "standalone/values/Decimals.h"

namespace desk {

class Company;

struct Settings {
  std::string companyName;
  std::string homeCurrency;                                  // ISO 4217; empty when the company has none
  standalone::Decimals decimals = standalone::kTwoDecimals;  // of all amounts; those of before stay as they were
  bool multiCurrency = false;
  bool sampleFile = false;
  bool accountantsCopy = false;
  std::optional<DateType32>
      closingDate;  // on it and before, nothing is posted or removed; none while the books are open
};

struct ChangedSettings : Settings {
  bool hasChanged = false;  // the one that was set was another one before
};

// For administrators and accountants.
Settings ReadSettings(Company& company);

// For administrators. `setting` is "company-name", "home-currency", "multi-currency", "sample-file",
// "accountants-copy", the last three of which are yes or no, or "closing-date", a day or none; standalone::InvalidInput
// for others. Returns them all.
ChangedSettings ChangeSetting(Company& company, std::string_view setting, std::string_view value);

}  // namespace desk
