#include <fmt/format.h>

#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/CommandTree.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

// What is typed before them, and the words that may follow it.
struct Words {
  std::string behind;
  std::vector<std::string> words;
};

// Both shells understand it.
std::string WordsFunction(std::string_view name, const std::vector<Words>& all) {
  std::string text = fmt::format("{}() {{\n  case $1 in\n", name);
  for (const Words& some : all) {
    if (!some.words.empty()) text += fmt::format("    '{}') echo '{}' ;;\n", some.behind, fmt::join(some.words, " "));
  }
  return text + "  esac\n}\n";
}

std::vector<Words> SubcommandsOf(const std::vector<CommandText>& commands) {
  std::vector<Words> all;
  for (const CommandText& command : commands) all.push_back({.behind = command.path, .words = command.subcommands});
  return all;
}

std::vector<Words> OptionsOf(const std::vector<CommandText>& commands) {
  std::vector<Words> all;
  for (const CommandText& command : commands) {
    std::vector<std::string> names;
    for (const OptionText& option : command.options) {
      names.insert(names.end(), option.names.begin(), option.names.end());
    }
    all.push_back({.behind = command.path, .words = std::move(names)});
  }
  return all;
}

// Nothing for an option that takes any text.
std::vector<std::string> WordsIn(const std::string& value) {
  if (value.find(kBetweenWords) == std::string::npos) return {};
  std::vector<std::string> words;
  std::istringstream text(value);
  for (std::string word; std::getline(text, word, kBetweenWords);) words.push_back(word);
  return words;
}

std::vector<Words> ValuesOf(const std::vector<CommandText>& commands) {
  std::vector<Words> all;
  for (const CommandText& command : commands) {
    for (const OptionText& option : command.options) {
      for (const std::string& name : option.names) {
        all.push_back({.behind = command.path + ' ' + name, .words = WordsIn(option.value)});
      }
    }
  }
  return all;
}

// The options of the program itself may follow every command.
std::vector<CommandText> WithOptionsOfTheProgram(std::vector<CommandText> commands) {
  const std::vector<OptionText> ofAll = commands.front().options;
  for (CommandText& command : commands) {
    if (command.path.empty()) continue;
    for (const OptionText& option : ofAll) {
      const std::string& name = option.names.back();
      if (name != "--help" && name != "--version") command.options.push_back(option);
    }
  }
  return commands;
}

std::string Functions(const CLI::App& program) {
  const std::vector<CommandText> commands = WithOptionsOfTheProgram(CommandsOf(program));
  return WordsFunction("_multientity_commands", SubcommandsOf(commands)) +
         WordsFunction("_multientity_options", OptionsOf(commands)) +
         WordsFunction("_multientity_values", ValuesOf(commands));
}

constexpr std::string_view kBash = R"sh(_multientity() {
  local current=${COMP_WORDS[COMP_CWORD]} command='' word words i
  for ((i = 1; i < COMP_CWORD; i++)); do
    for word in $(_multientity_commands "$command"); do
      [ "$word" = "${COMP_WORDS[i]}" ] && command=${command:+$command }$word && break
    done
  done
  words=$(_multientity_values "$command ${COMP_WORDS[COMP_CWORD - 1]}")
  [ -n "$words" ] || case $current in
    -*) words=$(_multientity_options "$command") ;;
    *) words=$(_multientity_commands "$command") ;;
  esac
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o default -F _multientity multientity
)sh";

constexpr std::string_view kZsh = R"sh(_multientity() {
  local command='' word i
  for ((i = 2; i < CURRENT; i++)); do
    for word in $(_multientity_commands "$command"); do
      [ "$word" = "${words[i]}" ] && command=${command:+$command }$word && break
    done
  done
  if [ -n "$(_multientity_values "$command ${words[CURRENT - 1]}")" ]; then
    compadd -- $(_multientity_values "$command ${words[CURRENT - 1]}")
  elif [[ ${words[CURRENT]} == -* ]]; then
    compadd -- $(_multientity_options "$command")
  elif [ -n "$(_multientity_commands "$command")" ]; then
    compadd -- $(_multientity_commands "$command")
  else
    _files
  fi
}
if [ "${funcstack[1]}" = _multientity ]; then
  _multientity "$@"
else
  compdef _multientity multientity
fi
)sh";

}  // namespace

void AddCompletion(CLI::App& program, Invocation& invocation) {
  CLI::App& completion =
      *program.add_subcommand("completion", "Print what completes the commands and options in a shell");
  completion.require_subcommand(1);
  completion.footer("Example:\n  multientity completion bash");

  CLI::App& bash = *completion.add_subcommand("bash", "Print it for bash, to be sourced");
  AddFooter(bash, "completion bash >~/.local/share/bash-completion/completions/multientity");
  invocation.When(bash, [&program](Invocation&) { PrintData(Functions(program) + std::string(kBash)); });

  CLI::App& zsh = *completion.add_subcommand("zsh", "Print it for zsh, to be sourced or found as _multientity");
  AddFooter(zsh, "completion zsh >~/.zfunc/_multientity");
  invocation.When(
      zsh, [&program](Invocation&) { PrintData("#compdef multientity\n" + Functions(program) + std::string(kZsh)); });
}

}  // namespace app
