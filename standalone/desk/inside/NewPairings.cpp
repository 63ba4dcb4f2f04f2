#include "standalone/desk/inside/NewPairings.h"

#include <string>

#include "standalone/books/RelationTable.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/RelationAccounts.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::PairingState;
using standalone::Quoted;

// Of a partner whose realm id is not known yet; a company's own has sixteen digits.
constexpr std::string_view kNoRealm = "0";

// For a relation that there will be.
void ReserveAccounts(Work& work, const RelationAccounts& given, const standalone::RealmId& realm, Pairing& pairing) {
  if (!given.dueFrom || !given.dueTo) {
    work.Refuse("a pairing needs a due-from and a due-to account", Remedy::kGiveBothAccounts);
  }
  const PairOfAccounts chosen = ChooseAccounts(work, realm, given);
  pairing.dueFromAccountId = chosen.dueFrom.value().id;
  pairing.dueToAccountId = chosen.dueTo.value().id;
  if (work.Host().Relations().UsesAccounts(pairing.dueFromAccountId, pairing.dueToAccountId)) {
    work.Refuse("another relation has one of the accounts already", Remedy::kChooseFreePartnerOrAccounts);
  }
  RefuseReserved(work, pairing.dueFromAccountId);
  RefuseReserved(work, pairing.dueToAccountId);
}

}  // namespace

void RequireMayManage(Work& work) {
  work.AskToRead([&] { return work.MayManageRelations() ? MEStatusSuccess : MEStatusPermissionDenied; });
}

void RefuseAnotherOfThatName(Work& work, const standalone::PartnerName& partner) {
  for (const Pairing& pairing : work.Host().Pairings().List()) {
    if (pairing.state == PairingState::kRemoved || pairing.partnerName != partner.Text()) continue;
    work.Refuse("there is a pairing with " + Quoted(partner.Text()) + " already, which is " +
                    std::string(NameOf(pairing.state)),
                Remedy::kSeePartners);
  }
}

void ChooseAccountsFor(Work& work, const RelationAccounts& given, const std::optional<standalone::RealmId>& realm,
                       Pairing& pairing) {
  DBMultiEntityRelation relation{};
  if (!realm || !work.Host().Relations().Find(realm->Text(), relation)) {
    ReserveAccounts(work, given, realm.value_or(standalone::RealmId(kNoRealm)), pairing);
    return;
  }
  if (given.dueFrom || given.dueTo) {
    work.Refuse("the relation that exists already has its accounts", Remedy::kLeaveOutTheAccounts);
  }
  pairing.dueFromAccountId = relation.dueFromAccountId;
  pairing.dueToAccountId = relation.dueToAccountId;
}

}  // namespace desk
