#include <fmt/format.h>

#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/CommandTree.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

// A text in which nothing is a request of the formatter.
std::string Roff(std::string_view text) {
  std::string escaped;
  bool atStart = true;
  for (const char c : text) {
    if (atStart && (c == '.' || c == '\'')) escaped += "\\&";
    atStart = c == '\n';
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string OptionRoff(const OptionText& option) {
  std::string names;
  for (const std::string& name : option.names) names += (names.empty() ? "\\fB" : ", \\fB") + Roff(name) + "\\fR";
  if (!option.value.empty() && option.names.front().starts_with('-')) names += " \\fI" + Roff(option.value) + "\\fR";
  return fmt::format(".TP\n{}\n{}\n", names, Roff(option.help + (option.required ? " (required)" : "")));
}

std::string OptionsRoff(const CommandText& command) {
  std::string text;
  for (const OptionText& operand : command.operands) text += OptionRoff(operand);
  for (const OptionText& option : command.options) text += OptionRoff(option);
  return text;
}

// Lines stay as they are, as of an example.
std::string AsItIs(std::string_view text) {
  return fmt::format(".PP\n.nf\n{}\n.fi\n", Roff(text));
}

std::string CommandRoff(const CommandText& command) {
  return fmt::format(".SS \"{}\"\n{}\n{}{}{}", Roff(command.path), Roff(command.description), AsItIs(command.usage),
                     OptionsRoff(command), AsItIs(command.footer));
}

std::string ManPage(const CLI::App& program) {
  const std::vector<CommandText> commands = CommandsOf(program);
  const CommandText& itself = commands.front();
  std::string text = fmt::format(
      ".TH MULTIENTITY 1 \"\" \"multientity {}\" \"User Commands\"\n.nh\n.ad l\n"
      ".SH NAME\nmultientity \\- intercompany accounting with partner companies\n"
      ".SH SYNOPSIS\n\\fBmultientity\\fR [\\fIoptions\\fR] \\fIcommand\\fR ...\n"
      ".SH DESCRIPTION\n{}\n.SH OPTIONS\n{}.SH COMMANDS\n",
      MULTIENTITY_VERSION, Roff(itself.description), OptionsRoff(itself));
  for (const CommandText& command : commands) {
    if (!command.path.empty()) text += CommandRoff(command);
  }
  return text + ".SH NOTES\n" + AsItIs(itself.footer);
}

}  // namespace

void AddMan(CLI::App& program, Invocation& invocation) {
  CLI::App& man = *program.add_subcommand("man", "Print the manual page of all commands, for man and groff");
  AddFooter(man, "man >multientity.1");
  invocation.When(man, [&program](Invocation&) { PrintData(ManPage(program)); });
}

}  // namespace app
