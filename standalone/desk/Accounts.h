#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/values/CheckedText.h"
#include "standalone/values/ListNames.h"

namespace desk {

class Company;

struct Account {
  std::int32_t id = 0;           // record number
  std::string name;              // colon-separated, from the top
  std::string number;            // in the chart of accounts; empty without one
  std::int16_t type = 0;         // KrEnumerations::AccntTypeType; see standalone::AccountTypeName()
  std::int32_t specialKind = 0;  // 0 for an ordinary account; the host's number of another kind
  bool deleted = false;          // kept for the postings that it has
};

struct AccountToAdd {
  std::string name;  // colon-separated, from the top; its parents are there
  std::int16_t type = 0;
  std::optional<standalone::AccountNumber> number;
};

struct RenamedAccount {
  Account account;
  std::string before;            // its full name, which may be the same
  std::int64_t subAccounts = 0;  // whose full names have changed with it
};

struct RenumberedAccount : Account {
  std::string before;  // its number, which may be the same
};

// By name, those marked deleted included.
std::vector<Account> ListAccounts(Company& company);
// Those of one type that are not marked deleted, by name.
std::vector<Account> ListAccountsOfType(Company& company, std::int16_t type);
// Those that no relation uses and whose kind suits one, by name, those marked deleted included; on request also those
// of the relation with `realm`.
std::vector<Account> ListFreeAccounts(Company& company, const std::optional<standalone::RealmId>& realm);

// Accounts are given by account number, record number or full name, as standalone::AccountTable::Require() takes them.
// A name or number that another account has is standalone::InvalidInput. These need the right accounts:create,
// accounts:modify or accounts:delete.
Account AddAccount(Company& company, const AccountToAdd& account);
// Another name of its own; it stays where it stands.
RenamedAccount RenameAccount(Company& company, const std::string& account, const std::string& ownName);
// None takes the number from it.
RenumberedAccount SetAccountNumber(Company& company, const std::string& account,
                                   const std::optional<standalone::AccountNumber>& number);
// Marks an account deleted that no line, no relation and no sub-account uses.
Account DeleteAccount(Company& company, const std::string& account);

}  // namespace desk
