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
  // Who is asked has no established relation, and whoever does not want the set-up goes on all the same.
  invocation.Report({{"mayGoOn", mayGoOn}, {"events", encounter.Events()}},
                    !mayGoOn               ? ""
                    : encounter.HasAsked() ? "No relation is established; the plug-in may be opened all the same.\n"
                                           : "The plug-in may be opened.\n");
  if (!mayGoOn) throw std::runtime_error("no relation with a partner company is established; its set-up was opened");
}

}  // namespace

void AddPlugin(CLI::App& program, Invocation& invocation) {
  CLI::App& plugin = AddGroup(program, "plugin", "The way into the intercompany plug-in", "plugin check alder.company");
  const auto options = std::make_shared<PluginOptions>();
  CLI::App& check = AddFileCommand(
      plugin, "check",
      "Check whether there is an established relation to work with, and offer the set-up otherwise: ends with 0 when\n"
      "the plug-in may be opened, with 1 when the set-up of relations was opened instead",
      "plugin check alder.company --answer yes", options->file);
  AddAnswerOption(check, options->answer);
  invocation.When(check, [options](Invocation& run) { CheckPlugin(run, *options); });
}

}  // namespace app
