#include "standalone/desk/Accounts.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

Account AccountOf(const standalone::Account& account) {
  return {.id = account.id,
          .name = account.fullName,
          .type = account.type,
          .specialKind = account.specialKind,
          .deleted = account.deleted};
}

void Append(std::vector<Account>& accounts, standalone::AccountTable& table, long id) {
  const std::optional<standalone::Account> found = table.Find(static_cast<std::int32_t>(id));
  if (found) accounts.push_back(AccountOf(*found));
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

}  // namespace desk
