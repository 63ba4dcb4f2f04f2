#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Dialogue.h"
#include "standalone/app/Encounter.h"
#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Realm.h"

namespace app {

namespace {

struct PluginOptions {
  std::string file;
  std::optional<std::string> answer;
};

void CheckPlugin(Invocation& invocation, const PluginOptions& options) {
  const std::optional<bool> answer = GivenAnswer(options.answer);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  Encounter encounter(invocation, options.file, answer);
  const bool mayGoOn = desk::CheckPlugin(company, encounter.Person());
  invocation.Report({{"mayGoOn", mayGoOn}, {"events", encounter.Events()}},
                    mayGoOn ? "Intercompany work may go on.\n" : "");
  if (!mayGoOn) throw std::runtime_error("no relation with a partner company is established; its set-up was opened");
}

}  // namespace

void AddPlugin(CLI::App& program, Invocation& invocation) {
  CLI::App& plugin = *program.add_subcommand("plugin", "The way into the intercompany plug-in");
  plugin.require_subcommand(1);
  plugin.footer("Example:\n  multientity plugin check alder.company");
  const auto options = std::make_shared<PluginOptions>();
  CLI::App& check = AddFileCommand(
      plugin, "check",
      "Check whether there is an established relation to work with: ends with 0 when the plug-in may be opened as\n"
      "asked, with 1 when the set-up of relations was opened instead",
      "plugin check alder.company --answer yes", options->file);
  AddAnswerOption(check, options->answer);
  invocation.When(check, [options](Invocation& run) { CheckPlugin(run, *options); });
}

}  // namespace app
