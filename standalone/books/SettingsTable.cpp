#include "standalone/books/SettingsTable.h"

#include <algorithm>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

std::string CheckedCompanyName(std::string_view value) {
  return std::string(RequireText("The company name", value, 1, kCompanyNameLength));
}

void Change(Settings& settings, std::string_view name, std::string_view value) {
  if (name == "company-name") {
    settings.companyName = CheckedCompanyName(value);
  } else if (name == "home-currency") {
    settings.homeCurrency = RequireCurrencyCode(value);
  } else if (name == "multi-currency") {
    settings.multiCurrency = ParseYesNo("The setting multi-currency", value);
  } else if (name == "sample-file") {
    settings.sampleFile = ParseYesNo("The setting sample-file", value);
  } else if (name == "accountants-copy") {
    settings.accountantsCopy = ParseYesNo("The setting accountants-copy", value);
  } else {
    throw InvalidInput("There is no setting " + Quoted(name) +
                       "; the settings are company-name, home-currency, multi-currency, sample-file and "
                       "accountants-copy.");
  }
}

}  // namespace

SettingsTable::SettingsTable(Database& database)
    : get_(database, "SELECT name, home_currency, multi_currency, sample_file, accountants_copy FROM company"),
      insert_(database, Writes::kLists,
              "INSERT INTO company (id, name, home_currency, multi_currency, sample_file, accountants_copy) "
              "VALUES (1, ?1, ?2, ?3, ?4, ?5)"),
      set_(database, Writes::kLists,
           "UPDATE company SET name = ?1, home_currency = ?2, multi_currency = ?3, sample_file = ?4, "
           "accountants_copy = ?5"),
      settings_(database) {}

const Settings& SettingsTable::Get() {
  return settings_.Get([this](Settings& settings) {
    Rows rows = get_.Query();
    if (!rows.Step()) throw CompanyFileError("The company file is damaged: it has no settings.");
    settings.companyName = rows.Text(0);
    settings.homeCurrency = rows.Text(1);
    settings.multiCurrency = rows.Bool(2);
    settings.sampleFile = rows.Bool(3);
    settings.accountantsCopy = rows.Bool(4);
  });
}

void SettingsTable::Begin(const Settings& settings) {
  insert_.Run(settings.companyName, settings.homeCurrency, settings.multiCurrency, settings.sampleFile,
              settings.accountantsCopy);
}

void SettingsTable::Set(std::string_view name, std::string_view value) {
  Settings settings = Get();
  Change(settings, name, value);
  set_.Run(settings.companyName, settings.homeCurrency, settings.multiCurrency, settings.sampleFile,
           settings.accountantsCopy);
}

std::string_view RequireCurrencyCode(std::string_view text) {
  const bool isCode =
      text.size() == 3 && std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
  if (isCode) return text;
  throw InvalidInput("The home currency " + Quoted(text) +
                     " is no currency code; write three capital letters, such as "
                     "USD.");
}

}  // namespace standalone
