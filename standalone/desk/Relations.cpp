#include "standalone/desk/Relations.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/RelationRows.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Quoted;

void RefuseOwnRealm(Work& work, const standalone::RealmId& realm) {
  const std::optional<std::string> own = work.RememberedRealm();
  if (!own || standalone::Trimmed(*own) != standalone::Trimmed(realm.Text())) return;
  work.Refuse("the realm " + Quoted(realm.Text()) + " is this company's own, and a relation is with another company",
              Remedy::kNameThePartnersRealm);
}

std::optional<standalone::Account> Find(Work& work, const std::optional<std::string>& given) {
  if (!given) return std::nullopt;
  return work.Host().Accounts().Require(*given);
}

// Those that are not given stay as the relation has them, if there is one.
void RefuseOneAccountForBoth(Work& work, const standalone::RealmId& realm,
                             const std::optional<standalone::Account>& dueFrom,
                             const std::optional<standalone::Account>& dueTo) {
  if (!dueFrom && !dueTo) return;
  DBMultiEntityRelation relation{};
  static_cast<void>(work.Host().Relations().Find(realm.Text(), relation));
  const std::int32_t from = dueFrom ? dueFrom->id : relation.dueFromAccountId;
  const std::int32_t to = dueTo ? dueTo->id : relation.dueToAccountId;
  if (from != to) return;
  work.Refuse("the due-from and the due-to account are one, " + Quoted((dueFrom ? dueFrom : dueTo)->fullName),
              Remedy::kGiveTwoAccounts);
}

void RefuseOtherTypes(Work& work, const std::optional<standalone::Account>& dueFrom,
                      const std::optional<standalone::Account>& dueTo) {
  const auto refuse = [&work](std::string_view role, const standalone::Account& account, std::string_view wanted) {
    work.Refuse("the " + std::string(role) + " account " + Quoted(account.fullName) + " is of the type " +
                    standalone::AccountTypeName(account.type) + ", which is no " + std::string(wanted),
                Remedy::kChooseAssetAndLiability);
  };
  if (dueFrom && !standalone::IsAsset(dueFrom->type)) refuse("due-from", *dueFrom, "asset");
  if (dueTo && !standalone::IsLiability(dueTo->type)) refuse("due-to", *dueTo, "liability");
}

void Append(std::vector<MEAccountInfo>& accounts, const std::optional<standalone::Account>& account,
            MEAccountRole role) {
  if (!account) return;
  accounts.push_back(
      {.name = std::string_view(account->fullName), .type = account->type, .accountId = account->id, .role = role});
}

std::vector<MEAccountInfo> AccountsOf(Work& work, const standalone::RealmId& realm, const RelationAccounts& given) {
  const std::optional<standalone::Account> dueFrom = Find(work, given.dueFrom);
  const std::optional<standalone::Account> dueTo = Find(work, given.dueTo);
  RefuseOneAccountForBoth(work, realm, dueFrom, dueTo);
  if (!given.ofAnyType) RefuseOtherTypes(work, dueFrom, dueTo);
  std::vector<MEAccountInfo> accounts;
  Append(accounts, dueFrom, MEAccountRoleDueFrom);
  Append(accounts, dueTo, MEAccountRoleDueTo);
  return accounts;
}

// None for whoever may not change relations, which the module says before it looks at any.
std::vector<MEAccountInfo> CheckedAccounts(Work& work, const standalone::RealmId& realm,
                                           const RelationAccounts& given) {
  if (!work.MayManageRelations()) return {};
  RefuseOwnRealm(work, realm);
  return AccountsOf(work, realm, given);
}

// What changes the relation with `realm`, and the audit trail tells.
template <typename Change>
MEStatusCode Recorded(Work& work, const standalone::RealmId& realm, Change&& change) {
  const std::optional<Relation> before = RelationInBooks(work, realm);
  return work.Recorded(change(), [&] { return DeedOfRelation(before, RelationInBooks(work, realm)); });
}

template <typename Ask>
Relation ShowFound(Company& company, Ask&& ask) {
  Work work(company.Opened(), UseCase::kReadRelations);
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
    return Recorded(work, relation.realm, [&] {
      return MultiEntityDriver::CreateRelation(std::string_view(relation.realm.Text()),
                                               std::string_view(relation.partner.Text()), MERelationType{relation.type},
                                               static_cast<MEState>(relation.state),
                                               CheckedAccounts(work, relation.realm, relation.accounts));
    });
  });
}

void UpdateRelation(Company& company, const RelationChange& change) {
  MERelationInfo info;
  info.realmId = std::string_view(change.realm.Text());
  if (change.state) info.state = static_cast<MEState>(standalone::RequireStored(*change.state));
  Work work(company.Opened(), UseCase::kUpdateRelation);
  work.AskToWrite([&] {
    info.accounts = CheckedAccounts(work, change.realm, change.accounts);
    return Recorded(work, change.realm, [&] { return MultiEntityDriver::UpdateRelation(info); });
  });
}

Deleted DeleteRelation(Company& company, const standalone::RealmId& realm, bool force) {
  Work work(company.Opened(), UseCase::kDeleteRelation);
  Deleted deleted = Deleted::kRemoved;
  work.AskToWrite([&] {
    const MEStatusCode answer =
        Recorded(work, realm, [&] { return MultiEntityDriver::DeleteRelation(std::string_view(realm.Text()), force); });
    DBMultiEntityRelation left{};
    if (answer == MEStatusSuccess && work.Host().Relations().Find(realm.Text(), left)) deleted = Deleted::kDeactivated;
    return answer;
  });
  return deleted;
}

Relation ShowRelation(Company& company, const standalone::RealmId& realm) {
  return ShowFound(company, [&](DBMultiEntityRelation& row) {
    return MultiEntityDriver::GetRelation(std::string_view(realm.Text()), row);
  });
}

Relation ShowRelation(Company& company, std::int32_t id) {
  return ShowFound(company, [id](DBMultiEntityRelation& row) { return MultiEntityDriver::GetRelationById(id, row); });
}

std::vector<Relation> ListRelations(Company& company) {
  Work work(company.Opened(), UseCase::kReadRelations);
  std::vector<Relation> relations;
  work.AskToRead([&] { return ReadRelations(work, relations); });
  return relations;
}

std::vector<std::string> ListRealms(Company& company, bool withAccountsOnly) {
  Work work(company.Opened(), UseCase::kReadRelations);
  std::vector<std::string> realms;
  work.AskToRead([&] { return MultiEntityDriver::GetRelationRealmIdList(realms, withAccountsOnly); });
  return realms;
}

}  // namespace desk
