#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntityHost/Enumerations.h"

class CAccnt;

// Names an open account of the host; the number is the host's choice.
enum class AccountHandle : std::uint64_t {};

// Names the host's account list; the number is the host's choice.
enum class AccountListHandle : std::uint64_t {};

// The host's chart of accounts. A host implements it; the module calls it on the user-interface thread. An account's
// record number is 1 or greater and stays its own for good.
class ChartOfAccounts {
 public:
  virtual AccountListHandle GetAccntListPtr() = 0;
  // Brings the list up to date with what other programs wrote; `option` is 1.
  virtual void EdListRefreshList(AccountListHandle list, std::int32_t option) = 0;

  // Loads the account with that record number into `account`, also one that is marked deleted. kEdListSuccess when
  // there is one; otherwise `account` stays as it was.
  virtual EdListStatus GetAccountForRecnum(long recnum, CAccnt& account) = 0;

  // Adds an account. `name` is NUL-terminated and may be rewritten in place to the name as stored, never to a longer
  // one. kEdListSuccess with `recnum` set, kEdListDuplicateAccount when the name is taken, anything else otherwise.
  virtual EdListStatus CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) = 0;

  // Every account by record number, those marked deleted included, with the two texts of the account pickers: its full
  // name and the name of its type.
  virtual std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts() = 0;
  // The accounts of one type that are not marked deleted, in the order in which the pickers show them, with their full
  // names.
  virtual std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t type) = 0;

  // What a CAccnt is made of: opened blank or on a record, asked, released once. A blank account, and one whose record
  // does not exist, answers 0 and false.
  virtual AccountHandle OpenAccount(FeatureType feature) = 0;
  virtual AccountHandle OpenAccount(long recnum, FeatureType feature) = 0;
  virtual bool GetDeleted(AccountHandle account) = 0;
  virtual KrEnumerations::AccntTypeType GetType(AccountHandle account) = 0;
  virtual bool GetIsSubAccnt(AccountHandle account) = 0;
  virtual bool IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) = 0;
  virtual void ReleaseAccount(AccountHandle account) noexcept = 0;

 protected:
  ~ChartOfAccounts() = default;
};

// An account of the host, open as long as this object lives.
class CAccnt {
 public:
  CAccnt(ChartOfAccounts& accounts, FeatureType feature)
      : accounts_(accounts), handle_(accounts.OpenAccount(feature)) {}
  CAccnt(ChartOfAccounts& accounts, long recnum, FeatureType feature)
      : accounts_(accounts), handle_(accounts.OpenAccount(recnum, feature)) {}
  CAccnt(const CAccnt&) = delete;
  CAccnt& operator=(const CAccnt&) = delete;
  ~CAccnt() { accounts_.ReleaseAccount(handle_); }

  bool GetDeleted() const { return accounts_.GetDeleted(handle_); }
  KrEnumerations::AccntTypeType GetType() const { return accounts_.GetType(handle_); }
  bool GetIsSubAccnt() const { return accounts_.GetIsSubAccnt(handle_); }
  bool IsSpecial(KrEnumerations::SpecialAccountTypeType kind) const { return accounts_.IsSpecial(handle_, kind); }

  AccountHandle Handle() const noexcept { return handle_; }

 private:
  ChartOfAccounts& accounts_;
  AccountHandle handle_;
};
