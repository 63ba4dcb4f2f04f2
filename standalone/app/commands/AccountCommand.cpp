#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Accounts.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

constexpr const char* kNoNumber = "none";

struct AccountOptions {
  std::string file;
  std::string account;
  std::string name;
  std::string type;
  std::optional<std::string> number;
};

std::optional<standalone::AccountNumber> NumberFrom(const std::optional<std::string>& text) {
  if (!text || *text == kNoNumber) return std::nullopt;
  return standalone::AccountNumber(*text);
}

std::string Called(const desk::Account& account) {
  return standalone::Shown(account.name);
}

void AddOneAccount(Invocation& invocation, const AccountOptions& options) {
  const desk::AccountToAdd account{
      .name = options.name, .type = standalone::ParseAccountType(options.type), .number = NumberFrom(options.number)};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Account added = desk::AddAccount(company, account);
  invocation.Report({{"account", desk::JsonOf(added)}},
                    fmt::format("Added the account {}, record number {}.\n", Called(added), added.id));
}

std::string RenamedAccountText(const desk::RenamedAccount& renamed) {
  if (renamed.account.name == renamed.before) {
    return fmt::format("{}: the account is called {} already.\n", kNothingHasChanged, Called(renamed.account));
  }
  const std::string below =
      renamed.subAccounts == 0 ? "" : fmt::format("; sub-accounts renamed with it: {}", renamed.subAccounts);
  return fmt::format("Renamed the account {} to {}{}.\n", standalone::Shown(renamed.before), Called(renamed.account),
                     below);
}

std::string RenumberedText(const desk::RenumberedAccount& numbered) {
  const std::string name = Called(numbered);
  const bool hasChanged = numbered.number != numbered.before;
  const std::string before = hasChanged ? "The" : fmt::format("{}: the", kNothingHasChanged);
  if (numbered.number.empty()) {
    return fmt::format("{} account {} has no number{}.\n", before, name, hasChanged ? " any more" : "");
  }
  return fmt::format("{} account {} has the number {}{}.\n", before, name, numbered.number,
                     hasChanged ? "" : " already");
}

void RenameOneAccount(Invocation& invocation, const AccountOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::RenamedAccount renamed = desk::RenameAccount(company, options.account, options.name);
  invocation.Report(
      {{"account", desk::JsonOf(renamed.account)}, {"before", renamed.before}, {"subAccounts", renamed.subAccounts}},
      RenamedAccountText(renamed));
}

void NumberOneAccount(Invocation& invocation, const AccountOptions& options) {
  const std::optional<standalone::AccountNumber> number = NumberFrom(options.number);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::RenumberedAccount numbered = desk::SetAccountNumber(company, options.account, number);
  invocation.Report({{"account", desk::JsonOf(numbered)}, {"changed", numbered.number != numbered.before}},
                    RenumberedText(numbered));
}

void DeleteOneAccount(Invocation& invocation, const AccountOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Account deleted = desk::DeleteAccount(company, options.account);
  invocation.Report({{"account", desk::JsonOf(deleted)}},
                    fmt::format("Marked the account {} deleted.\n", Called(deleted)));
}

void AddAccountOption(CLI::App& command, AccountOptions& options) {
  command.add_option("ACCOUNT", options.account, kAccountHelp)->required();
}

}  // namespace

void AddAccount(CLI::App& program, Invocation& invocation) {
  CLI::App& account = AddGroup(program, "account", "Add, rename, number or delete an account",
                               "account add alder.company Utilities:Gas --type Expense --number 6120");
  const auto options = std::make_shared<AccountOptions>();

  CLI::App& add = AddFileCommand(account, "add", "Add an account to the chart of accounts",
                                 "account add alder.company Utilities:Gas --type Expense --number 6120", options->file);
  add.add_option("NAME", options->name, "Its colon-separated name; the accounts that it stands under are there")
      ->required();
  add.add_option("--type", options->type, "Its type by name, such as Expense, or by number; that of its parent")
      ->required();
  add.add_option("--number", options->number,
                 "Its number: 1 to 20 digits, with single points or dashes between them, that no other account has");
  invocation.When(add, [options](Invocation& run) { AddOneAccount(run, *options); });

  CLI::App& rename = AddFileCommand(
      account, "rename", "Give an account another name; it stays where it stands, its sub-accounts' names follow",
      "account rename alder.company Utilities:Gas \"Natural Gas\"", options->file);
  AddAccountOption(rename, *options);
  rename.add_option("NEW-NAME", options->name, "Its own new name, without those that it stands under")->required();
  invocation.When(rename, [options](Invocation& run) { RenameOneAccount(run, *options); });

  CLI::App& number = AddFileCommand(account, "number", "Give an account a number, or take it from it",
                                    "account number alder.company Utilities:Gas 6120", options->file);
  AddAccountOption(number, *options);
  number.add_option("NUMBER", options->number, "1 to 20 digits, with single points or dashes between them; or none")
      ->required();
  invocation.When(number, [options](Invocation& run) { NumberOneAccount(run, *options); });

  CLI::App& remove =
      AddFileCommand(account, "delete", "Mark an account deleted that has no lines, no sub-accounts and no relation",
                     "account delete alder.company Utilities:Gas", options->file);
  AddAccountOption(remove, *options);
  invocation.When(remove, [options](Invocation& run) { DeleteOneAccount(run, *options); });
}

}  // namespace app
