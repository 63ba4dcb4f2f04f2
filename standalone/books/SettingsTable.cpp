#include "standalone/books/SettingsTable.h"

#include <algorithm>

#include "standalone/books/TransactionTable.h"
#include "standalone/values/Currency.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

std::string CheckedCompanyName(std::string_view value) {
  return std::string(RequireText("The company name", value, 1, kCompanyNameLength));
}

// The decimals of a company of before are those in which it was kept, whatever its currency has.
void ChangeCurrency(Settings& settings, std::string_view code) {
  if (settings.homeCurrency == code) return;
  settings.homeCurrency = code;
  settings.decimals = DecimalsOf(code);
}

std::int64_t CountOf(const Settings& settings) {
  return static_cast<std::int64_t>(settings.decimals.Count());
}

DateType32 ParseClosingDate(std::string_view value) {
  if (value == "none") return NullDate();
  try {
    return ParseDate("The closing date", value);
  } catch (const InvalidInput& fault) {
    throw InvalidInput(std::string(fault.what()) + " Write none to open the books.");
  }
}

void Change(Settings& settings, std::string_view name, std::string_view value) {
  if (name == "company-name") {
    settings.companyName = CheckedCompanyName(value);
  } else if (name == "home-currency") {
    ChangeCurrency(settings, RequireCurrencyCode(value));
  } else if (name == "multi-currency") {
    settings.multiCurrency = ParseYesNo("The setting multi-currency", value);
  } else if (name == "sample-file") {
    settings.sampleFile = ParseYesNo("The setting sample-file", value);
  } else if (name == "accountants-copy") {
    settings.accountantsCopy = ParseYesNo("The setting accountants-copy", value);
  } else if (name == "closing-date") {
    settings.closingDate = ParseClosingDate(value);
  } else {
    throw InvalidInput("There is no setting " + Quoted(name) +
                       "; the settings are company-name, home-currency, multi-currency, sample-file, "
                       "accountants-copy and closing-date.");
  }
}

}  // namespace

SettingsTable::SettingsTable(Database& database)
    : get_(database,
           "SELECT name, home_currency, multi_currency, sample_file, accountants_copy, decimals, closing_date "
           "FROM company"),
      insert_(database, Writes::kLists,
              "INSERT INTO company (id, name, home_currency, multi_currency, sample_file, accountants_copy, decimals) "
              "VALUES (1, ?1, ?2, ?3, ?4, ?5, ?6)"),
      set_(database, Writes::kLists,
           "UPDATE company SET name = ?1, home_currency = ?2, multi_currency = ?3, sample_file = ?4, "
           "accountants_copy = ?5, decimals = ?6, closing_date = ?7"),
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
    settings.decimals = Decimals(rows.Int64(5));
    settings.closingDate = rows.Int64(6) != 0 ? DateOf(rows.Int64(6)) : NullDate();
  });
}

void SettingsTable::Begin(const Settings& settings) {
  insert_.Run(settings.companyName, settings.homeCurrency, settings.multiCurrency, settings.sampleFile,
              settings.accountantsCopy, CountOf(settings));
}

void SettingsTable::Set(std::string_view name, std::string_view value) {
  Settings settings = Get();
  Change(settings, name, value);
  set_.Run(settings.companyName, settings.homeCurrency, settings.multiCurrency, settings.sampleFile,
           settings.accountantsCopy, CountOf(settings), settings.closingDate.Value());
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
