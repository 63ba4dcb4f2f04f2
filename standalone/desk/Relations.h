#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/Partner.h"
#include "standalone/desk/results/Relation.h"
#include "standalone/desk/results/RelationAccounts.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/States.h"

namespace desk {

class Company;

struct NewRelation {
  standalone::RealmId realm;
  standalone::PartnerName partner;
  std::int16_t type = 0;
  standalone::RelationState state = standalone::RelationState::kEstablished;
  RelationAccounts accounts;
};

struct RelationChange {
  Partner partner;
  std::optional<standalone::RelationState> state;  // kept when left out
  RelationAccounts accounts;                       // kept when left out
};

// Those that change relations are for administrators and accountants, as the module decides. standalone::InvalidInput
// for an account that is none, and for the state 6, which is never stored. Refused are a relation of the company with
// itself and one whose accounts are one.

// A relation that is pending or without accounts is taken up again.
void CreateRelation(Company& company, const NewRelation& relation);
// Returns the partner's realm id.
std::string UpdateRelation(Company& company, const RelationChange& change);

struct Deleted {
  std::string realm;         // the partner's
  bool deactivated = false;  // kept while transactions refer to the relation
};
// A pending one only with `force`.
Deleted DeleteRelation(Company& company, const Partner& partner, bool force);

Relation ShowRelation(Company& company, const Partner& partner);
Relation ShowRelation(Company& company, std::int32_t id);
// In the order in which they were made; on request those in one state only.
std::vector<Relation> ListRelations(Company& company,
                                    const std::optional<standalone::RelationState>& state = std::nullopt);
std::vector<std::string> ListRealms(Company& company, bool withAccountsOnly);

}  // namespace desk
