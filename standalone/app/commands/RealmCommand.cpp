#include <fmt/format.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Preferences.h"
#include "standalone/app/Company.h"
#include "standalone/app/Dialogue.h"
#include "standalone/app/Encounter.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct RealmOptions {
  std::string file;
  std::string realm;
  std::optional<std::string> answer;
};

// Asked of the file itself, as the module's own question would have a file without a realm id remember one.
std::optional<std::string> RememberedRealm(Company& company) {
  return company.Host().Preferences().Find(kRealmIdPreference);
}

Json RealmJson(const std::optional<std::string>& realm) {
  return realm ? Json(*realm) : Json();
}

void ShowRealm(Invocation& invocation, const RealmOptions& options) {
  Company company(invocation, options.file);
  const auto remembered = company.Read([&] { return RememberedRealm(company); });
  invocation.Report({{"remembered", RealmJson(remembered)}},
                    remembered ? fmt::format("The company file remembers the realm id {}.\n", *remembered)
                               : "The company file remembers no realm id yet.\n");
}

void SetRealm(Invocation& invocation, const RealmOptions& options) {
  std::string realm(RealmId(options.realm).view());
  Company company(invocation, options.file);
  company.Host().RequireAdministrator("a change of the realm id");
  if (!company.Write([&] { return MultiEntityDriver::SetMECacheRealmId(realm.data()); })) {
    throw std::runtime_error(fmt::format("the realm id {} could not be stored in the company file", realm));
  }
  invocation.Report({{"remembered", realm}}, fmt::format("The company file now remembers the realm id {}.\n", realm));
}

struct RealmCheck {
  bool blocked = false;
  std::optional<std::string> before;
  std::optional<std::string> after;
};

RealmCheck Check(Company& company, const Util::TString& realm) {
  RealmCheck check;
  check.before = RememberedRealm(company);
  check.blocked = MultiEntityDriver::BlockUserIfRealmReset(realm);
  check.after = RememberedRealm(company);
  return check;
}

std::string WhyGoOn(const RealmCheck& check, const std::string& realm) {
  if (check.after != realm) return "The check of the realm is switched off";
  if (!check.before) return fmt::format("The company file remembered no realm id; from now on it remembers {}", realm);
  return "The realm is unchanged";
}

std::string WhyBlocked(const RealmCheck& check, const std::string& realm) {
  if (realm.empty()) return "the company has no realm id; intercompany work must not go on";
  return fmt::format(
      "the company reports the realm id {}, but the company file remembers {}; intercompany work must "
      "not go on",
      realm, standalone::Quoted(check.before.value_or("")));
}

void CheckRealm(Invocation& invocation, const RealmOptions& options) {
  const Util::TString realm = options.realm.empty() ? Util::TString() : RealmId(options.realm);
  const std::optional<bool> answer = GivenAnswer(options.answer);
  Company company(invocation, options.file);
  const Encounter encounter(invocation, company, answer);
  const RealmCheck check = company.Write([&] { return Check(company, realm); });
  invocation.Report(
      {{"blocked", check.blocked},
       {"realm", options.realm},
       {"rememberedBefore", RealmJson(check.before)},
       {"remembered", RealmJson(check.after)},
       {"events", encounter.Events()}},
      check.blocked ? std::string() : fmt::format("{}. Intercompany work may go on.\n", WhyGoOn(check, options.realm)));
  if (check.blocked) throw std::runtime_error(WhyBlocked(check, options.realm));
}

void AddCheck(CLI::App& realm, Invocation& invocation) {
  const auto options = std::make_shared<RealmOptions>();
  CLI::App& command = AddFileCommand(
      realm, "check",
      "Check the realm id that the company reports now against the remembered one: ends with 0 when intercompany work\n"
      "may go on, with 1 when it must not. A file that remembers none yet is given this one to remember",
      "realm check alder.company --realm 5120774003618 --answer no", options->file);
  command.add_option("--realm", options->realm,
                     "The realm id that this company reports now, 1 to 19 characters; left out when it reports none");
  AddAnswerOption(command, options->answer);
  invocation.When(command, [options](Invocation& run) { CheckRealm(run, *options); });
}

}  // namespace

void AddRealm(CLI::App& program, Invocation& invocation) {
  CLI::App& realm = *program.add_subcommand("realm", "The realm id under which this company does intercompany work");
  realm.require_subcommand(1);
  realm.footer("Example:\n  multientity realm show alder.company");
  const auto options = std::make_shared<RealmOptions>();

  CLI::App& show = AddFileCommand(realm, "show", "Show the realm id that the company file remembers, if any",
                                  "realm show alder.company", options->file);
  invocation.When(show, [options](Invocation& run) { ShowRealm(run, *options); });

  CLI::App& set = AddFileCommand(realm, "set", "Have the company file remember a realm id",
                                 "realm set alder.company --realm 5120774003618", options->file);
  set.add_option("--realm", options->realm, "This company's own realm id, 1 to 19 characters")->required();
  invocation.When(set, [options](Invocation& run) { SetRealm(run, *options); });

  AddCheck(realm, invocation);
}

}  // namespace app
