#include "standalone/PreferencesService.h"

#include "standalone/Guard.h"
#include "standalone/Text.h"

namespace standalone {

DatabasePreferencesService::DatabasePreferencesService(Database& database)
    : get_(database, "SELECT value FROM preference WHERE key = ?1"),
      set_(database, "INSERT INTO preference VALUES (?1, ?2) ON CONFLICT (key) DO UPDATE SET value = excluded.value") {}

Util::Status DatabasePreferencesService::GetCompanyDBPreference(Util::TString key, Util::TString& value) {
  return AsStatus([&] {
    Rows rows = get_.Query(key.view());
    if (!rows.Step()) return Util::Status::kPreferenceMissing;
    value = rows.Text(0);
    return Util::Status::kSuccess;
  });
}

Util::Status DatabasePreferencesService::SetCompanyDBPreference(Util::TString key, Util::TString value) {
  return AsStatus([&] {
    RequireText("The preference key", key.view(), 1, kPreferenceKeyLength);
    set_.Run(key.view(), value.view());
    return Util::Status::kSuccess;
  });
}

std::optional<std::string> DatabasePreferencesService::Find(std::string_view key) {
  Rows rows = get_.Query(key);
  if (!rows.Step()) return std::nullopt;
  return std::string(rows.Text(0));
}

bool PreferencesService::PrefGetPrefHandle() {
  return application_.GetActiveFileMgr() != nullptr;
}

bool PreferencesService::GetCurrentFileIsSample() {
  return settings_.Get().sampleFile;
}

std::int32_t PreferencesService::GetIsAccntntCopy() {
  return settings_.Get().accountantsCopy ? 1 : 0;
}

bool PreferencesService::GetUseMultiCurrency() {
  return settings_.Get().multiCurrency;
}

void PreferencesService::GetHomeCurrency(CCurrency& currency) {
  open_.At(static_cast<std::uint64_t>(currency.Handle())) = settings_.Get().homeCurrency;
}

CurrencyHandle PreferencesService::OpenCurrency(FeatureType /*feature*/) {
  const std::uint64_t handle = open_.Open();
  open_.At(handle).clear();
  return CurrencyHandle{handle};
}

bool PreferencesService::IsValidCurrency(CurrencyHandle currency) {
  return !open_.At(static_cast<std::uint64_t>(currency)).empty();
}

Util::TString PreferencesService::GetCurrencyCode(CurrencyHandle currency) {
  return std::string_view(open_.At(static_cast<std::uint64_t>(currency)));
}

void PreferencesService::ReleaseCurrency(CurrencyHandle currency) noexcept {
  open_.Release(static_cast<std::uint64_t>(currency));
}

}  // namespace standalone
