#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/Times.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

struct RelationOptions {
  std::string file;
  std::string realm;
  std::optional<std::string> id;
  std::string partner;
  std::string type = "0";
  std::optional<std::string> state;
  std::optional<std::string> dueFrom;
  std::optional<std::string> dueTo;
  bool force = false;
  bool realmsOnly = false;
  bool withAccountsOnly = false;
};

std::vector<MEAccountInfo> AccountsFrom(Company& company, const RelationOptions& options) {
  std::vector<MEAccountInfo> accounts;
  const auto add = [&](const std::optional<std::string>& text, MEAccountRole role) {
    if (!text) return;
    const standalone::Account account = company.Host().Accounts().Require(*text);
    accounts.push_back(
        {.name = std::string_view(account.fullName), .type = account.type, .accountId = account.id, .role = role});
  };
  add(options.dueFrom, MEAccountRoleDueFrom);
  add(options.dueTo, MEAccountRoleDueTo);
  return accounts;
}

void CreateRelation(Invocation& invocation, const RelationOptions& options) {
  const Util::TString realm = RealmId(options.realm);
  const Util::TString partner = PartnerName(options.partner);
  const MERelationType type = RelationType(options.type);
  const MEState state = options.state ? RelationState(*options.state) : MEStateEstablished;
  Company company(invocation, options.file);
  const MEStatusCode status = company.Write(
      [&] { return MultiEntityDriver::CreateRelation(realm, partner, type, state, AccountsFrom(company, options)); });
  invocation.Accept(Request::kCreateRelation, status);
  invocation.Report({{"status", status}, {"realm", options.realm}},
                    fmt::format("Created the relation with {} (realm {}).\n", options.partner, options.realm));
}

void UpdateRelation(Invocation& invocation, const RelationOptions& options) {
  MERelationInfo info;
  info.realmId = RealmId(options.realm);
  if (options.state) info.state = RelationState(*options.state);
  Company company(invocation, options.file);
  const MEStatusCode status = company.Write([&] {
    info.accounts = AccountsFrom(company, options);
    return MultiEntityDriver::UpdateRelation(info);
  });
  invocation.Accept(Request::kUpdateRelation, status);
  invocation.Report({{"status", status}, {"realm", options.realm}},
                    fmt::format("Updated the relation with realm {}.\n", options.realm));
}

void DeleteRelation(Invocation& invocation, const RelationOptions& options) {
  const Util::TString realm = RealmId(options.realm);
  Company company(invocation, options.file);
  bool deactivated = false;
  const MEStatusCode status = company.Write([&] {
    const MEStatusCode answer = MultiEntityDriver::DeleteRelation(realm, options.force);
    DBMultiEntityRelation left{};
    deactivated =
        answer == MEStatusSuccess && company.Host().Services().multiEntity.GetRelation(realm, left).Succeeded();
    return answer;
  });
  invocation.Accept(Request::kDeleteRelation, status);
  invocation.Report(
      {{"status", status}, {"realm", options.realm}, {"deactivated", deactivated}},
      deactivated
          ? fmt::format("Deactivated the relation with realm {}: transactions still refer to it.\n", options.realm)
          : fmt::format("Deleted the relation with realm {}.\n", options.realm));
}

void ShowRelation(Invocation& invocation, const RelationOptions& options) {
  std::optional<std::int32_t> id;
  Util::TString realm;
  if (options.id) {
    id = RecordId("relation id", *options.id);
  } else {
    realm = RealmId(options.realm);
  }
  Company company(invocation, options.file);
  RelationView view;
  const MEStatusCode status = company.Read([&] {
    DBMultiEntityRelation row{};
    const MEStatusCode answer =
        id ? MultiEntityDriver::GetRelationById(*id, row) : MultiEntityDriver::GetRelation(realm, row);
    if (answer == MEStatusSuccess) view = ViewOf(company, row);
    return answer;
  });
  invocation.Accept(Request::kReadRelations, status);
  const DBMultiEntityRelation& row = view.row;
  invocation.Report(
      {{"status", status}, {"relation", RelationJson(view)}},
      fmt::format("Relation:   {}\nRealm:      {}\nPartner:    {}\nType:       {}\nState:      {}\n"
                  "Due from:   {}\nDue to:     {}\nRevision:   {}\nCreated at: {}\nChanged at: {}\n",
                  row.relationId, row.realmId, row.partnerName, row.relationType, StateText(row.state), view.dueFrom,
                  view.dueTo, row.revision, UtcText(row.createdAt), UtcText(row.changedAt)));
}

void ListRealms(Invocation& invocation, Company& company, bool withAccountsOnly) {
  std::vector<std::string> realms;
  const MEStatusCode status =
      company.Read([&] { return MultiEntityDriver::GetRelationRealmIdList(realms, withAccountsOnly); });
  invocation.Accept(Request::kReadRelations, status);
  invocation.Report({{"status", status}, {"realms", realms}},
                    realms.empty() ? "No relations.\n" : fmt::format("{}\n", fmt::join(realms, "\n")));
}

void ListRelations(Invocation& invocation, const RelationOptions& options) {
  Company company(invocation, options.file);
  if (options.realmsOnly) {
    ListRealms(invocation, company, options.withAccountsOnly);
    return;
  }
  std::vector<RelationView> views;
  const MEStatusCode status = company.Read([&] {
    std::vector<DBMultiEntityRelation> rows;
    const MEStatusCode answer = MultiEntityDriver::GetRelationsList(rows);
    if (answer == MEStatusSuccess) {
      for (const DBMultiEntityRelation& row : rows) views.push_back(ViewOf(company, row));
    }
    return answer;
  });
  invocation.Accept(Request::kReadRelations, status);
  const Listing listing = ListRelationViews(views);
  invocation.Report({{"status", status}, {"relations", listing.json}},
                    listing.table.Empty() ? "No relations.\n" : listing.table.Text());
}

constexpr const char* kStateHelp = "pending, established, without-accounts, deactivated, or another number";
constexpr const char* kAccountHelp = "An account, by id or by colon-separated name";

void AddAccountOptions(CLI::App& command, RelationOptions& options) {
  command.add_option("--due-from", options.dueFrom, std::string("What the partner owes this company. ") + kAccountHelp);
  command.add_option("--due-to", options.dueTo, std::string("What this company owes the partner. ") + kAccountHelp);
}

void AddCreate(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command = AddFileCommand(
      relation, "create",
      "Relate this company to a partner company. A relation that is pending or without accounts is taken up again",
      "relation create alder.company --realm 5120918846275 --partner \"Birch Services Company\" \\\n"
      "    --due-from \"Due from Birch Services Company\" --due-to \"Due to Birch Services Company\"",
      options->file);
  command.add_option("--realm", options->realm, kRealmHelp)->required();
  command.add_option("--partner", options->partner, "The partner company's name, up to 59 characters")->required();
  AddAccountOptions(command, *options);
  command.add_option("--state", options->state, std::string(kStateHelp) + "; established when left out");
  command.add_option("--type", options->type, "The kind of the relation, a number that is kept as it is")
      ->capture_default_str();
  invocation.When(command, [options](Invocation& run) { CreateRelation(run, *options); });
}

void AddUpdate(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command =
      AddFileCommand(relation, "update", "Change the state or the accounts of a relation",
                     "relation update alder.company --realm 5120918846275 --state deactivated", options->file);
  command.add_option("--realm", options->realm, kRealmHelp)->required();
  AddAccountOptions(command, *options);
  command.add_option("--state", options->state, std::string(kStateHelp) + "; kept when left out");
  invocation.When(command, [options](Invocation& run) { UpdateRelation(run, *options); });
}

void AddDelete(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command =
      AddFileCommand(relation, "delete", "Delete a relation, or deactivate it while transactions refer to it",
                     "relation delete alder.company --realm 5120918846275", options->file);
  command.add_option("--realm", options->realm, kRealmHelp)->required();
  command.add_flag("--force", options->force, "Also when the relation is pending");
  invocation.When(command, [options](Invocation& run) { DeleteRelation(run, *options); });
}

void AddShow(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command = AddFileCommand(relation, "show", "Show one relation",
                                     "relation show alder.company --realm 5120918846275", options->file);
  CLI::Option_group* which = command.add_option_group("Which", "Which relation");
  which->add_option("--realm", options->realm, kRealmHelp);
  which->add_option("--id", options->id, "The relation's id");
  which->require_option(1);
  invocation.When(command, [options](Invocation& run) { ShowRelation(run, *options); });
}

void AddList(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command =
      AddFileCommand(relation, "list", "List the relations", "relation list alder.company --realms", options->file);
  CLI::Option* realms = command.add_flag("--realms", options->realmsOnly, "Only the partners' realm ids");
  command.add_flag("--with-accounts-only", options->withAccountsOnly, "Leave out relations without accounts")
      ->needs(realms);
  invocation.When(command, [options](Invocation& run) { ListRelations(run, *options); });
}

}  // namespace

void AddRelation(CLI::App& program, Invocation& invocation) {
  CLI::App& relation = *program.add_subcommand("relation", "Work with the relations to partner companies");
  relation.require_subcommand(1);
  relation.footer("Example:\n  multientity relation list alder.company");
  AddCreate(relation, invocation);
  AddUpdate(relation, invocation);
  AddDelete(relation, invocation);
  AddShow(relation, invocation);
  AddList(relation, invocation);
}

}  // namespace app
