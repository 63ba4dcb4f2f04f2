#include "standalone/desk/inside/RelationAccounts.h"

#include "standalone/books/RelationTable.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Text.h"

namespace desk {

using standalone::Quoted;

namespace {

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

}  // namespace

void RefuseOwnRealm(Work& work, const standalone::RealmId& realm) {
  const std::optional<std::string> own = work.RememberedRealm();
  if (!own || standalone::Trimmed(*own) != standalone::Trimmed(realm.Text())) return;
  work.Refuse("the realm " + Quoted(realm.Text()) + " is this company's own, and a relation is with another company",
              Remedy::kNameThePartnersRealm);
}

PairOfAccounts ChooseAccounts(Work& work, const standalone::RealmId& realm, const RelationAccounts& given) {
  PairOfAccounts chosen{.dueFrom = Find(work, given.dueFrom), .dueTo = Find(work, given.dueTo)};
  RefuseOneAccountForBoth(work, realm, chosen.dueFrom, chosen.dueTo);
  if (!given.ofAnyType) RefuseOtherTypes(work, chosen.dueFrom, chosen.dueTo);
  return chosen;
}

std::string WhyPaired(Work& work, std::int32_t accountId) {
  if (!work.Host().Relations().UsesAccount(accountId)) return {};
  return "the account " + Quoted(work.Host().Accounts().FullNameOf(accountId).view()) + " is paired with a partner";
}

std::vector<MEAccountInfo> AccountsForModule(const PairOfAccounts& accounts) {
  std::vector<MEAccountInfo> told;
  Append(told, accounts.dueFrom, MEAccountRoleDueFrom);
  Append(told, accounts.dueTo, MEAccountRoleDueTo);
  return told;
}

}  // namespace desk
