#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/values/CheckedText.h"

namespace desk {

class Company;

struct Account {
  std::int32_t id = 0;           // record number
  std::string name;              // colon-separated, from the top
  std::int16_t type = 0;         // KrEnumerations::AccntTypeType; see standalone::AccountTypeName()
  std::int32_t specialKind = 0;  // 0 for an ordinary account; the host's number of another kind
  bool deleted = false;          // kept for the postings that it has
};

// By name, those marked deleted included.
std::vector<Account> ListAccounts(Company& company);
// Those of one type that are not marked deleted, by name.
std::vector<Account> ListAccountsOfType(Company& company, std::int16_t type);
// Those that no relation uses and whose kind suits one, by name, those marked deleted included; on request also those
// of the relation with `realm`.
std::vector<Account> ListFreeAccounts(Company& company, const std::optional<standalone::RealmId>& realm);

}  // namespace desk
