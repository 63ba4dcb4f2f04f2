#include "support/ScriptedConfiguration.h"

bool ScriptedSwitches::IsFeatureEnabled(const char* section, const char* flag) {
  if (script_.Call("IsFeatureEnabled", section, flag)) return false;
  return !off.contains({section, flag});
}

bool ScriptedValues::GetValue2(Util::TString section, Util::TString key, Util::TString& value) {
  if (script_.Call("GetValue2", section, key)) return false;
  const auto found = values.find({std::string(section.view()), std::string(key.view())});
  if (found == values.end()) return false;
  value = Util::TString(found->second);
  return true;
}

Util::Status ScriptedDatabasePreferences::GetCompanyDBPreference(Util::TString key, Util::TString& value) {
  if (const auto failure = script_.Call("GetCompanyDBPreference", key)) return Util::Status(failure->code.value_or(-1));
  const auto found = values.find(std::string(key.view()));
  if (found == values.end()) return Util::Status(Util::Status::kPreferenceMissing);
  value = Util::TString(found->second);
  return Util::Status(Util::Status::kSuccess);
}

Util::Status ScriptedDatabasePreferences::SetCompanyDBPreference(Util::TString key, Util::TString value) {
  const auto failure = script_.Call("SetCompanyDBPreference", key, value);
  if (failure) return Util::Status(failure->code.value_or(-1));
  values.insert_or_assign(std::string(key.view()), std::string(value.view()));
  return Util::Status(Util::Status::kSuccess);
}

bool ScriptedPreferences::PrefGetPrefHandle() {
  return !script_.Call("PrefGetPrefHandle") && available;
}

bool ScriptedPreferences::GetCurrentFileIsSample() {
  return !script_.Call("GetCurrentFileIsSample") && sampleFile;
}

std::int32_t ScriptedPreferences::GetIsAccntntCopy() {
  script_.Call("GetIsAccntntCopy");
  return accountantsCopy;
}

bool ScriptedPreferences::GetUseMultiCurrency() {
  return !script_.Call("GetUseMultiCurrency") && multiCurrency;
}

void ScriptedPreferences::GetHomeCurrency(CCurrency& currency) {
  if (script_.Call("GetHomeCurrency")) return;
  currencies[currency.Handle()] = homeCurrency;
}

CurrencyHandle ScriptedPreferences::OpenCurrency(FeatureType feature) {
  script_.Call("OpenCurrency", feature);
  return currencies.Open({});
}

bool ScriptedPreferences::IsValidCurrency(CurrencyHandle currency) {
  const std::string code = currencies[currency];
  return !script_.Call("IsValidCurrency", code) && !code.empty();
}

Util::TString ScriptedPreferences::GetCurrencyCode(CurrencyHandle currency) {
  const std::string code = currencies[currency];
  script_.Call("GetCurrencyCode", code);
  return {code};
}

void ScriptedPreferences::ReleaseCurrency(CurrencyHandle currency) noexcept {
  script_.Note("ReleaseCurrency", currencies.Release(currency));
}

bool ScriptedPermissions::CurrentUserIsAdminUser() {
  return !script_.Call("CurrentUserIsAdminUser") && administrator;
}

bool ScriptedPermissions::FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) {
  if (script_.Call("FeaturePermissionAvailable", feature, action, option)) return false;
  return administrator || features.contains({feature, action});
}

bool ScriptedPermissions::ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action,
                                                  CAccnt& element, std::int32_t option2, std::int32_t option3) {
  if (script_.Call("ListPermissionAvailable", list, option1, action, element.Handle(), option2, option3)) return false;
  return administrator || lists.contains({list, action});
}
