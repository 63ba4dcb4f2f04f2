#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

void Names(Invocation& invocation, const std::string& file) {
  Company company(invocation, file);
  const auto names = company.Read([&] { return company.Host().Names().List(); });
  Json list = Json::array();
  Table table({{"Id", Align::kRight}, {"Name"}, {"Kind"}});
  for (const standalone::Name& name : names) {
    const std::string kind = standalone::NameKindText(name.kind);
    list.push_back({{"id", name.id}, {"name", name.fullName}, {"kind", kind}});
    table.Add({std::to_string(name.id), name.fullName, kind});
  }
  invocation.Report({{"names", list}}, table.Empty() ? "No names.\n" : table.Text());
}

}  // namespace

void AddNames(CLI::App& program, Invocation& invocation) {
  const auto file = std::make_shared<std::string>();
  CLI::App& command = AddFileCommand(program, "names", "List the customers, vendors, employees and other names",
                                     "names alder.company", *file);
  invocation.When(command, [file](Invocation& run) { Names(run, *file); });
}

}  // namespace app
