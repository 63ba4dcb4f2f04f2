#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "MultiEntityHost/ChartOfAccounts.h"
#include "MultiEntityHost/NameList.h"
#include "support/CallScript.h"
#include "support/OpenObjects.h"

inline EdListStatus Failed(const ScriptedFailure& failure) {
  return static_cast<EdListStatus>(failure.code.value_or(kEdListFailure));
}

// A full name such as " Travel : Flights" as it is stored, Travel:Flights. Nothing for a text that is no name: a part
// of it is empty or holds a control character.
std::optional<std::string> StoredFullName(std::string_view text);

// The part before the last colon; empty for a name that stands under no other.
std::string ParentOf(const std::string& fullName);

struct ScriptedAccount {
  std::string name;  // the full name, such as Travel:Flights
  std::int16_t type = KrEnumerations::kBank;
  bool isSubAccount = false;
  bool deleted = false;
  std::set<std::int32_t> specialKinds{};
};

class ScriptedChart final : public ChartOfAccounts {
 public:
  explicit ScriptedChart(CallScript& script) : script_(script) {}

  AccountListHandle GetAccntListPtr() override;
  void EdListRefreshList(AccountListHandle list, std::int32_t option) override;
  EdListStatus GetAccountForRecnum(long recnum, CAccnt& account) override;
  EdListStatus CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) override;
  std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts() override;
  std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t type) override;

  AccountHandle OpenAccount(FeatureType feature) override;
  AccountHandle OpenAccount(long recnum, FeatureType feature) override;
  bool GetDeleted(AccountHandle account) override;
  KrEnumerations::AccntTypeType GetType(AccountHandle account) override;
  bool GetIsSubAccnt(AccountHandle account) override;
  bool IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) override;
  void ReleaseAccount(AccountHandle account) noexcept override;

  std::map<long, ScriptedAccount> accounts;  // by record number
  float accountMapLoadFactor = 1.0F;         // of the map that GetAllAccounts answers

  OpenObjects<AccountHandle, long> open{"account"};  // record numbers; 0 for a blank account

 private:
  // Null for a blank account and for a record number that is not there.
  const ScriptedAccount* Find(long recnum) const;
  bool HasAccount(std::string_view fullName) const;

  CallScript& script_;
};

struct ScriptedName {
  std::string text;  // without its parents
  std::int32_t parent = 0;
};

class ScriptedNames final : public NameList {
 public:
  explicit ScriptedNames(CallScript& script) : script_(script) {}

  EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) override;
  bool IsValidName(NameHandle name) override;
  Util::TString GetName(NameHandle name, char* buffer, std::int32_t modifier) override;
  NameHandle GetParent(NameHandle name) override;
  void ReleaseName(NameHandle name) noexcept override;

  // The record number of the name with that full name, 0 when there is none.
  std::int32_t Find(std::string_view fullName) const;

  std::map<std::int32_t, ScriptedName> names;  // by record number

  OpenObjects<NameHandle, std::int32_t> open{"name"};  // record numbers; 0 for a name that is not valid

 private:
  std::string FullName(const ScriptedName& name) const;

  CallScript& script_;
};
