#include "standalone/app/CommandTree.h"

#include <CLI/CLI.hpp>

namespace app {

namespace {

std::vector<const CLI::App*> ChildrenOf(const CLI::App& command) {
  return command.get_subcommands([](const CLI::App*) { return true; });
}

std::string PathOf(const CLI::App& command) {
  const CLI::App* const parent = command.get_parent();
  if (parent == nullptr) return {};
  const std::string above = PathOf(*parent);
  return above.empty() ? command.get_name() : above + ' ' + command.get_name();
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  if (names.empty()) names.push_back(option.get_name(/*positional=*/true));
  return names;
}

// Options of which one is chosen stand in a group of their own, which is a command without a name.
void AddOptions(const CLI::App& command, CommandText& text) {
  for (const CLI::Option* const option : command.get_options()) {
    // The help does not show it either.
    if (option->get_group().empty()) continue;
    const OptionText described{.names = NamesOf(*option),
                               .value = option->get_items_expected_max() == 0 ? "" : option->get_type_name(),
                               .help = option->get_description(),
                               .required = option->get_required()};
    (option->nonpositional() ? text.options : text.operands).push_back(described);
  }
  for (const CLI::App* const child : ChildrenOf(command)) {
    if (child->get_name().empty()) AddOptions(*child, text);
  }
}

void AddCommands(const CLI::App& command, std::vector<CommandText>& commands) {
  commands.push_back(DescriptionOf(command));
  for (const CLI::App* const child : ChildrenOf(command)) {
    if (!child->get_name().empty()) AddCommands(*child, commands);
  }
}

}  // namespace

CommandText DescriptionOf(const CLI::App& command) {
  CommandText text{.path = PathOf(command),
                   .usage = UsageOf(command),
                   .description = command.get_description(),
                   .footer = command.get_footer(),
                   .subcommands = {},
                   .operands = {},
                   .options = {}};
  AddOptions(command, text);
  for (const CLI::App* const child : ChildrenOf(command)) {
    if (!child->get_name().empty()) text.subcommands.push_back(child->get_name());
  }
  return text;
}

std::vector<CommandText> CommandsOf(const CLI::App& program) {
  std::vector<CommandText> commands;
  AddCommands(program, commands);
  return commands;
}

std::string FullNameOf(const CLI::App& command) {
  const CLI::App* const parent = command.get_parent();
  return parent == nullptr ? command.get_name() : FullNameOf(*parent) + ' ' + command.get_name();
}

std::string UsageOf(const CLI::App& command) {
  const auto formatter = std::dynamic_pointer_cast<const CLI::Formatter>(command.get_formatter());
  std::string usage = formatter == nullptr ? std::string() : formatter->make_usage(&command, FullNameOf(command));
  usage.erase(usage.find_last_not_of('\n') + 1);
  return usage;
}

}  // namespace app
