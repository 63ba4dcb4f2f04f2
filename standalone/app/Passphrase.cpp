#include "standalone/app/Passphrase.h"

#include <fmt/format.h>

#include <string_view>

#include <CLI/CLI.hpp>

#include "standalone/app/Invocation.h"
#include "standalone/app/TextInput.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Errors.h"

namespace app {

namespace {

constexpr const char* kPassphraseVariable = "MULTIENTITY_PASSPHRASE";
constexpr std::size_t kLongestPassphrase = 1024;

std::string Acceptable(std::string passphrase) {
  if (passphrase.empty()) throw standalone::InvalidInput("the passphrase is empty; give one that nobody guesses");
  if (passphrase.size() <= kLongestPassphrase) return passphrase;
  throw standalone::InvalidInput(
      fmt::format("the passphrase has more than {} bytes; give a shorter one", kLongestPassphrase));
}

std::string FirstLineOf(const std::string& file) {
  const std::string text = ReadText("passphrase", file, 2 * kLongestPassphrase);
  std::string_view line = std::string_view(text).substr(0, text.find('\n'));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return std::string(line);
}

std::string Asked(std::string_view prompt) {
  const std::optional<std::string> line = ReadHiddenLine(prompt);
  if (!line) throw standalone::InvalidInput("no passphrase was typed");
  return *line;
}

std::string AskedFor(Typed typed) {
  std::string passphrase = Acceptable(Asked("Passphrase: "));
  if (typed == Typed::kTwice && Asked("The same once more: ") != passphrase) {
    throw standalone::InvalidInput("the two passphrases differ; nothing was done");
  }
  return passphrase;
}

}  // namespace

void AddPassphraseOption(CLI::App& command, PassphraseOptions& options) {
  command.add_option("--passphrase-file", options.file,
                     std::string("A file whose first line is the passphrase; when left out, ") + kPassphraseVariable +
                         " has it, or a person at a terminal is asked");
}

std::string PassphraseOf(const Invocation& invocation, const PassphraseOptions& options, Typed typed) {
  if (options.file) return Acceptable(FirstLineOf(*options.file));
  if (const std::optional<std::string> known = EnvironmentText(kPassphraseVariable)) return Acceptable(*known);
  if (!invocation.options.json && InputComesFromATerminal()) return AskedFor(typed);
  throw standalone::InvalidInput(
      fmt::format("a passphrase is needed; give the file that has it with --passphrase-file, or have it in {}",
                  kPassphraseVariable));
}

}  // namespace app
