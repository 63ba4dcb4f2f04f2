#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Passphrase.h"
#include "standalone/app/TextInput.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/NewFiles.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

constexpr std::size_t kLongestIdentity = std::size_t{128} << 20;

constexpr const char* kOnlyOne =
    "Two companies of one identity must not both work: use it here or there, never in both places.\n";

struct IdentityOptions {
  std::string file;
  std::string text;
  std::optional<std::string> output;
  PassphraseOptions passphrase;
};

std::string IdentityText(const desk::OwnIdentity& identity) {
  return fmt::format("Identity:    {}\nRealm:       {}\nFingerprint: {}\n",
                     standalone::Shown(standalone::PathText(identity.file)), standalone::Shown(identity.realm),
                     identity.fingerprint);
}

void ShowOwnIdentity(Invocation& invocation, const IdentityOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::optional<desk::OwnIdentity> identity = desk::ShowIdentity(company);
  invocation.Report({{"identity", identity ? desk::JsonOf(*identity) : Json()}},
                    identity ? IdentityText(*identity)
                             : "The company has no identity yet; it gets one with its first partner, by: multientity "
                               "partner invite, or partner accept\n");
}

void ExportOwnIdentity(Invocation& invocation, const IdentityOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  if (options.output) desk::RequireNewFile(company, FilePath(*options.output));
  const std::string passphrase = PassphraseOf(invocation, options.passphrase, Typed::kTwice);
  const std::string text = desk::ExportIdentity(company, passphrase);
  if (options.output) desk::WriteNewFile(company, FilePath(*options.output), text);
  if (invocation.options.json) {
    invocation.Report({{"identity", text}, {"file", desk::OrNull(options.output)}, {"warning", kOnlyOne}}, {});
    return;
  }
  PrintError(kOnlyOne);
  if (options.output) {
    Print(fmt::format("Wrote the identity to {}; only the passphrase opens it.\n", standalone::Shown(*options.output)));
  } else {
    PrintData(text);
  }
}

void ImportOwnIdentity(Invocation& invocation, const IdentityOptions& options) {
  const std::string text = ReadText("identity", options.text, kLongestIdentity);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::string passphrase = PassphraseOf(invocation, options.passphrase, Typed::kOnce);
  const desk::OwnIdentity identity = desk::ImportIdentity(company, text, passphrase);
  if (!invocation.options.json) PrintError(kOnlyOne);
  invocation.Report({{"identity", desk::JsonOf(identity)}, {"warning", kOnlyOne}},
                    "The company has this identity now.\n" + IdentityText(identity));
}

void AddIdentityShow(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<IdentityOptions>();
  CLI::App& command = AddFileCommand(group, "show", "Show who this company is to its partners: its fingerprint",
                                     "identity show alder.company", options->file);
  invocation.When(command, [options](Invocation& run) { ShowOwnIdentity(run, *options); });
}

void AddIdentityExport(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<IdentityOptions>();
  CLI::App& command = AddFileCommand(
      group, "export",
      "Write the identity as a text that only the passphrase opens, for a move to another machine; for administrators",
      "identity export alder.company --output alder.identity-text", options->file);
  command.add_option("--output", options->output, "A new file for the text; standard output when left out");
  AddPassphraseOption(command, options->passphrase);
  invocation.When(command, [options](Invocation& run) { ExportOwnIdentity(run, *options); });
}

void AddIdentityImport(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<IdentityOptions>();
  CLI::App& command =
      AddFileCommand(group, "import",
                     "Give a company that was moved here its identity, which it must not have yet; for administrators",
                     "identity import alder.company alder.identity-text", options->file);
  command.add_option("TEXT", options->text, "The file with the text of identity export; - for standard input")
      ->required();
  AddPassphraseOption(command, options->passphrase);
  invocation.When(command, [options](Invocation& run) { ImportOwnIdentity(run, *options); });
}

}  // namespace

void AddIdentity(CLI::App& program, Invocation& invocation) {
  CLI::App& group = AddGroup(program, "identity", "Show or move the identity by which partners know this company",
                             "identity show alder.company");
  AddIdentityShow(group, invocation);
  AddIdentityExport(group, invocation);
  AddIdentityImport(group, invocation);
}

}  // namespace app
