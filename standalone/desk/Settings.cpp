#include "standalone/desk/Settings.h"

#include "standalone/books/SettingsTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

Settings SettingsOf(const standalone::Settings& settings) {
  return {.companyName = settings.companyName,
          .homeCurrency = settings.homeCurrency,
          .multiCurrency = settings.multiCurrency,
          .sampleFile = settings.sampleFile,
          .accountantsCopy = settings.accountantsCopy};
}

}  // namespace

Settings ReadSettings(Company& company) {
  Work work(company.Opened(), UseCase::kReadSettings);
  return work.Read([&] {
    work.RequireAdministratorOrAccountant("the settings");
    return SettingsOf(work.Host().Settings().Get());
  });
}

Settings ChangeSetting(Company& company, std::string_view setting, std::string_view value) {
  Work work(company.Opened(), UseCase::kChangeSettings);
  return work.WriteAsAdministrator("a change of settings", [&] {
    work.Host().Settings().Set(setting, value);
    return SettingsOf(work.Host().Settings().Get());
  });
}

}  // namespace desk
