#include <fmt/format.h>

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Company.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct InitOptions {
  std::string file;
  desk::NewCompany company;
};

void Init(Invocation& invocation, const InitOptions& options) {
  desk::NewCompany company = options.company;
  company.file = FilePath(options.file);
  company.networkShare = invocation.options.networkShare;
  desk::CreateCompany(company);
  invocation.TakeSaved();
  invocation.Report({{"file", options.file}, {"company", options.company.name}},
                    fmt::format("Created the company file {} for {}, with the user {}.\n",
                                standalone::Shown(options.file), options.company.name, desk::kFirstUser));
}

}  // namespace

void AddInit(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<InitOptions>();
  CLI::App& command = AddFileCommand(program, "init", "Create a company file",
                                     "init alder.company --name \"Alder Supply Company\"", options->file);
  command.add_option("--name", options->company.name, "The company's name, up to 59 bytes")->required();
  command
      .add_option("--home-currency", options->company.homeCurrency,
                  "ISO 4217 code of the home currency, whose decimals the company has")
      ->capture_default_str();
  command.add_flag("--multi-currency", options->company.multiCurrency, "The company keeps several currencies");
  command.add_flag("--sample", options->company.sampleFile, "Mark the file as a sample company");
  command.add_flag("--accountants-copy", options->company.accountantsCopy, "Mark the file as an accountant's copy");
  invocation.When(command, [options](Invocation& run) { Init(run, *options); });
}

}  // namespace app
