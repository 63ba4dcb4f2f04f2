#include "standalone/desk/Relations.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/RelationRows.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

void Append(std::vector<MEAccountInfo>& accounts, Work& work, const std::optional<std::string>& given,
            MEAccountRole role) {
  if (!given) return;
  const standalone::Account account = work.Host().Accounts().Require(*given);
  accounts.push_back(
      {.name = std::string_view(account.fullName), .type = account.type, .accountId = account.id, .role = role});
}

std::vector<MEAccountInfo> AccountsOf(Work& work, const RelationAccounts& given) {
  std::vector<MEAccountInfo> accounts;
  Append(accounts, work, given.dueFrom, MEAccountRoleDueFrom);
  Append(accounts, work, given.dueTo, MEAccountRoleDueTo);
  return accounts;
}

// None for whoever may not change relations, which the module says before it looks at any.
std::vector<MEAccountInfo> CheckedAccounts(Work& work, const RelationAccounts& given) {
  if (!work.MayManageRelations()) return {};
  return AccountsOf(work, given);
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
                                               CheckedAccounts(work, relation.accounts));
    });
  });
}

void UpdateRelation(Company& company, const RelationChange& change) {
  MERelationInfo info;
  info.realmId = std::string_view(change.realm.Text());
  if (change.state) info.state = static_cast<MEState>(standalone::RequireStored(*change.state));
  Work work(company.Opened(), UseCase::kUpdateRelation);
  work.AskToWrite([&] {
    info.accounts = CheckedAccounts(work, change.accounts);
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
