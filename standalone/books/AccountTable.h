#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/TString.h"
#include "standalone/books/AlikeNames.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/HeldRecords.h"

namespace standalone {

// An account but for its names.
struct AccountFacts {
  std::int32_t id = 0;           // record number, 1 or greater
  std::int32_t parentId = 0;     // 0 without a parent
  std::int32_t specialKind = 0;  // 0 for an ordinary account
  std::int16_t type = 0;         // KrEnumerations::AccntTypeType, or a higher number
  bool deleted = false;
};

struct Account : AccountFacts {
  std::string name;      // its own, without its parents'
  std::string fullName;  // colon-separated, from the top
  std::string number;    // in the chart of accounts; empty without one
};

// What an account is used by besides relations.
struct AccountUse {
  std::int64_t lines = 0;
  std::int64_t subAccounts = 0;  // that are not marked deleted
};

struct NewAccount {
  std::string fullName;  // blanks around its parts are dropped
  std::int16_t type = 0;
  std::int32_t specialKind = 0;
  bool deleted = false;
  std::optional<std::string_view> number = std::nullopt;  // that no other account has
};

// Whether lines of new transactions may name it: it is there, not marked deleted, and of a type that has a balance.
bool TakesPostings(const AccountFacts& account) noexcept;
// Throws InvalidInput that says why not.
void RequireTakesPostings(const Account& account);

// The chart of accounts. Names compare without regard to the case of ASCII letters, and two accounts that are not
// marked deleted never have the same full name. Every operation needs an open unit of work.
class AccountTable {
 public:
  explicit AccountTable(Database& database);

  // By full name, those marked deleted on request included.
  std::vector<Account> List(bool withDeleted = false);
  std::vector<Account> ListOfType(std::int16_t type);

  std::optional<Account> Find(std::int32_t id);
  // Blank, with the id 0, when there is none. Each is read once as long as nobody changes a list.
  AccountFacts FactsOf(std::int32_t id);
  // Empty when there is none; valid until the next question. Each name is read once as long as nobody changes a list.
  const Util::TString& FullNameOf(std::int32_t id);
  // Hands every account with its full name to `take`, in the order of record numbers.
  void ForEach(const std::function<void(const AccountFacts& facts, std::string_view fullName)>& take);
  // Among those not marked deleted.
  std::optional<Account> FindByFullName(std::string_view fullName);
  std::optional<Account> FindByNumber(std::string_view number);
  // What a person typed: an account number, a record number, which a "#" may mark, or a full name. Throws InvalidInput
  // when there is no such account, and when the text is one thing of one account and another thing of another.
  Account Require(std::string_view text);
  // The same, but nothing when there is no such account.
  std::optional<Account> FindTyped(std::string_view text);
  // For finding those not marked deleted, but for the one of that full name, that are called alike.
  AlikeNames ForAlike(std::string_view butFor = {});

  // Adds an account; its parent must exist, must not be marked deleted and has the same type. Throws InvalidInput, or
  // ConstraintViolation when the full name is taken.
  Account Create(const NewAccount& account);

  // Gives an account another name of its own, which changes the full names of its sub-accounts, too, of those marked
  // deleted as well. Returns how many sub-accounts that were. Throws InvalidInput, or ConstraintViolation when a full
  // name is taken.
  std::int64_t Rename(std::int32_t id, std::string_view ownName);
  // Empty for none. Throws InvalidInput, or ConstraintViolation when another account has the number.
  void SetNumber(std::int32_t id, std::string_view number);
  AccountUse UseOf(std::int32_t id);
  void SetDeleted(std::int32_t id, bool deleted);

 private:
  std::optional<Account> ReadOne(Rows rows);
  std::int64_t LongestBelow(std::int32_t id);
  void RequireFreeName(std::string_view fullName, std::int32_t id);
  void RequireFreeNumber(std::string_view number, std::int32_t id);

  Database& database_;
  Statement all_;
  Statement live_;
  Statement liveOfType_;
  Statement byId_;
  Statement factsById_;
  Statement fullNameById_;
  Statement byRecordNumber_;
  Statement byFullName_;
  Statement byNumber_;
  Statement beyondAscii_;
  Statement lengthBelow_;
  Statement rename_;
  Statement setNumber_;
  Statement use_;
  Statement insert_;
  Statement setDeleted_;
  ReadOnce<HeldRecords<Util::TString>> fullNames_;
  ReadOnce<HeldRecords<AccountFacts>> facts_;
};

}  // namespace standalone
