#include "standalone/services/PreferencesService.h"

#include "standalone/services/Guard.h"

namespace standalone {

Util::Status DatabasePreferencesService::GetCompanyDBPreference(Util::TString key, Util::TString& value) {
  return AsStatus([&] {
    const std::optional<std::string> found = preferences_.Find(key.view());
    if (!found) return Util::Status::kPreferenceMissing;
    value = std::string_view(*found);
    return Util::Status::kSuccess;
  });
}

Util::Status DatabasePreferencesService::SetCompanyDBPreference(Util::TString key, Util::TString value) {
  return AsStatus([&] {
    preferences_.Set(key.view(), value.view());
    return Util::Status::kSuccess;
  });
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
