#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Users.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct UserOptions {
  std::string file;
  std::string name;
  bool administrator = false;
  bool accountant = false;
  std::vector<std::string> rights;
};

desk::User UserFrom(const UserOptions& options) {
  desk::User user{
      .name = options.name, .administrator = options.administrator, .accountant = options.accountant, .rights = {}};
  for (const std::string& right : options.rights) user.rights.emplace_back(right);
  return user;
}

std::string RightsText(const desk::User& user) {
  if (user.administrator) return "all";
  std::string text;
  for (const standalone::Right& right : user.rights) text += (text.empty() ? "" : " ") + right.Text();
  return text;
}

constexpr std::array kUserColumns{"name", "administrator", "accountant", "rights"};

void ListUsers(Invocation& invocation, const UserOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::User> users = desk::ListUsers(company);
  Table table({{.title = "User"},
               {.title = "Administrator", .importance = Importance::kMajor, .fit = Fit::kWhole},
               {.title = "Accountant", .importance = Importance::kMajor, .fit = Fit::kWhole},
               {.title = "Rights"}});
  for (const desk::User& user : users) {
    table.Add(
        {user.name, standalone::YesOrNo(user.administrator), standalone::YesOrNo(user.accountant), RightsText(user)});
  }
  invocation.ReportList({{"users", desk::JsonOf(users)}}, kUserColumns, table.Text());
}

void AddUser(Invocation& invocation, const UserOptions& options) {
  const desk::User user = UserFrom(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::User added = desk::AddUser(company, user);
  invocation.Report({{"user", desk::JsonOf(added)}}, fmt::format("Added the user {}.\n", added.name));
}

void ChangeUser(Invocation& invocation, const UserOptions& options) {
  const desk::User user = UserFrom(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ChangedUser changed = desk::ChangeUser(company, user);
  const std::string name = standalone::Shown(changed.name);
  invocation.Report({{"user", desk::JsonOf(changed)}, {"changed", changed.hasChanged}},
                    changed.hasChanged ? fmt::format("Changed the user {}.\n", name)
                                       : fmt::format("{}: the user {} has these marks and rights already.\n",
                                                     kNothingHasChanged, name));
}

void RemoveUser(Invocation& invocation, const UserOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::RemoveUser(company, options.name);
  invocation.Report({{"user", {{"name", options.name}}}},
                    fmt::format("Removed the user {}.\n", standalone::Shown(options.name)));
}

void AddRightsOptions(CLI::App& command, UserOptions& options) {
  command.add_option("NAME", options.name, "The user's name")->required();
  command.add_flag("--administrator", options.administrator, "May do everything, and manages relations and users");
  command.add_flag("--accountant", options.accountant, "Signs in as an accountant user");
  command
      .add_option("--right", options.rights,
                  "A right, once for each: bills, checks or journal, a colon, and create, view, modify or delete, "
                  "such as journal:create; or accounts:view and so on for the chart of accounts")
      ->expected(1)
      ->take_all();
}

}  // namespace

void AddUsers(CLI::App& program, Invocation& invocation) {
  CLI::App& users = AddGroup(program, "users", "List, add, change or remove the users of a company",
                             "users add alder.company Robin --right bills:view --right journal:create");
  const auto options = std::make_shared<UserOptions>();

  CLI::App& list =
      AddFileCommand(users, "list", "List the users and their rights", "users list alder.company", options->file);
  AddCsvOption(list, invocation.options);
  invocation.When(list, [options](Invocation& run) { ListUsers(run, *options); });

  CLI::App& add =
      AddFileCommand(users, "add", "Add a user",
                     "users add alder.company Robin --right bills:view --right journal:create", options->file);
  AddRightsOptions(add, *options);
  invocation.When(add, [options](Invocation& run) { AddUser(run, *options); });

  CLI::App& change = AddFileCommand(users, "change", "Replace a user's marks and rights by those that are given",
                                    "users change alder.company Robin --right bills:view", options->file);
  AddRightsOptions(change, *options);
  invocation.When(change, [options](Invocation& run) { ChangeUser(run, *options); });

  CLI::App& remove =
      AddFileCommand(users, "remove", "Remove a user", "users remove alder.company Robin", options->file);
  remove.add_option("NAME", options->name, "The user's name")->required();
  invocation.When(remove, [options](Invocation& run) { RemoveUser(run, *options); });
}

}  // namespace app
