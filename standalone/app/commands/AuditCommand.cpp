#include "standalone/app/commands/AuditCommand.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Audit.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Columns.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct AuditOptions {
  std::string file;
  std::string by;
  std::string what;
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<std::string> txn;
};

using Deed = std::pair<std::string_view, std::string_view>;

// Each with what somebody did, before what he did it to.
constexpr auto kDeeds = std::to_array<Deed>({
    {"account.add", "added"},
    {"account.delete", "marked deleted"},
    {"account.number", "changed the number of"},
    {"account.rename", "renamed"},
    {"bill.copy", "recorded"},
    {"bill.correct", "corrected a bill with"},
    {"bill.record", "recorded"},
    {"check.copy", "recorded"},
    {"check.correct", "corrected a check with"},
    {"check.record", "recorded"},
    {"company.backup", "began the backup"},
    {"company.backup.fail", "could not finish the backup"},
    {"company.make", "made"},
    {"company.migrate", "brought forward"},
    {"company.restore", "restored the company from the backup"},
    {"entry.copy", "recorded"},
    {"entry.correct", "corrected an entry with"},
    {"entry.record", "recorded"},
    {"exchange.confirm", "confirmed"},
    {"exchange.insist", "insisted on"},
    {"exchange.send", "sent"},
    {"exchange.take", "took"},
    {"identity.export", "exported"},
    {"identity.import", "imported"},
    {"import", "imported"},
    {"inbox.accept", "accepted as"},
    {"inbox.dispute", "disputed"},
    {"inbox.note", "noted on"},
    {"inbox.reject", "rejected"},
    {"journal.move", "moved an expense with"},
    {"journal.record", "recorded"},
    {"journal.remove", "removed"},
    {"name.add", "added"},
    {"name.delete", "deleted"},
    {"name.rename", "renamed"},
    {"outbox.note", "noted on"},
    {"outbox.withdraw", "asked to withdraw"},
    {"partner.accept", "accepted"},
    {"partner.auto", "changed how requests are booked of"},
    {"partner.block", "blocked"},
    {"partner.confirm", "confirmed"},
    {"partner.folder", "changed the folder of"},
    {"partner.invite", "began"},
    {"partner.rekey", "replaced the key of"},
    {"partner.remove", "ended"},
    {"partner.unblock", "unblocked"},
    {"realm.remember", "set"},
    {"rejected.delete", "deleted the rejected"},
    {"rejected.save", "saved the rejected"},
    {"relation.create", "created"},
    {"relation.delete", "deleted"},
    {"relation.update", "changed"},
    {"reminder.reset", "reset"},
    {"rules.add", "added"},
    {"rules.remove", "removed"},
    {"settings.change", "changed"},
    {"transaction.attach", "attached papers to"},
    {"transaction.detach", "detached papers from"},
    {"transaction.remove", "removed"},
    {"transaction.reverse", "reversed a transaction with"},
    {"transaction.state", "changed the state of"},
    {"user.add", "added"},
    {"user.change", "changed"},
    {"user.remove", "removed"},
});

std::string VerbOf(const std::string& action) {
  const auto* const found = std::ranges::find(kDeeds, std::string_view(action), &Deed::first);
  return found == kDeeds.end() ? action + ":" : std::string(found->second);
}

// What stands before the first point of them.
std::vector<std::string> KindsOfDeeds() {
  std::vector<std::string> kinds;
  for (const auto& [action, verb] : kDeeds) {
    const std::string_view kind = action.substr(0, action.find('.'));
    if (kinds.empty() || kinds.back() != kind) kinds.emplace_back(kind);
  }
  return kinds;
}

void RequireKindOfDeed(const std::string& what) {
  std::vector<std::string> known = KindsOfDeeds();
  const std::string kinds = fmt::format("{}", fmt::join(known, ", "));
  for (const auto& [action, verb] : kDeeds) {
    if (what == action || action.starts_with(what + '.')) return;
    known.emplace_back(action);
  }
  throw standalone::InvalidInput(
      fmt::format("There is no kind of deed {}; give {}, or more closely such as "
                  "journal.remove.{}",
                  standalone::Quoted(what), kinds, standalone::DidYouMean(what, known)));
}

std::string ChangeText(const desk::AuditedChange& change) {
  if (!change.before) return fmt::format("{} {}", change.field, change.after.value_or(""));
  if (!change.after) return fmt::format("{} was {}", change.field, *change.before);
  return fmt::format("{} {}, was {}", change.field, *change.after, *change.before);
}

std::string SentenceOf(const desk::AuditedDeed& deed) {
  std::string sentence = fmt::format("{} ({}) {} {}", deed.user.empty() ? "The program" : deed.user, deed.systemUser,
                                     VerbOf(deed.action), deed.subject);
  const char* before = ": ";
  for (const desk::AuditedChange& change : deed.changes) {
    sentence += before + ChangeText(change);
    before = "; ";
  }
  if (!deed.clock.empty()) sentence += fmt::format(" [clock set to {}]", deed.clock);
  return sentence + '.';
}

std::string ListText(const std::vector<desk::AuditedDeed>& deeds) {
  if (deeds.empty()) return "The audit trail has no such lines.\n";
  std::string text;
  for (const desk::AuditedDeed& deed : deeds) text += DeedLine(deed);
  return text;
}

constexpr std::array kAuditColumns{"number",          "time",   "clockSetTo", "user",
                                   "systemUser",      "action", "subject",    "firstTransaction",
                                   "lastTransaction", "field",  "before",     "after"};

// A row for each value that was changed, and one for a deed that changed none.
Json RowsOf(const std::vector<desk::AuditedDeed>& deeds) {
  Json rows = Json::array();
  for (const desk::AuditedDeed& deed : deeds) {
    Json row = desk::JsonOf(deed);
    const Json changes = row.at("changes");
    if (changes.empty()) rows.push_back(row);
    for (const Json& change : changes) {
      row.update(change);
      rows.push_back(row);
    }
  }
  return rows;
}

void ShowAudit(Invocation& invocation, const AuditOptions& options) {
  if (!options.what.empty()) RequireKindOfDeed(options.what);
  desk::AuditQuery query{.user = options.by,
                         .action = options.what,
                         .period = {PeriodBound("--from", options.from), PeriodBound("--to", options.to)},
                         .txnId = {}};
  if (options.txn) query.txnId = RecordId("transaction id", *options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::AuditedDeed> deeds = desk::ListAudit(company, query);
  invocation.ReportList({{"audit", invocation.options.csv ? RowsOf(deeds) : desk::JsonOf(deeds)}}, kAuditColumns,
                        ListText(deeds));
}

void VerifyAudit(Invocation& invocation, const AuditOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::AuditVerdict verdict = desk::VerifyAudit(company);
  if (verdict.breakAt) {
    throw std::runtime_error(
        fmt::format("the audit trail of {} breaks at line {}: that line or the one before it was changed, or lines "
                    "between them were taken out; compare it with a backup",
                    options.file, *verdict.breakAt));
  }
  invocation.Report({{"audit", desk::JsonOf(verdict)}},
                    fmt::format("The audit trail is whole: {}; the SHA-256 of the last one is\n{}\n",
                                standalone::Counted(verdict.lines, "line"), verdict.head));
}

}  // namespace

std::string DeedLine(const desk::AuditedDeed& deed) {
  return fmt::format("{:>6}  {}  {}\n", deed.number, standalone::FormatDayAndTime(deed.localTime, ' '),
                     standalone::EscapeColumn(SentenceOf(deed)));
}

void AddAudit(CLI::App& program, Invocation& invocation) {
  CLI::App& audit = *program.add_subcommand("audit", "Show or verify who has done what to the books");
  audit.require_subcommand(1);
  audit.footer("Example:\n  multientity audit show alder.company --what journal");
  const auto options = std::make_shared<AuditOptions>();

  CLI::App& show = AddFileCommand(audit, "show", "Tell what was done, oldest first; for administrators and accountants",
                                  "audit show alder.company --by Anna --what journal --from 2024-12-01", options->file);
  show.add_option("--by", options->by, "What this user did");
  show.add_option(
      "--what", options->what,
      fmt::format("What was done: {}, or more closely, such as journal.remove", fmt::join(KindsOfDeeds(), ", ")));
  show.add_option("--from", options->from, "First day, YYYY-MM-DD; open when left out");
  show.add_option("--to", options->to, "Last day, YYYY-MM-DD; open when left out");
  show.add_option(
      "--txn", options->txn,
      "What was done to this transaction, and to those that reverse, correct or move it or that it reverses, corrects "
      "or moves");
  AddCsvOption(show, invocation.options);
  invocation.When(show, [options](Invocation& run) { ShowAudit(run, *options); });

  CLI::App& verify = AddFileCommand(audit, "verify", "Check that no line was changed or taken out",
                                    "audit verify alder.company", options->file);
  invocation.When(verify, [options](Invocation& run) { VerifyAudit(run, *options); });
}

}  // namespace app
