#include <fmt/format.h>

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

struct SettingsOptions {
  std::string file;
  std::string setting;
  std::string value;
};

void Show(Invocation& invocation, const standalone::Settings& settings) {
  const auto yesNo = [](bool set) {
    return std::string(set ? "yes" : "no");
  };
  Table table({{"Setting"}, {"Value"}});
  table.Add({"company-name", settings.companyName});
  table.Add({"home-currency", settings.homeCurrency});
  table.Add({"multi-currency", yesNo(settings.multiCurrency)});
  table.Add({"sample-file", yesNo(settings.sampleFile)});
  table.Add({"accountants-copy", yesNo(settings.accountantsCopy)});
  invocation.Report({{"settings",
                      {{"company-name", settings.companyName},
                       {"home-currency", settings.homeCurrency},
                       {"multi-currency", settings.multiCurrency},
                       {"sample-file", settings.sampleFile},
                       {"accountants-copy", settings.accountantsCopy}}}},
                    table.Text());
}

void ShowSettings(Invocation& invocation, const SettingsOptions& options) {
  Company company(invocation, options.file);
  Show(invocation, company.Read([&] { return company.Host().Settings().Get(); }));
}

void SetSetting(Invocation& invocation, const SettingsOptions& options) {
  Company company(invocation, options.file);
  company.Host().RequireAdministrator("a change of settings");
  Show(invocation, company.Write([&] {
    company.Host().Settings().Set(options.setting, options.value);
    return company.Host().Settings().Get();
  }));
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
