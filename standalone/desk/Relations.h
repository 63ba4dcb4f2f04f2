#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/Relation.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/States.h"

namespace desk {

class Company;

// Accounts as people give them: by record number or colon-separated name. Both or none.
struct RelationAccounts {
  std::optional<std::string> dueFrom;  // an asset
  std::optional<std::string> dueTo;    // a liability
  bool ofAnyType = false;              // takes others, too, as far as the module does
};

struct NewRelation {
  standalone::RealmId realm;
  standalone::PartnerName partner;
  std::int16_t type = 0;
  standalone::RelationState state = standalone::RelationState::kEstablished;
  RelationAccounts accounts;
};

struct RelationChange {
  standalone::RealmId realm;
  std::optional<standalone::RelationState> state;  // kept when left out
  RelationAccounts accounts;                       // kept when left out
};

// Those that change relations are for administrators and accountants, as the module decides. standalone::InvalidInput
// for an account that is none, and for the state 6, which is never stored. Refused are a relation of the company with
// itself and one whose accounts are one.

// A relation that is pending or without accounts is taken up again.
void CreateRelation(Company& company, const NewRelation& relation);
void UpdateRelation(Company& company, const RelationChange& change);

enum class Deleted { kRemoved, kDeactivated };  // the latter while transactions refer to the relation
// A pending one only with `force`.
Deleted DeleteRelation(Company& company, const standalone::RealmId& realm, bool force);

Relation ShowRelation(Company& company, const standalone::RealmId& realm);
Relation ShowRelation(Company& company, std::int32_t id);
// In the order in which they were made.
std::vector<Relation> ListRelations(Company& company);
std::vector<std::string> ListRealms(Company& company, bool withAccountsOnly);

}  // namespace desk
