#include <fmt/format.h>

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct NameOptions {
  std::string file;
  std::string listed;
  std::string name;
  std::string kind;
};

void AddOneName(Invocation& invocation, const NameOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Name added = desk::AddName(company, {.name = options.name, .kind = options.kind});
  invocation.Report({{"name", desk::JsonOf(added)}}, fmt::format("Added the {} {}, record number {}.\n", added.kind,
                                                                 standalone::Shown(added.name), added.id));
}

std::string RenamedNameText(const desk::RenamedName& renamed) {
  const std::string name = standalone::Shown(renamed.name.name);
  if (renamed.name.name == renamed.before) {
    return fmt::format("{}: the name is {} already.\n", kNothingHasChanged, name);
  }
  const std::string below =
      renamed.subNames == 0 ? "" : fmt::format("; names below it renamed with it: {}", renamed.subNames);
  return fmt::format("Renamed {} to {}{}.\n", standalone::Shown(renamed.before), name, below);
}

void RenameOneName(Invocation& invocation, const NameOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::RenamedName renamed = desk::RenameName(company, options.listed, options.name);
  invocation.Report({{"name", desk::JsonOf(renamed.name)}, {"before", renamed.before}, {"subNames", renamed.subNames}},
                    RenamedNameText(renamed));
}

void DeleteOneName(Invocation& invocation, const NameOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Name deleted = desk::DeleteName(company, options.listed);
  invocation.Report({{"name", desk::JsonOf(deleted)}},
                    fmt::format("Deleted the name {}.\n", standalone::Shown(deleted.name)));
}

void AddNameOption(CLI::App& command, NameOptions& options) {
  command.add_option("NAME", options.listed, "The name, by record number or colon-separated name")->required();
}

}  // namespace

void AddName(CLI::App& program, Invocation& invocation) {
  CLI::App& name = AddGroup(program, "name", "Add, rename or delete a customer, vendor, employee or other name",
                            "name add alder.company \"Stone Insurance\" --kind vendor");
  const auto options = std::make_shared<NameOptions>();

  CLI::App& add = AddFileCommand(name, "add", "Add a name that transactions may carry",
                                 "name add alder.company \"Stone Insurance\" --kind vendor", options->file);
  add.add_option("NAME", options->name, "The colon-separated name; those that it stands under are there")->required();
  add.add_option("--kind", options->kind, "customer, vendor, employee or other")->required();
  invocation.When(add, [options](Invocation& run) { AddOneName(run, *options); });

  CLI::App& rename =
      AddFileCommand(name, "rename", "Give a name another text; it stays where it stands, the names below it follow",
                     "name rename alder.company \"Stone Insurance\" \"Stone & Sons\"", options->file);
  AddNameOption(rename, *options);
  rename.add_option("NEW-NAME", options->name, "Its own new name, without those that it stands under")->required();
  invocation.When(rename, [options](Invocation& run) { RenameOneName(run, *options); });

  CLI::App& remove = AddFileCommand(name, "delete", "Delete a name that no transaction carries and none stands below",
                                    "name delete alder.company \"Stone Insurance\"", options->file);
  AddNameOption(remove, *options);
  invocation.When(remove, [options](Invocation& run) { DeleteOneName(run, *options); });
}

}  // namespace app
