#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/values/AccountTypes.h"

namespace app {

namespace {

struct AccountsOptions {
  std::string file;
  std::optional<std::string> type;
  bool free = false;
  std::optional<std::string> forRealm;
};

void ListAll(Invocation& invocation, Company& company) {
  const auto accounts = company.Read([&] { return company.Host().Accounts().List(true); });
  Json list = Json::array();
  Table table({{"Id", Align::kRight}, {"Account"}, {"Type"}, {"Note"}});
  for (const standalone::Account& account : accounts) {
    const std::string type = standalone::AccountTypeName(account.type);
    list.push_back({{"id", account.id},
                    {"name", account.fullName},
                    {"type", type},
                    {"typeNumber", account.type},
                    {"special", account.specialKind},
                    {"deleted", account.deleted}});
    table.Add({std::to_string(account.id), account.fullName, type, account.deleted ? "deleted" : ""});
  }
  invocation.Report({{"accounts", list}}, table.Empty() ? "No accounts.\n" : table.Text());
}

void ListOfType(Invocation& invocation, Company& company, std::int16_t type) {
  std::vector<std::pair<std::string, long>> accounts;
  const MEStatusCode status = company.Read([&] { return MultiEntityDriver::GetAccountListByType(type, accounts); });
  invocation.Accept(Request::kListAccounts, status);
  Json list = Json::array();
  Table table({{"Id", Align::kRight}, {"Account"}});
  for (const auto& [name, id] : accounts) {
    list.push_back({{"id", id}, {"name", name}});
    table.Add({std::to_string(id), name});
  }
  invocation.Report(
      {{"status", status}, {"accounts", list}},
      table.Empty() ? fmt::format("No accounts of type {}.\n", standalone::AccountTypeName(type)) : table.Text());
}

void ListFree(Invocation& invocation, Company& company, const std::optional<std::string>& forRealm) {
  const MEAccountFilter filter = forRealm ? MEAccountFilterUnusedOrOwn : MEAccountFilterUnused;
  std::unordered_map<long, std::pair<std::string, std::string>> accounts;
  const MEStatusCode status =
      company.Read([&] { return MultiEntityDriver::GetAccountsList(accounts, filter, forRealm.value_or("")); });
  invocation.Accept(Request::kListAccounts, status);
  std::vector<std::pair<long, std::pair<std::string, std::string>>> sorted(accounts.begin(), accounts.end());
  std::ranges::sort(sorted, {}, [](const auto& account) { return std::pair(account.second.first, account.first); });
  Json list = Json::array();
  Table table({{"Id", Align::kRight}, {"Account"}, {"Type"}});
  for (const auto& [id, texts] : sorted) {
    list.push_back({{"id", id}, {"name", texts.first}, {"type", texts.second}});
    table.Add({std::to_string(id), texts.first, texts.second});
  }
  invocation.Report({{"status", status}, {"accounts", list}},
                    table.Empty() ? "No account is free for a relation.\n" : table.Text());
}

void Accounts(Invocation& invocation, const AccountsOptions& options) {
  std::optional<std::int16_t> type;
  if (options.type) type = standalone::ParseAccountType(*options.type);
  if (options.forRealm) RealmId(*options.forRealm);
  Company company(invocation, options.file);
  if (type) {
    ListOfType(invocation, company, *type);
  } else if (options.free) {
    ListFree(invocation, company, options.forRealm);
  } else {
    ListAll(invocation, company);
  }
}

}  // namespace

void AddAccounts(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<AccountsOptions>();
  CLI::App& command = AddFileCommand(program, "accounts", "List the chart of accounts, or a part of it",
                                     "accounts alder.company --free", options->file);
  CLI::Option* type = command.add_option("--type", options->type,
                                         "Only accounts of one type that are not deleted: its name, such as "
                                         "\"Other Current Liability\", or its number");
  CLI::Option* free = command.add_flag("--free", options->free, "Only accounts that a new relation may use");
  command.add_option("--for", options->forRealm, "With --free: also the accounts of the relation with this realm id")
      ->needs(free);
  type->excludes(free);
  invocation.When(command, [options](Invocation& run) { Accounts(run, *options); });
}

}  // namespace app
