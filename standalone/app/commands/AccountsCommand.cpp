#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Accounts.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"

namespace app {

namespace {

struct AccountsOptions {
  std::string file;
  std::optional<std::string> type;
  bool free = false;
  std::optional<std::string> forRealm;
};

Table TableOf(const std::vector<desk::Account>& accounts) {
  Table table({{.title = "Id", .align = Align::kRight},
               {.title = "Number", .importance = Importance::kMajor},
               {.title = "Account"},
               {.title = "Type", .importance = Importance::kMajor},
               {.title = "Note", .importance = Importance::kMinor}});
  for (const desk::Account& account : accounts) {
    table.Add({std::to_string(account.id), account.number, account.name, standalone::AccountTypeName(account.type),
               account.deleted ? "deleted" : ""});
  }
  return table;
}

constexpr std::array kAccountColumns{"id", "name", "number", "type", "typeNumber", "special", "deleted"};

void Report(const Invocation& invocation, const std::vector<desk::Account>& accounts, const std::string& whenEmpty) {
  invocation.ReportList({{"accounts", desk::JsonOf(accounts)}}, kAccountColumns,
                        accounts.empty() ? whenEmpty : TableOf(accounts).Text());
}

void ReportOfType(const Invocation& invocation, const std::vector<desk::Account>& accounts, std::int16_t type) {
  Table table({{"Id", Align::kRight}, {"Number"}, {"Account"}});
  for (const desk::Account& account : accounts) {
    table.Add({std::to_string(account.id), account.number, account.name});
  }
  invocation.ReportList(
      {{"accounts", desk::JsonOf(accounts)}}, kAccountColumns,
      table.Empty() ? fmt::format("No accounts of type {}.\n", standalone::AccountTypeName(type)) : table.Text());
}

void Accounts(Invocation& invocation, const AccountsOptions& options) {
  std::optional<std::int16_t> type;
  if (options.type) type = standalone::ParseAccountType(*options.type);
  std::optional<standalone::RealmId> forRealm;
  if (options.forRealm) forRealm.emplace(*options.forRealm);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  if (type) {
    ReportOfType(invocation, desk::ListAccountsOfType(company, *type), *type);
  } else if (options.free) {
    Report(invocation, desk::ListFreeAccounts(company, forRealm), "No account is free for a relation.\n");
  } else {
    Report(invocation, desk::ListAccounts(company), "No accounts.\n");
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
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { Accounts(run, *options); });
}

}  // namespace app
