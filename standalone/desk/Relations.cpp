#include "standalone/desk/Relations.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/RelationAccounts.h"
#include "standalone/desk/inside/RelationRows.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

// None for whoever may not change relations, which the module says before it looks at any.
std::vector<MEAccountInfo> CheckedAccounts(Work& work, const standalone::RealmId& realm,
                                           const RelationAccounts& given) {
  if (!work.MayManageRelations()) return {};
  RefuseOwnRealm(work, realm);
  const PairOfAccounts chosen = ChooseAccounts(work, realm, given);
  if (chosen.dueFrom) RefuseReserved(work, chosen.dueFrom->id);
  if (chosen.dueTo) RefuseReserved(work, chosen.dueTo->id);
  return AccountsForModule(chosen);
}

std::optional<DBMultiEntityRelation> FindRelation(Work& work, const standalone::RealmId& realm) {
  DBMultiEntityRelation relation{};
  if (!work.Host().Relations().Find(realm.Text(), relation)) return std::nullopt;
  return relation;
}

void RefuseToLeave(Work& work, const DBMultiEntityRelation& relation, const MEAccountInfo& given) {
  const bool isDueFrom = given.role == MEAccountRoleDueFrom;
  const std::int32_t accountId = isDueFrom ? relation.dueFromAccountId : relation.dueToAccountId;
  if (accountId == given.accountId) return;
  const std::optional<std::int32_t> booked = work.Host().Intercompany().FirstOn(relation.relationId, accountId);
  if (!booked) return;
  work.Refuse("the " + std::string(isDueFrom ? "due-from" : "due-to") + " account of " + PartnerText(relation) +
                  " stays " + standalone::Quoted(work.Host().Accounts().FullNameOf(accountId).view()) + ", on which " +
                  TextOf(work.Host().Transactions().FindHeader(*booked).value()) + " is booked",
              Remedy::kKeepTheAccount);
}

// With other accounts, what they hold and what is open with the partner would no longer agree.
void RefuseToLeaveWhatIsBooked(Work& work, const std::optional<DBMultiEntityRelation>& relation,
                               const std::vector<MEAccountInfo>& accounts) {
  if (!relation) return;
  for (const MEAccountInfo& account : accounts) RefuseToLeave(work, *relation, account);
}

// The one that is made anew; the module says of any other that it is there.
std::optional<DBMultiEntityRelation> FindTakenUpAgain(Work& work, const standalone::RealmId& realm) {
  std::optional<DBMultiEntityRelation> relation = FindRelation(work, realm);
  if (relation && relation->state != MEStatePending && relation->state != MEStateWithoutAccounts) relation.reset();
  return relation;
}

void RefuseOneAccountAlone(Work& work, const RelationAccounts& given) {
  if (given.dueFrom.has_value() == given.dueTo.has_value()) return;
  work.Refuse("only the " + std::string(given.dueFrom ? "due-from" : "due-to") +
                  " account is given; a relation is given both or keeps both",
              Remedy::kGiveBothAccounts);
}

// What changes the relation with `realm`, and the audit trail tells.
template <typename Change>
MEStatusCode Recorded(Work& work, const standalone::RealmId& realm, Change&& change) {
  const std::optional<Relation> before = RelationInBooks(work, realm);
  return work.Recorded(change(), [&] { return DeedOfRelation(before, RelationInBooks(work, realm)); });
}

template <typename Ask>
Relation ShowFound(Work& work, Ask&& ask) {
  Relation relation;
  work.AskToRead([&] {
    DBMultiEntityRelation row{};
    const MEStatusCode answer = ask(row);
    if (answer == MEStatusSuccess) relation = RelationOf(work, row);
    return answer;
  });
  return relation;
}

}  // namespace

void CreateRelation(Company& company, const NewRelation& relation) {
  standalone::RequireStored(relation.state);
  Work work(company.Opened(), UseCase::kCreateRelation);
  work.AskToWrite([&] {
    if (work.MayManageRelations()) RefusePaired(work, relation.realm.Text());
    return Recorded(work, relation.realm, [&] {
      std::vector<MEAccountInfo> accounts = CheckedAccounts(work, relation.realm, relation.accounts);
      RefuseToLeaveWhatIsBooked(work, FindTakenUpAgain(work, relation.realm), accounts);
      return MultiEntityDriver::CreateRelation(std::string_view(relation.realm.Text()),
                                               std::string_view(relation.partner.Text()), MERelationType{relation.type},
                                               static_cast<MEState>(relation.state), std::move(accounts));
    });
  });
}

std::string UpdateRelation(Company& company, const RelationChange& change) {
  MERelationInfo info;
  if (change.state) info.state = static_cast<MEState>(standalone::RequireStored(*change.state));
  Work work(company.Opened(), UseCase::kUpdateRelation);
  std::string changed;
  work.AskToWrite([&] {
    info.realmId = std::string_view(change.partner.Text());
    if (!work.MayManageRelations()) return MultiEntityDriver::UpdateRelation(info);
    const standalone::RealmId realm = RealmOf(work, change.partner);
    changed = realm.Text();
    RefusePaired(work, changed);
    info.realmId = std::string_view(changed);
    RefuseOneAccountAlone(work, change.accounts);
    info.accounts = CheckedAccounts(work, realm, change.accounts);
    RefuseToLeaveWhatIsBooked(work, FindRelation(work, realm), info.accounts);
    return Recorded(work, realm, [&] { return MultiEntityDriver::UpdateRelation(info); });
  });
  return changed;
}

Deleted DeleteRelation(Company& company, const Partner& partner, bool force) {
  Work work(company.Opened(), UseCase::kDeleteRelation);
  Deleted deleted;
  work.AskToWrite([&] {
    if (!work.MayManageRelations()) return MultiEntityDriver::DeleteRelation(std::string_view(partner.Text()), force);
    const standalone::RealmId realm = RealmOf(work, partner);
    deleted.realm = realm.Text();
    RefusePaired(work, deleted.realm);
    const MEStatusCode answer =
        Recorded(work, realm, [&] { return MultiEntityDriver::DeleteRelation(std::string_view(realm.Text()), force); });
    DBMultiEntityRelation left{};
    deleted.deactivated = answer == MEStatusSuccess && work.Host().Relations().Find(realm.Text(), left);
    return answer;
  });
  return deleted;
}

Relation ShowRelation(Company& company, const Partner& partner) {
  Work work(company.Opened(), UseCase::kReadRelations);
  return ShowFound(work, [&](DBMultiEntityRelation& row) {
    const standalone::RealmId realm = RealmOf(work, partner);
    return MultiEntityDriver::GetRelation(std::string_view(realm.Text()), row);
  });
}

Relation ShowRelation(Company& company, std::int32_t id) {
  Work work(company.Opened(), UseCase::kReadRelations);
  return ShowFound(work, [id](DBMultiEntityRelation& row) { return MultiEntityDriver::GetRelationById(id, row); });
}

std::vector<Relation> ListRelations(Company& company, const std::optional<standalone::RelationState>& state) {
  Work work(company.Opened(), UseCase::kReadRelations);
  std::vector<Relation> relations;
  work.AskToRead([&] { return ReadRelations(work, relations); });
  if (state) std::erase_if(relations, [&state](const Relation& relation) { return relation.state != *state; });
  return relations;
}

std::vector<std::string> ListRealms(Company& company, bool withAccountsOnly) {
  Work work(company.Opened(), UseCase::kReadRelations);
  std::vector<std::string> realms;
  work.AskToRead([&] { return MultiEntityDriver::GetRelationRealmIdList(realms, withAccountsOnly); });
  return realms;
}

}  // namespace desk
