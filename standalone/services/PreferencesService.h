#pragma once

#include <string>

#include "MultiEntityHost/Application.h"
#include "MultiEntityHost/Preferences.h"
#include "standalone/books/PreferenceTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/services/HandleTable.h"

namespace standalone {

// The preferences kept in the company by key.
class DatabasePreferencesService final : public DBPreferences {
 public:
  explicit DatabasePreferencesService(PreferenceTable& preferences) noexcept : preferences_(preferences) {}

  Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) override;
  Util::Status SetCompanyDBPreference(Util::TString key, Util::TString value) override;

 private:
  PreferenceTable& preferences_;
};

// The company's own preferences, which are there while the company file is open.
class PreferencesService final : public PrefsTag {
 public:
  PreferencesService(SettingsTable& settings, Application& application)
      : settings_(settings), application_(application) {}

  bool PrefGetPrefHandle() override;
  bool GetCurrentFileIsSample() override;
  std::int32_t GetIsAccntntCopy() override;
  bool GetUseMultiCurrency() override;
  void GetHomeCurrency(CCurrency& currency) override;
  CurrencyHandle OpenCurrency(FeatureType feature) override;
  bool IsValidCurrency(CurrencyHandle currency) override;
  Util::TString GetCurrencyCode(CurrencyHandle currency) override;
  void ReleaseCurrency(CurrencyHandle currency) noexcept override;

 private:
  SettingsTable& settings_;
  Application& application_;
  HandleTable<std::string> open_;
};

}  // namespace standalone
