#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Currency.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct SettingsOptions {
  std::string file;
  std::string setting;
  std::string value;
};

// A company that was kept in other decimals than its currency has says so, as its amounts are read by them.
std::string DecimalsText(const desk::Settings& settings) {
  const standalone::Decimals ofCurrency = standalone::DecimalsOf(settings.homeCurrency);
  if (settings.homeCurrency.empty() || settings.decimals == ofCurrency) {
    return fmt::format("{}", settings.decimals.Count());
  }
  return fmt::format("{}, kept from before; {} has {}", settings.decimals.Count(), settings.homeCurrency,
                     standalone::InWords(ofCurrency));
}
constexpr std::array kSettingColumns{"setting", "value"};

Table SettingsTable(const desk::Settings& settings) {
  Table table({{"Setting"}, {"Value"}});
  table.Add({"company-name", settings.companyName});
  table.Add({"home-currency", settings.homeCurrency});
  table.Add({"decimals", DecimalsText(settings)});
  table.Add({"multi-currency", standalone::YesOrNo(settings.multiCurrency)});
  table.Add({"sample-file", standalone::YesOrNo(settings.sampleFile)});
  table.Add({"accountants-copy", standalone::YesOrNo(settings.accountantsCopy)});
  table.Add({"closing-date", settings.closingDate ? standalone::FormatIsoDate(*settings.closingDate) : "none"});
  return table;
}

void ShowSettings(Invocation& invocation, const SettingsOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Settings settings = desk::ReadSettings(company);
  const Json json = desk::JsonOf(settings);
  if (!invocation.options.csv) {
    invocation.Report({{"settings", json}}, SettingsTable(settings).Text());
    return;
  }
  Json rows = Json::array();
  for (const auto& [setting, value] : json.items()) rows.push_back({{"setting", setting}, {"value", value}});
  invocation.ReportList({{"settings", rows}}, kSettingColumns, {});
}

void SetSetting(Invocation& invocation, const SettingsOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ChangedSettings changed = desk::ChangeSetting(company, options.setting, options.value);
  invocation.Report(
      {{"settings", desk::JsonOf(changed)}, {"changed", changed.hasChanged}},
      (changed.hasChanged ? "" : std::string(kNothingHasChanged) + ".\n") + SettingsTable(changed).Text());
}

}  // namespace

void AddSettings(CLI::App& program, Invocation& invocation) {
  CLI::App& settings = AddGroup(program, "settings", "Show or change the settings of a company",
                                "settings set alder.company home-currency CAD");
  const auto options = std::make_shared<SettingsOptions>();

  CLI::App& show = AddFileCommand(settings, "show", "Show the settings", "settings show alder.company", options->file);
  AddCsvOption(show, invocation.options);
  invocation.When(show, [options](Invocation& run) { ShowSettings(run, *options); });

  CLI::App& set = AddFileCommand(settings, "set", "Change a setting", "settings set alder.company home-currency CAD",
                                 options->file);
  set.add_option("SETTING", options->setting,
                 "company-name, home-currency, multi-currency, sample-file, accountants-copy or closing-date")
      ->required();
  set.add_option("VALUE", options->value, "A text, an ISO 4217 code, yes or no, or YYYY-MM-DD or none")->required();
  invocation.When(set, [options](Invocation& run) { SetSetting(run, *options); });
}

}  // namespace app
