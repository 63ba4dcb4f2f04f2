#include <array>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/json/Json.h"

namespace app {

namespace {

constexpr std::array kNameColumns{"id", "name", "kind"};

void Names(Invocation& invocation, const std::string& file) {
  desk::Company company(FilePath(file), HowToOpen(invocation, file));
  const std::vector<desk::Name> names = desk::ListNames(company);
  Table table({{.title = "Id", .align = Align::kRight},
               {.title = "Name"},
               {.title = "Kind", .importance = Importance::kMajor}});
  for (const desk::Name& name : names) table.Add({std::to_string(name.id), name.name, name.kind});
  invocation.ReportList({{"names", desk::JsonOf(names)}}, kNameColumns, table.Empty() ? "No names.\n" : table.Text());
}

}  // namespace

void AddNames(CLI::App& program, Invocation& invocation) {
  const auto file = std::make_shared<std::string>();
  CLI::App& command = AddFileCommand(program, "names", "List the customers, vendors, employees and other names",
                                     "names alder.company", *file);
  AddCsvOption(command, invocation.options);
  invocation.When(command, [file](Invocation& run) { Names(run, *file); });
}

}  // namespace app
