#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Relations.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using standalone::Shown;

struct RelationOptions {
  std::string file;
  std::string realm;  // of a new one
  std::optional<std::string> id;
  std::string partner;
  std::string type = "0";
  std::optional<std::string> state;
  std::optional<std::string> dueFrom;
  std::optional<std::string> dueTo;
  bool anyAccount = false;
  bool force = false;
  bool realmsOnly = false;
  bool withAccountsOnly = false;
};

desk::RelationAccounts AccountsFrom(const RelationOptions& options) {
  return {.dueFrom = options.dueFrom, .dueTo = options.dueTo, .ofAnyType = options.anyAccount};
}

void CreateRelation(Invocation& invocation, const RelationOptions& options) {
  desk::NewRelation relation{.realm = standalone::RealmId(options.realm),
                             .partner = standalone::PartnerName(options.partner),
                             .type = RelationType(options.type),
                             .accounts = AccountsFrom(options)};
  if (options.state) relation.state = standalone::ParseRelationState(*options.state);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::CreateRelation(company, relation);
  invocation.Report({{"realm", options.realm}},
                    fmt::format("Created the relation with {} (realm {}).\n", options.partner, options.realm));
}

void UpdateRelation(Invocation& invocation, const RelationOptions& options) {
  desk::RelationChange change{
      .partner = desk::Partner(options.partner), .state = {}, .accounts = AccountsFrom(options)};
  if (options.state) change.state = standalone::ParseRelationState(*options.state);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::string realm = desk::UpdateRelation(company, change);
  invocation.Report({{"realm", realm}}, fmt::format("Updated the relation with realm {}.\n", realm));
}

void DeleteRelation(Invocation& invocation, const RelationOptions& options) {
  const desk::Partner partner(options.partner);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Deleted deleted = desk::DeleteRelation(company, partner, options.force);
  invocation.Report(
      {{"realm", deleted.realm}, {"deactivated", deleted.deactivated}},
      deleted.deactivated
          ? fmt::format("Deactivated the relation with realm {}: transactions still refer to it.\n", deleted.realm)
          : fmt::format("Deleted the relation with realm {}.\n", deleted.realm));
}

void Show(const Invocation& invocation, const desk::Relation& relation) {
  invocation.Report({{"relation", desk::JsonOf(relation)}},
                    fmt::format("Relation:   {}\nRealm:      {}\nPartner:    {}\nType:       {}\nState:      {}\n"
                                "Due from:   {}\nDue to:     {}\nRevision:   {}\nCreated at: {}\nChanged at: {}\n",
                                relation.id, Shown(relation.realm), Shown(relation.partner), relation.type,
                                standalone::StateName(relation.state), Shown(AccountText(relation.dueFrom)),
                                Shown(AccountText(relation.dueTo)), relation.revision,
                                standalone::FormatUtc(relation.createdAt), standalone::FormatUtc(relation.changedAt)));
}

void ShowRelationById(Invocation& invocation, const RelationOptions& options) {
  const std::int32_t id = RecordId("relation id", *options.id);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  Show(invocation, desk::ShowRelation(company, id));
}

void ShowRelationOf(Invocation& invocation, const RelationOptions& options) {
  const desk::Partner partner(options.partner);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  Show(invocation, desk::ShowRelation(company, partner));
}

constexpr std::array kRelationColumns{"id",          "realm",      "partner",      "type",     "state",
                                      "stateNumber", "dueFrom.id", "dueFrom.name", "dueTo.id", "dueTo.name",
                                      "revision",    "createdAt",  "changedAt"};
constexpr std::array kRealmColumns{"realm"};

void ListRealms(const Invocation& invocation, desk::Company& company, bool withAccountsOnly) {
  const std::vector<std::string> realms = desk::ListRealms(company, withAccountsOnly);
  std::string lines;
  for (const std::string& realm : realms) lines += Shown(realm) + '\n';
  const std::string text = realms.empty() ? "No relations.\n" : lines;
  if (!invocation.options.csv) {
    invocation.Report({{"realms", realms}}, text);
    return;
  }
  Json rows = Json::array();
  for (const std::string& realm : realms) rows.push_back({{"realm", realm}});
  invocation.ReportList({{"realms", rows}}, kRealmColumns, text);
}

void ListRelations(Invocation& invocation, const RelationOptions& options) {
  std::optional<standalone::RelationState> state;
  if (options.state) state = standalone::ParseRelationState(*options.state);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  if (options.realmsOnly) {
    ListRealms(invocation, company, options.withAccountsOnly);
    return;
  }
  const std::vector<desk::Relation> relations = desk::ListRelations(company, state);
  invocation.ReportList({{"relations", desk::JsonOf(relations)}}, kRelationColumns,
                        relations.empty() ? "No relations.\n" : RelationsTable(relations).Text());
}

constexpr const char* kStateHelp = "pending, established, without-accounts, deactivated, or another number";

void AddAccountOptions(CLI::App& command, RelationOptions& options) {
  command.add_option("--due-from", options.dueFrom,
                     std::string("What the partner owes this company: an asset. ") + kAccountHelp);
  command.add_option("--due-to", options.dueTo,
                     std::string("What this company owes the partner: a liability. ") + kAccountHelp);
  command.add_flag("--any-account", options.anyAccount,
                   "Also a due-from account that is no asset and a due-to account that is no liability");
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
  command.add_option("--partner", options->partner, "The partner company's name, up to 59 bytes")->required();
  AddAccountOptions(command, *options);
  command.add_option("--state", options->state, std::string(kStateHelp) + "; established when left out")
      ->type_name(kRelationStates);
  command.add_option("--type", options->type, "The kind of the relation, a number that is kept as it is")
      ->capture_default_str();
  invocation.When(command, [options](Invocation& run) { CreateRelation(run, *options); });
}

void AddUpdate(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command = AddFileCommand(
      relation, "update", "Change the state or the accounts of a relation",
      "relation update alder.company --partner \"Birch Services Company\" --state deactivated", options->file);
  command.add_option(kPartnerOption, options->partner, kPartnerHelp)->required();
  AddAccountOptions(command, *options);
  command.add_option("--state", options->state, std::string(kStateHelp) + "; kept when left out")
      ->type_name(kRelationStates);
  invocation.When(command, [options](Invocation& run) { UpdateRelation(run, *options); });
}

void AddDelete(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command =
      AddFileCommand(relation, "delete", "Delete a relation, or deactivate it while transactions refer to it",
                     "relation delete alder.company --partner \"Birch Services Company\"", options->file);
  command.add_option(kPartnerOption, options->partner, kPartnerHelp)->required();
  command.add_flag("--force", options->force, "Also when the relation is pending");
  invocation.When(command, [options](Invocation& run) { DeleteRelation(run, *options); });
}

void AddShow(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command = AddFileCommand(relation, "show", "Show one relation",
                                     "relation show alder.company --partner \"Birch Services Company\"", options->file);
  CLI::Option_group* which = command.add_option_group("Which", "Which relation");
  which->add_option(kPartnerOption, options->partner, kPartnerHelp);
  which->add_option("--id", options->id, "The relation's id");
  which->require_option(1);
  invocation.When(command, [options](Invocation& run) {
    if (options->id) {
      ShowRelationById(run, *options);
    } else {
      ShowRelationOf(run, *options);
    }
  });
}

void AddList(CLI::App& relation, Invocation& invocation) {
  const auto options = std::make_shared<RelationOptions>();
  CLI::App& command =
      AddFileCommand(relation, "list", "List the relations", "relation list alder.company --realms", options->file);
  CLI::Option* realms = command.add_flag("--realms", options->realmsOnly, "Only the partners' realm ids");
  command.add_flag("--with-accounts-only", options->withAccountsOnly, "Leave out relations without accounts")
      ->needs(realms);
  command.add_option("--state", options->state, std::string("Only those in this state: ") + kStateHelp)
      ->type_name(kRelationStates)
      ->excludes(realms);
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ListRelations(run, *options); });
}

}  // namespace

void AddRelation(CLI::App& program, Invocation& invocation) {
  CLI::App& relation =
      AddGroup(program, "relation", "Work with the relations to partner companies", "relation list alder.company");
  AddCreate(relation, invocation);
  AddUpdate(relation, invocation);
  AddDelete(relation, invocation);
  AddShow(relation, invocation);
  AddList(relation, invocation);
}

}  // namespace app
