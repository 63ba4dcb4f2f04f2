#include <fmt/format.h>

#include <limits>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Users.h"
#include "standalone/desk/json/Json.h"

namespace app {

namespace {

struct PersonaOptions {
  std::string file;
  std::string role;
};

void Persona(Invocation& invocation, const PersonaOptions& options) {
  const std::int32_t role = WholeNumber("role", options.role, std::numeric_limits<std::int32_t>::min(),
                                        std::numeric_limits<std::int32_t>::max());
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Persona persona = desk::PersonaInRole(company, role);
  Json json{{"role", role}};
  json.update(desk::JsonOf(persona));
  invocation.Report(json, fmt::format("In role {} this user works with the relations as: {} (persona {}).\n", role,
                                      desk::NameOf(persona), static_cast<int>(persona)));
}

}  // namespace

void AddPersona(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<PersonaOptions>();
  CLI::App& command =
      AddFileCommand(program, "persona", "Tell as which persona a user works with the relations in a role",
                     "persona alder.company --role 1 --user Robin", options->file);
  command
      .add_option("--role", options->role,
                  "The role's number: 0 or 15 manages; 1 and others depend on the user's rights for accounts")
      ->required();
  invocation.When(command, [options](Invocation& run) { Persona(run, *options); });
}

}  // namespace app
