#pragma once

#include <cstdint>

#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/Status.h"
#include "MultiEntityHost/TString.h"

// The keys that the module keeps there: the realm id that the company remembers, and the day of the next reminder as
// YYYYMMDD.
inline constexpr const char* kRealmIdPreference = "MERealmId";
inline constexpr const char* kLaunchDatePreference = "MEPromptLaunchDate";

// The preferences kept in the company database by key. A host implements it; the module calls it on the
// user-interface thread.
class DBPreferences {
 public:
  // Fills `value`. Status::kPreferenceMissing when there is no such preference.
  virtual Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) = 0;

  // Stores `value`, over an earlier one if there is one.
  virtual Util::Status SetCompanyDBPreference(Util::TString key, Util::TString value) = 0;

 protected:
  ~DBPreferences() = default;
};

class CCurrency;

// Names an open currency of the host; the number is the host's choice.
enum class CurrencyHandle : std::uint64_t {};

// The company's own preferences. A host implements it; the module calls it on the user-interface thread.
class PrefsTag {
 public:
  // Whether the preferences of a company file are there to be asked; they are while one is open.
  virtual bool PrefGetPrefHandle() = 0;

  // Whether the company file is a sample to try things with; no reminder comes for one.
  virtual bool GetCurrentFileIsSample() = 0;
  // 0 when the file is no accountant's copy.
  virtual std::int32_t GetIsAccntntCopy() = 0;
  // Whether the company keeps several currencies; the home currency's code is asked for only then.
  virtual bool GetUseMultiCurrency() = 0;
  // Lets `currency` stand for the company's home currency.
  virtual void GetHomeCurrency(CCurrency& currency) = 0;

  // What a CCurrency is made of: opened without a currency, asked, released once. One that stands for
  // none is not valid, and its code is not asked for.
  virtual CurrencyHandle OpenCurrency(FeatureType feature) = 0;
  virtual bool IsValidCurrency(CurrencyHandle currency) = 0;
  virtual Util::TString GetCurrencyCode(CurrencyHandle currency) = 0;
  virtual void ReleaseCurrency(CurrencyHandle currency) noexcept = 0;

 protected:
  ~PrefsTag() = default;
};

// A currency of the host, open as long as this object lives.
class CCurrency {
 public:
  CCurrency(PrefsTag& preferences, FeatureType feature)
      : preferences_(preferences), handle_(preferences.OpenCurrency(feature)) {}
  CCurrency(const CCurrency&) = delete;
  CCurrency& operator=(const CCurrency&) = delete;
  ~CCurrency() { preferences_.ReleaseCurrency(handle_); }

  bool IsValid() const { return preferences_.IsValidCurrency(handle_); }
  // The ISO 4217 code, such as USD.
  Util::TString GetCode() const { return preferences_.GetCurrencyCode(handle_); }

  CurrencyHandle Handle() const noexcept { return handle_; }

 private:
  PrefsTag& preferences_;
  CurrencyHandle handle_;
};
