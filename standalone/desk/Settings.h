#pragma once

#include <string>
#include <string_view>

namespace desk {

class Company;

struct Settings {
  std::string companyName;
  std::string homeCurrency;  // ISO 4217; empty when the company has none
  bool multiCurrency = false;
  bool sampleFile = false;
  bool accountantsCopy = false;
};

// For administrators and accountants.
Settings ReadSettings(Company& company);

// For administrators. `setting` is "company-name", "home-currency", "multi-currency", "sample-file" or
// "accountants-copy", the last three of which are yes or no; standalone::InvalidInput for others. Returns them all.
Settings ChangeSetting(Company& company, std::string_view setting, std::string_view value);

}  // namespace desk
