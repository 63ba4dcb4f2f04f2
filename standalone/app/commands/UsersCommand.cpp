#include <fmt/format.h>

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

struct UserOptions {
  std::string file;
  std::string name;
  bool administrator = false;
  bool accountant = false;
  std::vector<std::string> rights;
};

std::vector<std::string> RightsOf(const standalone::User& user) {
  std::vector<std::string> rights;
  rights.reserve(user.featureRights.size() + user.listRights.size());
  for (const auto& right : user.featureRights) rights.push_back(standalone::FeatureRightText(right));
  for (const auto& right : user.listRights) rights.push_back(standalone::ListRightText(right));
  return rights;
}

standalone::User UserFrom(const UserOptions& options) {
  standalone::User user;
  user.name = options.name;
  user.administrator = options.administrator;
  user.accountant = options.accountant;
  for (const std::string& right : options.rights) {
    if (right.starts_with("accounts:")) {
      user.listRights.push_back(standalone::ParseListRight(right));
    } else {
      user.featureRights.push_back(standalone::ParseFeatureRight(right));
    }
  }
  return user;
}

Json UserJson(const standalone::User& user) {
  return {{"name", user.name},
          {"administrator", user.administrator},
          {"accountant", user.accountant},
          {"rights", RightsOf(user)}};
}

std::string RightsText(const standalone::User& user) {
  if (user.administrator) return "all";
  return fmt::format("{}", fmt::join(RightsOf(user), " "));
}

void ListUsers(Invocation& invocation, const UserOptions& options) {
  Company company(invocation, options.file);
  const auto users = company.Read([&] { return company.Host().Users().List(); });
  Json list = Json::array();
  Table table({{"User"}, {"Administrator"}, {"Accountant"}, {"Rights"}});
  for (const standalone::User& user : users) {
    list.push_back(UserJson(user));
    table.Add({user.name, user.administrator ? "yes" : "no", user.accountant ? "yes" : "no", RightsText(user)});
  }
  invocation.Report({{"users", list}}, table.Text());
}

void AddUser(Invocation& invocation, const UserOptions& options) {
  const standalone::User user = UserFrom(options);
  Company company(invocation, options.file);
  company.Host().RequireAdministrator("a change of users");
  const standalone::User added = company.Write([&] { return company.Host().Users().Add(user); });
  invocation.Report({{"user", UserJson(added)}}, fmt::format("Added the user {}.\n", added.name));
}

void ChangeUser(Invocation& invocation, const UserOptions& options) {
  const standalone::User user = UserFrom(options);
  Company company(invocation, options.file);
  company.Host().RequireAdministrator("a change of users");
  company.Write([&] { company.Host().Users().Change(user); });
  invocation.Report({{"user", UserJson(user)}}, fmt::format("Changed the user {}.\n", user.name));
}

void RemoveUser(Invocation& invocation, const UserOptions& options) {
  Company company(invocation, options.file);
  company.Host().RequireAdministrator("a change of users");
  company.Write([&] { company.Host().Users().Remove(options.name); });
  invocation.Report({{"user", {{"name", options.name}}}}, fmt::format("Removed the user {}.\n", options.name));
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
  CLI::App& users = *program.add_subcommand("users", "List, add, change or remove the users of a company");
  users.require_subcommand(1);
  users.footer("Example:\n  multientity users add alder.company Robin --right bills:view --right journal:create");
  const auto options = std::make_shared<UserOptions>();

  CLI::App& list =
      AddFileCommand(users, "list", "List the users and their rights", "users list alder.company", options->file);
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
