#include <fmt/format.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
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
#include "standalone/values/Dates.h"

namespace app {

namespace {

struct AuditOptions {
  std::string file;
  std::string by;
  std::string what;
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<std::string> txn;
  bool csv = false;
};

// What somebody did, before what he did it to.
std::string VerbOf(const std::string& action) {
  static const std::vector<std::pair<std::string_view, std::string_view>> verbs{
      {"company.backup", "began the backup"},
      {"company.backup.fail", "could not finish the backup"},
      {"company.make", "made"},
      {"company.migrate", "brought forward"},
      {"company.restore", "restored the company from the backup"},
      {"import", "imported"},
      {"journal.record", "recorded"},
      {"journal.remove", "removed"},
      {"realm.remember", "set"},
      {"rejected.delete", "deleted the rejected"},
      {"rejected.save", "saved the rejected"},
      {"relation.create", "created"},
      {"relation.delete", "deleted"},
      {"relation.update", "changed"},
      {"reminder.reset", "reset"},
      {"settings.change", "changed"},
      {"transaction.state", "changed the state of"},
      {"user.add", "added"},
      {"user.change", "changed"},
      {"user.remove", "removed"},
  };
  for (const auto& [known, verb] : verbs) {
    if (known == action) return std::string(verb);
  }
  return action + ":";
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
  for (const desk::AuditedDeed& deed : deeds) {
    text += fmt::format("{:>6}  {}  {}\n", deed.number, standalone::FormatDayAndTime(deed.localTime, ' '),
                        standalone::EscapeColumn(SentenceOf(deed)));
  }
  return text;
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of("\",\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string CsvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) line.append(line.empty() ? "" : ",").append(CsvField(field));
  return line + '\n';
}

// A row for each value that was changed, and one for a deed that changed none.
std::string CsvText(const std::vector<desk::AuditedDeed>& deeds) {
  std::string text = CsvLine({"number", "time", "clock_set_to", "user", "system_user", "action", "subject",
                              "first_transaction", "last_transaction", "field", "before", "after"});
  const auto number = [](const std::optional<std::int32_t>& id) {
    return id ? std::to_string(*id) : "";
  };
  for (const desk::AuditedDeed& deed : deeds) {
    const auto add = [&](const desk::AuditedChange& change) {
      text += CsvLine({std::to_string(deed.number), standalone::FormatUtc(deed.at), deed.clock, deed.user,
                       deed.systemUser, deed.action, deed.subject, number(deed.firstTxnId), number(deed.lastTxnId),
                       change.field, change.before.value_or(""), change.after.value_or("")});
    };
    for (const desk::AuditedChange& change : deed.changes) add(change);
    if (deed.changes.empty()) add({});
  }
  return text;
}

void ShowAudit(Invocation& invocation, const AuditOptions& options) {
  desk::AuditQuery query{.user = options.by,
                         .action = options.what,
                         .period = {PeriodBound("--from", options.from), PeriodBound("--to", options.to)},
                         .txnId = {}};
  if (options.txn) query.txnId = RecordId("transaction id", *options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::AuditedDeed> deeds = desk::ListAudit(company, query);
  if (options.csv && !invocation.options.json) {
    PrintData(CsvText(deeds));
    return;
  }
  invocation.Report({{"audit", desk::JsonOf(deeds)}}, ListText(deeds));
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
                    fmt::format("The audit trail is whole: {} line{}; the SHA-256 of the last one is\n{}\n",
                                verdict.lines, verdict.lines == 1 ? "" : "s", verdict.head));
}

}  // namespace

void AddAudit(CLI::App& program, Invocation& invocation) {
  CLI::App& audit = *program.add_subcommand("audit", "Show or verify who has done what to the books");
  audit.require_subcommand(1);
  const auto options = std::make_shared<AuditOptions>();

  CLI::App& show = AddFileCommand(audit, "show", "Tell what was done, oldest first; for administrators and accountants",
                                  "audit show alder.company --by Anna --what journal --from 2024-12-01", options->file);
  show.add_option("--by", options->by, "What this user did");
  show.add_option("--what", options->what,
                  "What was done: company, import, journal, transaction, relation, rejected, "
                  "user, settings, realm or reminder, or more closely, such as journal.remove");
  show.add_option("--from", options->from, "First day, YYYY-MM-DD; open when left out");
  show.add_option("--to", options->to, "Last day, YYYY-MM-DD; open when left out");
  show.add_option("--txn", options->txn, "What was done to this transaction");
  show.add_flag("--csv", options->csv, "A row for each value that was changed, for a spreadsheet");
  invocation.When(show, [options](Invocation& run) { ShowAudit(run, *options); });

  CLI::App& verify = AddFileCommand(audit, "verify", "Check that no line was changed or taken out",
                                    "audit verify alder.company", options->file);
  invocation.When(verify, [options](Invocation& run) { VerifyAudit(run, *options); });
}

}  // namespace app
