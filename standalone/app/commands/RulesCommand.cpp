#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/RequestTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/json/Json.h"

namespace app {

namespace {

struct RulesOptions {
  std::string file;
  std::optional<std::string> partner;
  std::optional<std::string> name;
  std::optional<std::string> hint;
  std::optional<std::string> memo;
  std::string expense;
  std::optional<std::string> bookedAs;
  std::string rule;
};

constexpr std::array kRuleColumns{"id",         "partner",      "realm",       "name",          "hint",    "memo",
                                  "account.id", "account.name", "bookedAs.id", "bookedAs.name", "learned", "unfit"};

void ListAllRules(Invocation& invocation, const RulesOptions& options) {
  std::optional<desk::Partner> partner;
  if (options.partner) partner.emplace(*options.partner);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::Rule> rules = desk::ListRules(company, partner);
  invocation.ReportList({{"rules", desk::JsonOf(rules)}}, kRuleColumns, RulesText(rules));
}

void AddOneRule(Invocation& invocation, const RulesOptions& options) {
  const desk::RuleToAdd rule{.partner = desk::Partner(options.partner.value()),
                             .name = options.name,
                             .hint = options.hint,
                             .memo = options.memo,
                             .expense = options.expense,
                             .bookedAs = options.bookedAs};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Rule added = desk::AddRule(company, rule);
  invocation.Report({{"rule", desk::JsonOf(added)}}, fmt::format("Added {}.\n", CalledRule(added)));
}

void RemoveOneRule(Invocation& invocation, const RulesOptions& options) {
  const std::int32_t rule = RecordId("The rule", options.rule);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Rule removed = desk::RemoveRule(company, rule);
  invocation.Report({{"rule", desk::JsonOf(removed)}}, fmt::format("Removed {}.\n", CalledRule(removed)));
}

void AddRulesList(CLI::App& rules, Invocation& invocation) {
  const auto options = std::make_shared<RulesOptions>();
  CLI::App& command =
      AddFileCommand(rules, "list", "List the rules, those that were learned, too, and what keeps some from fitting",
                     "rules list birch.company", options->file);
  command.add_option(kPartnerOption, options->partner, "Only those for this partner: its realm id or its name");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ListAllRules(run, *options); });
}

void AddRulesAdd(CLI::App& rules, Invocation& invocation) {
  const auto options = std::make_shared<RulesOptions>();
  CLI::App& command = AddFileCommand(
      rules, "add",
      "Add a rule: requests of the partner that are such go to this account. What is added goes before what was "
      "learned,\n"
      "and what says more of a request before what says less",
      "rules add birch.company --partner Alder --name \"Northern Power\" --expense Utilities:Electricity",
      options->file);
  command.add_option(kPartnerOption, options->partner, "The partner: its realm id or its name")->required();
  CLI::Option_group* const such =
      command.add_option_group("Such", "What the requests are like; one of these has to be given");
  such->add_option("--name", options->name, "The name that they tell, whatever the case of its letters");
  such->add_option("--hint", options->hint, "The partner's account, as inbox show tells it, without those above it");
  such->add_option("--memo", options->memo, "A text somewhere in their memo");
  such->require_option(1, 0);
  command.add_option("--expense", options->expense, std::string("The account that is debited. ") + kAccountHelp)
      ->required();
  command.add_option("--as", options->bookedAs,
                     "The name under which they are booked, by record number, such as #12, or colon-separated; when "
                     "left out the one that each tells, which is made as a vendor where there is none");
  invocation.When(command, [options](Invocation& run) { AddOneRule(run, *options); });
}

void AddRulesRemove(CLI::App& rules, Invocation& invocation) {
  const auto options = std::make_shared<RulesOptions>();
  CLI::App& command = AddFileCommand(rules, "remove", "Remove a rule; what is to be otherwise is added anew",
                                     "rules remove birch.company 3", options->file);
  command.add_option("RULE", options->rule, "The number of the rule, as rules list shows it")->required();
  invocation.When(command, [options](Invocation& run) { RemoveOneRule(run, *options); });
}

}  // namespace

void AddRules(CLI::App& program, Invocation& invocation) {
  CLI::App& rules = AddGroup(program, "rules", "Say where requests of partners are booked, for inbox accept --by rule",
                             "rules list birch.company");
  AddRulesList(rules, invocation);
  AddRulesAdd(rules, invocation);
  AddRulesRemove(rules, invocation);
}

}  // namespace app
