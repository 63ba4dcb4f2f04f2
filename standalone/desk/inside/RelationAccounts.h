#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/books/AccountTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RelationAccounts.h"
#include "standalone/values/CheckedText.h"

// What a person may pair a partner with; within a unit of work.
namespace desk {

// Refused for a realm id that is this company's own.
void RefuseOwnRealm(Work& work, const standalone::RealmId& realm);

struct PairOfAccounts {
  std::optional<standalone::Account> dueFrom;
  std::optional<standalone::Account> dueTo;
};
// As people name them, with those that are left out as the relation with that realm has them, if there is one. Refused
// for one account in both places, and unless it is said that any will do for what is no asset or no liability.
PairOfAccounts ChooseAccounts(Work& work, const standalone::RealmId& realm, const RelationAccounts& given);

// Why nothing but what is shared with a partner is booked on the account; empty for one that is paired with nobody.
std::string WhyPaired(Work& work, std::int32_t accountId);

// As the module is told.
std::vector<MEAccountInfo> AccountsForModule(const PairOfAccounts& accounts);

}  // namespace desk
