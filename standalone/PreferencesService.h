#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/Application.h"
#include "host/Preferences.h"
#include "standalone/HandleTable.h"
#include "standalone/SettingsTable.h"

namespace standalone {

// The realm id that the company file remembers, and the day of its next reminder (YYYYMMDD).
inline constexpr const char* kRealmIdPreference = "MERealmId";
inline constexpr const char* kLaunchDatePreference = "MEPromptLaunchDate";

// The preferences kept in the company file by key.
class DatabasePreferencesService final : public DBPreferences {
 public:
  explicit DatabasePreferencesService(Database& database);

  Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) override;
  Util::Status SetCompanyDBPreference(Util::TString key, Util::TString value) override;

  // Only reads; within a unit of work.
  std::optional<std::string> Find(std::string_view key);

 private:
  Statement get_;
  Statement set_;
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
