#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "MultiEntityHost/Permissions.h"
#include "MultiEntityHost/Preferences.h"
#include "MultiEntityHost/Switches.h"
#include "support/CallScript.h"
#include "support/OpenObjects.h"

class ScriptedSwitches final : public KillSwitchHelper {
 public:
  explicit ScriptedSwitches(CallScript& script) : script_(script) {}

  bool IsFeatureEnabled(const char* section, const char* flag) override;

  void TurnOff(std::string section, std::string flag) { off.emplace(std::move(section), std::move(flag)); }

  std::set<std::pair<std::string, std::string>> off;  // section and flag; all others are on

 private:
  CallScript& script_;
};

class ScriptedValues final : public FileSystem::DCE {
 public:
  explicit ScriptedValues(CallScript& script) : script_(script) {}

  bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) override;

  std::map<std::pair<std::string, std::string>, std::string> values;  // by section and key

 private:
  CallScript& script_;
};

class ScriptedDatabasePreferences final : public DBPreferences {
 public:
  explicit ScriptedDatabasePreferences(CallScript& script) : script_(script) {}

  Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) override;
  Util::Status SetCompanyDBPreference(Util::TString key, Util::TString value) override;

  std::map<std::string, std::string> values;

 private:
  CallScript& script_;
};

class ScriptedPreferences final : public PrefsTag {
 public:
  explicit ScriptedPreferences(CallScript& script) : script_(script) {}

  bool PrefGetPrefHandle() override;
  bool GetCurrentFileIsSample() override;
  std::int32_t GetIsAccntntCopy() override;
  bool GetUseMultiCurrency() override;
  void GetHomeCurrency(CCurrency& currency) override;

  CurrencyHandle OpenCurrency(FeatureType feature) override;
  bool IsValidCurrency(CurrencyHandle currency) override;
  Util::TString GetCurrencyCode(CurrencyHandle currency) override;
  void ReleaseCurrency(CurrencyHandle currency) noexcept override;

  bool available = true;
  bool sampleFile = false;
  std::int32_t accountantsCopy = 0;
  bool multiCurrency = false;
  std::string homeCurrency = "USD";  // empty: none that is valid

  OpenObjects<CurrencyHandle, std::string> currencies{"currency"};

 private:
  CallScript& script_;
};

class ScriptedPermissions final : public Permissions {
 public:
  explicit ScriptedPermissions(CallScript& script) : script_(script) {}

  bool CurrentUserIsAdminUser() override;
  bool FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) override;
  bool ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                               std::int32_t option2, std::int32_t option3) override;

  void Grant(ProgramFeature feature, UserAction action) { features.emplace(feature, action); }

  // The signed-in user; an administrator has every right.
  bool administrator = false;
  std::set<std::pair<ProgramFeature, UserAction>> features;
  std::set<std::pair<ListType, UserAction>> lists;

 private:
  CallScript& script_;
};
