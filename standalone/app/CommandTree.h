#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace app {

// An option as the help has it.
struct OptionText {
  std::vector<std::string> names;  // with their dashes; of what has none, such as FILE, its own
  std::string value;               // what follows it; empty for a flag
  std::string help;
  bool required = false;
};

// A command as the help has it.
struct CommandText {
  std::string path;  // such as "relation list"; empty for the program itself
  std::string usage;
  std::string description;
  std::string footer;
  std::vector<std::string> subcommands;
  std::vector<OptionText> operands;
  std::vector<OptionText> options;
};

CommandText DescriptionOf(const CLI::App& command);
// The program itself, then its commands in the order of the help, those below one right behind it.
std::vector<CommandText> CommandsOf(const CLI::App& program);

// As it is typed, such as "multientity relation list".
std::string FullNameOf(const CLI::App& command);
// The line that begins the help of a command.
std::string UsageOf(const CLI::App& command);

}  // namespace app
