#include <fmt/format.h>

#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

struct PersonaOptions {
  std::string file;
  std::string role;
};

std::string_view PersonaText(SybaseRelationsUserPersona persona) noexcept {
  switch (persona) {
    case SybaseRelationsPersonaNone:
      return "none";
    case SybaseRelationsPersonaViewer:
      return "viewer";
    case SybaseRelationsPersonaContributor:
      return "contributor";
    case SybaseRelationsPersonaManager:
      return "manager";
  }
  return "unknown";
}

void Persona(Invocation& invocation, const PersonaOptions& options) {
  const std::int32_t role = WholeNumber("role", options.role, std::numeric_limits<std::int32_t>::min(),
                                        std::numeric_limits<std::int32_t>::max());
  Company company(invocation, options.file);
  const SybaseRelationsUserPersona persona =
      company.Read([&] { return MultiEntityDriver::SybaseRelationsUserPersonaForRole(role); });
  const std::string_view text = PersonaText(persona);
  invocation.Report({{"role", role}, {"persona", persona}, {"personaText", text}},
                    fmt::format("In role {} this user works with the relations as: {} (persona {}).\n", role, text,
                                static_cast<int>(persona)));
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
