#pragma once

#include <string>
#include <string_view>

#include "MultiEntityHost/DateType32.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/Decimals.h"

namespace standalone {

// The company's own preferences.
struct Settings {
  std::string companyName;
  std::string homeCurrency;          // ISO 4217; empty when the company has none
  Decimals decimals = kTwoDecimals;  // of all its amounts; those of the currency unless it has had others before
  bool multiCurrency = false;
  bool sampleFile = false;
  bool accountantsCopy = false;
  DateType32 closingDate = NullDate();  // the books are closed on it and before; the null date: open
};

// The company's settings by the names that people use: "company-name", "home-currency", "multi-currency",
// "sample-file", "accountants-copy", "closing-date"; the last one is YYYY-MM-DD or "none", the three before are "yes"
// or "no". Every operation needs an open unit of work.
class SettingsTable {
 public:
  explicit SettingsTable(Database& database);

  // Held as long as nobody changes lists or settings; the reference stands for the unit of work that asks, until it
  // writes.
  const Settings& Get();
  // Of a company that has none yet.
  void Begin(const Settings& settings);
  // Another currency brings its decimals. Throws InvalidInput that names the setting or its value.
  void Set(std::string_view name, std::string_view value);

 private:
  Statement get_;
  Statement insert_;
  Statement set_;
  ReadOnce<Settings> settings_;
};

// Throws InvalidInput unless the text is three capital ASCII letters.
std::string_view RequireCurrencyCode(std::string_view text);

}  // namespace standalone
