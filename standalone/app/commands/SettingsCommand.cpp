#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/json/Json.h"

namespace app {

namespace {

struct SettingsOptions {
  std::string file;
  std::string setting;
  std::string value;
};

void Show(Invocation& invocation, const desk::Settings& settings) {
  const auto yesNo = [](bool set) {
    return std::string(set ? "yes" : "no");
  };
  Table table({{"Setting"}, {"Value"}});
  table.Add({"company-name", settings.companyName});
  table.Add({"home-currency", settings.homeCurrency});
  table.Add({"multi-currency", yesNo(settings.multiCurrency)});
  table.Add({"sample-file", yesNo(settings.sampleFile)});
  table.Add({"accountants-copy", yesNo(settings.accountantsCopy)});
  invocation.Report({{"settings", desk::JsonOf(settings)}}, table.Text());
}

void ShowSettings(Invocation& invocation, const SettingsOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  Show(invocation, desk::ReadSettings(company));
}

void SetSetting(Invocation& invocation, const SettingsOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  Show(invocation, desk::ChangeSetting(company, options.setting, options.value));
}

}  // namespace

void AddSettings(CLI::App& program, Invocation& invocation) {
  CLI::App& settings = *program.add_subcommand("settings", "Show or change the settings of a company");
  settings.require_subcommand(1);
  settings.footer("Example:\n  multientity settings set alder.company home-currency CAD");
  const auto options = std::make_shared<SettingsOptions>();

  CLI::App& show = AddFileCommand(settings, "show", "Show the settings", "settings show alder.company", options->file);
  invocation.When(show, [options](Invocation& run) { ShowSettings(run, *options); });

  CLI::App& set = AddFileCommand(settings, "set", "Change a setting", "settings set alder.company home-currency CAD",
                                 options->file);
  set.add_option("SETTING", options->setting,
                 "company-name, home-currency, multi-currency, sample-file or accountants-copy")
      ->required();
  set.add_option("VALUE", options->value, "A text, an ISO 4217 code, or yes or no")->required();
  invocation.When(set, [options](Invocation& run) { SetSetting(run, *options); });
}

}  // namespace app
