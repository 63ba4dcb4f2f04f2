#pragma once

#include <string>
#include <string_view>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Partner.h"

// The partner companies as people call them: by realm id, or else by the name in the relation, or else by that name but
// for the case of its letters; a name that several have is refused. Within a unit of work.
namespace desk {

// Birch Services Company (realm 1001).
std::string PartnerText(const DBMultiEntityRelation& relation);

// Refused unless there is a relation with the partner.
DBMultiEntityRelation RequirePartner(Work& work, std::string_view realmOrName);

// What nobody is called may be the realm id of somebody without a relation, and comes back as it is; what is too long
// for one is refused.
standalone::RealmId RealmOf(Work& work, const Partner& partner);

void RequireEstablished(const Work& work, const DBMultiEntityRelation& relation);
// What the partner owes this company; refused unless the relation is established and has a due-from account.
std::int32_t RequireDueFrom(const Work& work, const DBMultiEntityRelation& relation);

}  // namespace desk
