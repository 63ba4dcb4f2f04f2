#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/TString.h"
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
};

struct NewAccount {
  std::string fullName;  // blanks around its parts are dropped
  std::int16_t type = 0;
  std::int32_t specialKind = 0;
  bool deleted = false;
};

// The chart of accounts. Names compare without regard to the case of ASCII letters, and two accounts that are not
// marked deleted never have the same full name. Every operation needs an open unit of work.
class AccountTable {
 public:
  explicit AccountTable(Database& database);

  // By full name, those marked deleted on request included.
  std::vector<Account> List(bool withDeleted = false);
  std::vector<Account> ListOfType(std::int16_t type);

  std::optional<Account> Find(std::int32_t id);
  // Blank, with the id 0, when there is none.
  AccountFacts FactsOf(std::int32_t id);
  // Empty when there is none; valid until the next question. Each name is read once as long as nobody changes a list.
  const Util::TString& FullNameOf(std::int32_t id);
  // Hands every account with its full name to `take`, in the order of record numbers.
  void ForEach(const std::function<void(const AccountFacts& facts, std::string_view fullName)>& take);
  // Among those not marked deleted.
  std::optional<Account> FindByFullName(std::string_view fullName);
  // A record number or a full name that a person typed; a text of digits is a record number. Throws InvalidInput.
  Account Require(std::string_view idOrFullName);

  // Adds an account; its parent must exist, must not be marked deleted and has the same type. Throws InvalidInput, or
  // ConstraintViolation when the full name is taken.
  Account Create(const NewAccount& account);

  void SetDeleted(std::int32_t id, bool deleted);

 private:
  Database& database_;
  Statement all_;
  Statement live_;
  Statement liveOfType_;
  Statement byId_;
  Statement factsById_;
  Statement fullNameById_;
  Statement byRecordNumber_;
  Statement byFullName_;
  Statement insert_;
  Statement setDeleted_;
  ReadOnce<HeldRecords<Util::TString>> fullNames_;
};

}  // namespace standalone
