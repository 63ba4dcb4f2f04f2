#include "standalone/desk/Accounts.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/ListChanges.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

Account AccountOf(const standalone::Account& account) {
  return {.id = account.id,
          .name = account.fullName,
          .number = account.number,
          .type = account.type,
          .specialKind = account.specialKind,
          .deleted = account.deleted};
}

void Append(std::vector<Account>& accounts, standalone::AccountTable& table, long id) {
  const std::optional<standalone::Account> found = table.Find(static_cast<std::int32_t>(id));
  if (found) accounts.push_back(AccountOf(*found));
}

constexpr standalone::ListRight AccountsRight(UserAction action) noexcept {
  return {kListAccounts, action};
}

std::optional<std::string_view> NumberOf(const std::optional<standalone::AccountNumber>& number) noexcept {
  if (!number) return std::nullopt;
  return number->Text();
}

standalone::Account RequireLiveAccount(Work& work, const std::string& text) {
  standalone::Account account = work.Host().Accounts().Require(text);
  if (account.deleted) work.Refuse("the account " + standalone::Quoted(account.fullName) + " is marked deleted");
  return account;
}

standalone::Account AccountInBooks(Work& work, std::int32_t id) {
  return work.Host().Accounts().Find(id).value();
}

void RefuseOneOfARelation(Work& work, const standalone::Account& account) {
  std::vector<DBMultiEntityRelation> relations;
  work.Host().Relations().List(relations);
  for (const DBMultiEntityRelation& relation : relations) {
    const bool isDueFrom = relation.dueFromAccountId == account.id;
    if (!isDueFrom && relation.dueToAccountId != account.id) continue;
    work.Refuse("the account " + standalone::Quoted(account.fullName) + " is the " +
                    (isDueFrom ? "due-from" : "due-to") + " account of " +
                    std::string(standalone::Field(relation.partnerName)) + " (realm " +
                    std::string(standalone::Field(relation.realmId)) + ")",
                Remedy::kChangeTheRelation);
  }
}

void RequireUnusedAccount(Work& work, const standalone::Account& account) {
  RefuseOneOfARelation(work, account);
  const standalone::AccountUse use = work.Host().Accounts().UseOf(account.id);
  const std::string subject = "the account " + standalone::Quoted(account.fullName) + " has ";
  if (use.subAccounts != 0) work.Refuse(subject + "sub-accounts", Remedy::kDeleteTheLowerFirst);
  if (use.lines != 0) work.Refuse(subject + standalone::Counted(use.lines, "line"), Remedy::kRenameInstead);
}

}  // namespace

std::vector<Account> ListAccounts(Company& company) {
  Work work(company.Opened(), UseCase::kListAccounts);
  std::vector<Account> accounts;
  work.Read([&] {
    for (const standalone::Account& account : work.Host().Accounts().List(/*withDeleted=*/true)) {
      accounts.push_back(AccountOf(account));
    }
  });
  return accounts;
}

std::vector<Account> ListAccountsOfType(Company& company, std::int16_t type) {
  Work work(company.Opened(), UseCase::kListAccounts);
  std::vector<Account> accounts;
  work.AskToRead([&] {
    std::vector<std::pair<std::string, long>> listed;
    const MEStatusCode answer = MultiEntityDriver::GetAccountListByType(type, listed);
    for (const auto& [name, id] : listed) Append(accounts, work.Host().Accounts(), id);
    return answer;
  });
  return accounts;
}

std::vector<Account> ListFreeAccounts(Company& company, const std::optional<standalone::RealmId>& realm) {
  Work work(company.Opened(), UseCase::kListAccounts);
  const MEAccountFilter filter = realm ? MEAccountFilterUnusedOrOwn : MEAccountFilterUnused;
  std::vector<Account> accounts;
  work.AskToRead([&] {
    std::unordered_map<long, std::pair<std::string, std::string>> listed;
    const MEStatusCode answer =
        MultiEntityDriver::GetAccountsList(listed, filter, realm ? realm->Text() : std::string());
    for (const auto& [id, texts] : listed) Append(accounts, work.Host().Accounts(), id);
    return answer;
  });
  std::ranges::sort(accounts, {}, [](const Account& account) { return std::pair(account.name, account.id); });
  return accounts;
}

Account AddAccount(Company& company, const AccountToAdd& account) {
  Work work(company.Opened(), UseCase::kChangeAccounts);
  NotedNames noted(work);
  const Account added = work.Write([&] {
    work.RequireRight(AccountsRight(kActionCreate));
    const standalone::Account made = Accepted([&] {
      return work.Host().Accounts().Create({.fullName = account.name,
                                            .type = account.type,
                                            .specialKind = 0,
                                            .deleted = false,
                                            .number = NumberOf(account.number)});
    });
    noted.NoteAccount(made.fullName);
    work.Host().Record(DeedOfAccount("account.add", {}, made));
    return AccountOf(made);
  });
  noted.Tell();
  return added;
}

RenamedAccount RenameAccount(Company& company, const std::string& account, const std::string& ownName) {
  Work work(company.Opened(), UseCase::kChangeAccounts);
  NotedNames noted(work);
  RenamedAccount renamed = work.Write([&] {
    work.RequireRight(AccountsRight(kActionModify));
    const standalone::Account before = RequireLiveAccount(work, account);
    const std::int64_t below = Accepted([&] { return work.Host().Accounts().Rename(before.id, ownName); });
    const standalone::Account after = AccountInBooks(work, before.id);
    RenamedAccount result{.account = AccountOf(after), .before = before.fullName, .subAccounts = 0};
    if (after.fullName == before.fullName) return result;
    noted.NoteAccount(after.fullName);
    work.Host().Record(DeedOfAccount("account.rename", before, after, {"sub-accounts", below}));
    result.subAccounts = below;
    return result;
  });
  noted.Tell();
  return renamed;
}

RenumberedAccount SetAccountNumber(Company& company, const std::string& account,
                                   const std::optional<standalone::AccountNumber>& number) {
  Work work(company.Opened(), UseCase::kChangeAccounts);
  return work.Write([&] {
    work.RequireRight(AccountsRight(kActionModify));
    const standalone::Account before = RequireLiveAccount(work, account);
    Accepted([&] { work.Host().Accounts().SetNumber(before.id, NumberOf(number).value_or("")); });
    const standalone::Account after = AccountInBooks(work, before.id);
    work.RecordChanges(DeedOfAccount("account.number", before, after));
    return RenumberedAccount{AccountOf(after), before.number};
  });
}

Account DeleteAccount(Company& company, const std::string& account) {
  Work work(company.Opened(), UseCase::kChangeAccounts);
  return work.Write([&] {
    work.RequireRight(AccountsRight(kActionDelete));
    const standalone::Account before = RequireLiveAccount(work, account);
    RequireUnusedAccount(work, before);
    RefuseReserved(work, before.id);
    work.Host().Accounts().SetDeleted(before.id, true);
    const standalone::Account after = AccountInBooks(work, before.id);
    work.Host().Record(DeedOfAccount("account.delete", before, after));
    return AccountOf(after);
  });
}

}  // namespace desk
