#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/ReportTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/AuditCommand.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct ShowOptions {
  std::string file;
  std::string txn;
  PeriodOptions trail;
};

std::string HeaderText(const desk::ShownTransaction& shown) {
  std::string text = fmt::format("{} {}\n", standalone::TransactionTypeName(shown.type), shown.txnId);
  const auto add = [&text](const char* what, const std::string& value) {
    if (!value.empty()) text += fmt::format("  {:<10} {}\n", what, standalone::Shown(value));
  };
  add("Date", standalone::FormatIsoDate(shown.date));
  add("Name", shown.name ? shown.name->name : "");
  add("Number", shown.documentNumber);
  add("Memo", shown.memo);
  add("Confirmed", standalone::YesOrNo(shown.confirmed));
  add("Currency", shown.currency.code);
  return text;
}

// What the request does to that of an earlier line.
std::string EarlierText(const desk::ShownLine::Request& request) {
  if (request.reverses) return fmt::format("reverses line {}", *request.reverses);
  return request.corrects ? fmt::format("corrects line {}", *request.corrects) : "";
}

Table ShownLinesTable(const desk::ShownTransaction& shown) {
  using enum Importance;
  Table table({{.title = "Line", .align = Align::kRight, .importance = kMinor},
               {.title = "Number", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "Account"},
               {.title = "Debit", .align = Align::kRight},
               {.title = "Credit", .align = Align::kRight},
               {.title = "Memo", .importance = kMinor},
               {.title = "Partner", .importance = kMajor},
               {.title = "State", .importance = kMajor, .fit = Fit::kWhole},
               {.title = "Request", .importance = kDetail, .fit = Fit::kWhole},
               {.title = "Earlier", .importance = kDetail, .fit = Fit::kWhole}});
  for (const desk::ShownLine& line : shown.lines) {
    const desk::ShownLine::Request* const request = line.request ? &*line.request : nullptr;
    table.Add({std::to_string(line.lineId), line.account.number, line.account.name,
               line.amount < 0 ? "" : AmountText(shown.currency, line.amount),
               line.amount < 0 ? AmountText(shown.currency, -line.amount) : "", line.memo,
               request != nullptr ? request->partner : "",
               request != nullptr ? standalone::MarkedStateName(request->state) : "",
               request != nullptr ? request->id : "", request != nullptr ? EarlierText(*request) : ""});
  }
  return table;
}

std::string LinkText(const desk::ShownLink& link) {
  std::string how(desk::NameOf(link));
  for (char& c : how) {
    if (c == '-') c = ' ';
  }
  return fmt::format("{} {}\n", how, link.otherTxnId);
}

std::string AboutIt(const desk::ShownTransaction& shown) {
  std::string text;
  for (const desk::ShownLink& link : shown.links) text += LinkText(link);
  for (const std::string& reference : shown.attachments)
    text += fmt::format("attached: {}\n", standalone::Shown(reference));
  return text.empty() ? text : '\n' + text;
}

std::string TrailText(const desk::ShownTransaction& shown, const desk::Period& trail) {
  if (!shown.audit) return "\nThe audit trail is shown to administrators and accountants.\n";
  const std::string days = PeriodText(trail).empty() ? "" : ' ' + PeriodText(trail);
  if (shown.audit->empty()) return fmt::format("\nThe audit trail{} does not tell of it.\n", days);
  std::string text = fmt::format("\nThe audit trail{}:\n", days);
  for (const desk::AuditedDeed& deed : *shown.audit) text += DeedLine(deed);
  return text;
}

constexpr std::array kShownColumns{"transaction",
                                   "type",
                                   "typeNumber",
                                   "date",
                                   "name.id",
                                   "name.name",
                                   "documentNumber",
                                   "memo",
                                   "confirmed",
                                   "line",
                                   "account.id",
                                   "account.number",
                                   "account.name",
                                   "amount",
                                   "lineMemo",
                                   "request.realm",
                                   "request.partner",
                                   "request.requestId",
                                   "request.state",
                                   "request.stateNumber",
                                   "request.ofBefore",
                                   "request.reversesLine",
                                   "request.correctsLine",
                                   "currency",
                                   "reverses",
                                   "reversedBy",
                                   "corrects",
                                   "correctedBy",
                                   "attachments",
                                   "moves",
                                   "movedBy"};

// The transactions to which this one is linked in that way.
Json LinkedBy(const desk::ShownTransaction& shown, desk::ShownLink::Kind kind, bool isLater) {
  Json linked = Json::array();
  for (const desk::ShownLink& link : shown.links) {
    if (link.kind == kind && link.isLater == isLater) linked.push_back(link.otherTxnId);
  }
  return linked;
}

// One to a line, as references have blanks.
std::string AttachmentLines(const desk::ShownTransaction& shown) {
  std::string lines;
  for (const std::string& reference : shown.attachments) lines.append(lines.empty() ? "" : "\n").append(reference);
  return lines;
}

// Each line with what its transaction shows.
Json ShownRows(const desk::ShownTransaction& shown) {
  using enum desk::ShownLink::Kind;
  const Json json = desk::JsonOf(shown);
  const Json links{{"reverses", LinkedBy(shown, kReverses, /*isLater=*/true)},
                   {"reversedBy", LinkedBy(shown, kReverses, /*isLater=*/false)},
                   {"corrects", LinkedBy(shown, kCorrects, /*isLater=*/true)},
                   {"correctedBy", LinkedBy(shown, kCorrects, /*isLater=*/false)},
                   {"attachments", AttachmentLines(shown)},
                   {"moves", LinkedBy(shown, kMoves, /*isLater=*/true)},
                   {"movedBy", LinkedBy(shown, kMoves, /*isLater=*/false)}};
  Json rows = Json::array();
  for (Json row : json.at("lines")) {
    row["lineMemo"] = row.at("memo");
    for (const char* const key :
         {"transaction", "type", "typeNumber", "date", "name", "documentNumber", "memo", "confirmed", "currency"}) {
      row[key] = json.at(key);
    }
    row.update(links);
    rows.push_back(std::move(row));
  }
  return rows;
}

void ShowTransaction(Invocation& invocation, const ShowOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  const desk::Period trail = PeriodOf(options.trail);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ShownTransaction shown = desk::ShowTransaction(company, txnId, trail);
  invocation.ReportList(
      invocation.options.csv ? Json{{"rows", ShownRows(shown)}} : desk::JsonOf(shown), kShownColumns,
      HeaderText(shown) + '\n' + ShownLinesTable(shown).Text() + AboutIt(shown) + TrailText(shown, trail));
}

}  // namespace

void AddShowTransaction(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App& command = AddFileCommand(program, "show", "Show a bill, check or journal entry with all that belongs to it",
                                     "show alder.company 12", options->file);
  command.add_option("TXN", options->txn, "Its id, as the lists have it")->required();
  command.add_option("--from", options->trail.from,
                     "First day of what the audit trail tells of it, YYYY-MM-DD; open when left out");
  command.add_option("--to", options->trail.to, "Last day of that, YYYY-MM-DD; open when left out");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ShowTransaction(run, *options); });
}

}  // namespace app
