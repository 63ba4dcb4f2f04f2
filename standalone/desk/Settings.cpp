#include "standalone/desk/Settings.h"

#include "standalone/books/SettingsTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

Settings SettingsOf(const standalone::Settings& settings) {
  return {.companyName = settings.companyName,
          .homeCurrency = settings.homeCurrency,
          .decimals = settings.decimals,
          .multiCurrency = settings.multiCurrency,
          .sampleFile = settings.sampleFile,
          .accountantsCopy = settings.accountantsCopy,
          .closingDate =
              settings.closingDate == NullDate() ? std::nullopt : std::optional<DateType32>(settings.closingDate)};
}

// Each line's amount is one of the currency in which it was booked.
void RequireNoLines(Work& work, const std::string& currency) {
  if (!work.Host().Transactions().HasLines()) return;
  work.Refuse("the home currency stays " + currency + ": there are lines in the books, whose amounts are of it",
              Remedy::kMakeAnotherCompany);
}

}  // namespace

Settings ReadSettings(Company& company) {
  Work work(company.Opened(), UseCase::kReadSettings);
  return work.Read([&] {
    work.RequireAdministratorOrAccountant("the settings");
    return SettingsOf(work.Host().Settings().Get());
  });
}

ChangedSettings ChangeSetting(Company& company, std::string_view setting, std::string_view value) {
  Work work(company.Opened(), UseCase::kChangeSettings);
  return work.WriteAsAdministrator("a change of settings", [&] {
    const standalone::Settings before = work.Host().Settings().Get();
    work.Host().Settings().Set(setting, value);
    const standalone::Settings& after = work.Host().Settings().Get();
    if (after.homeCurrency != before.homeCurrency) {
      RequireNoLines(work, before.homeCurrency);
      RefuseWhilePaired(work);
    }
    return ChangedSettings{SettingsOf(after), work.RecordChanges(DeedOfSettings(before, after))};
  });
}

}  // namespace desk
