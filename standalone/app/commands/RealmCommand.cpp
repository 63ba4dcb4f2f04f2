#include <fmt/format.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Dialogue.h"
#include "standalone/app/Encounter.h"
#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/PartnerTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Realm.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct RealmOptions {
  std::string file;
  std::string realm;
  std::optional<std::string> answer;
};

void ShowRealm(Invocation& invocation, const RealmOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::optional<std::string> remembered = desk::RememberedRealm(company);
  invocation.Report({{"remembered", desk::OrNull(remembered)}},
                    remembered
                        ? fmt::format("The company file remembers the realm id {}.\n", standalone::Shown(*remembered))
                        : "The company file remembers no realm id yet.\n");
}

void SetRealm(Invocation& invocation, const RealmOptions& options) {
  const standalone::RealmId realm(options.realm);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const bool hasChanged = desk::RememberRealm(company, realm);
  invocation.Report({{"remembered", realm.Text()}, {"changed", hasChanged}},
                    hasChanged ? fmt::format("The company file now remembers the realm id {}.\n", realm.Text())
                               : fmt::format("{}: the company file remembers the realm id {} already.\n",
                                             kNothingHasChanged, realm.Text()));
}

std::string WhyGoOn(const desk::RealmCheck& check, const std::string& realm) {
  switch (check.outcome) {
    case desk::RealmOutcome::kRememberedNow:
      return fmt::format("The company file remembered no realm id; from now on it remembers {}", realm);
    case desk::RealmOutcome::kUnchanged:
      return "The realm is unchanged";
    default:
      return "The check of the realm is switched off";
  }
}

std::string WhyBlocked(const desk::RealmCheck& check, const std::string& realm, const std::string& file) {
  if (check.outcome == desk::RealmOutcome::kNoRealm && !check.before) {
    return "the company has no realm id; intercompany work must not go on";
  }
  if (check.outcome == desk::RealmOutcome::kNoRealm) {
    return fmt::format(
        "the company reports no realm id, but the company file remembers {}; intercompany work must not go on; if the "
        "company's own is that one: multientity realm check {} --realm {}",
        standalone::Quoted(*check.before), AsTyped(file), AsTyped(*check.before));
  }
  return fmt::format(
      "the company reports the realm id {}, but the company file remembers {}; intercompany work must "
      "not go on",
      realm, standalone::Quoted(check.before.value_or("")));
}

void CheckRealm(Invocation& invocation, const RealmOptions& options) {
  std::optional<standalone::RealmId> realm;
  if (!options.realm.empty()) realm.emplace(options.realm);
  const std::optional<bool> answer = GivenAnswer(options.answer);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  Encounter encounter(invocation, options.file, answer);
  const desk::RealmCheck check = desk::CheckRealm(company, realm, encounter.Person());
  Json json{{"realm", options.realm}};
  json.update(desk::JsonOf(check));
  json["events"] = encounter.Events();
  invocation.Report(json, check.blocked
                              ? std::string()
                              : fmt::format("{}. Intercompany work may go on.\n", WhyGoOn(check, options.realm)));
  if (check.blocked) throw std::runtime_error(WhyBlocked(check, options.realm, options.file));
}

void AddCheck(CLI::App& realm, Invocation& invocation) {
  const auto options = std::make_shared<RealmOptions>();
  CLI::App& command = AddFileCommand(
      realm, "check",
      "Check the realm id that the company reports now against the remembered one: ends with 0 when intercompany work\n"
      "may go on, with 1 when it must not. A file that remembers none yet is given this one to remember",
      "realm check alder.company --realm 5120774003618 --answer no", options->file);
  command.add_option("--realm", options->realm,
                     "The realm id that this company reports now, 1 to 19 bytes; left out when it reports none");
  AddAnswerOption(command, options->answer);
  invocation.When(command, [options](Invocation& run) { CheckRealm(run, *options); });
}

}  // namespace

void AddRealm(CLI::App& program, Invocation& invocation) {
  CLI::App& realm = AddGroup(program, "realm", "The realm id under which this company does intercompany work",
                             "realm show alder.company");
  const auto options = std::make_shared<RealmOptions>();

  CLI::App& show = AddFileCommand(realm, "show", "Show the realm id that the company file remembers, if any",
                                  "realm show alder.company", options->file);
  invocation.When(show, [options](Invocation& run) { ShowRealm(run, *options); });

  CLI::App& set = AddFileCommand(realm, "set", "Have the company file remember a realm id",
                                 "realm set alder.company --realm 5120774003618", options->file);
  set.add_option("--realm", options->realm, "This company's own realm id, 1 to 19 bytes")->required();
  invocation.When(set, [options](Invocation& run) { SetRealm(run, *options); });

  AddCheck(realm, invocation);
}

}  // namespace app
