#pragma once

#include <optional>

#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RelationAccounts.h"
#include "standalone/values/CheckedText.h"

// What has to be so before a pairing is begun; within a unit of work, but for the first one.
namespace desk {

// Asked before anything is made that a refusal would leave behind.
void RequireMayManage(Work& work);

// Refused for the name of a live pairing.
void RefuseAnotherOfThatName(Work& work, const standalone::PartnerName& partner);

// Puts into `pairing` the accounts of the relation with that realm, or, where there is none yet, those that are given,
// which are to be free. Refused for accounts that are given although the relation has its own. No realm while the
// partner's is not known.
void ChooseAccountsFor(Work& work, const RelationAccounts& given, const std::optional<standalone::RealmId>& realm,
                       standalone::Pairing& pairing);

}  // namespace desk
