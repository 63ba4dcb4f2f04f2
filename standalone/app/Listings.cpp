#include "standalone/app/Listings.h"

#include <fmt/format.h>

#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Money.h"

namespace app {

namespace {

// A journal entry, above all that of a partner's request, is called by its line's memo.
std::string NameText(const desk::IntercompanyLine& line) {
  if (line.type == kTxnTypeJournalEntry && !line.memo.empty()) return line.memo;
  return line.name ? line.name->name : "";
}

std::vector<std::string> CellsOf(const desk::IntercompanyLine& line) {
  return {line.date ? standalone::FormatIsoDate(*line.date) : "",
          standalone::TransactionTypeName(line.type),
          std::to_string(line.txnId),
          std::to_string(line.lineId),
          line.partner,
          NameText(line),
          AccountText(line.account),
          AccountText(line.otherAccount),
          line.amount ? standalone::FormatAmount(*line.amount) : "",
          line.amount ? line.amount->currency : "",
          standalone::MarkedStateName(line.state),
          line.requestId};
}

}  // namespace

std::string AccountText(const std::optional<desk::ListItem>& account) {
  if (!account) return {};
  return account->name.empty() ? fmt::format("account {}, which does not exist", account->id) : account->name;
}

Table LinesTable(const std::vector<desk::IntercompanyLine>& lines) {
  using enum Importance;
  Table table({{.title = "Date", .fit = Fit::kWhole},
               {.title = "Type", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "Txn", .align = Align::kRight},
               {.title = "Line", .align = Align::kRight, .importance = kDetail},
               {.title = "Partner"},
               {.title = "Name", .importance = kMajor},
               {.title = "Account", .importance = kMajor},
               {.title = "Liability account", .importance = kDetail},
               {.title = "Amount", .align = Align::kRight},
               {.title = "Cur", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "State", .fit = Fit::kWhole},
               {.title = "Request", .importance = kDetail, .fit = Fit::kWhole}});
  for (const desk::IntercompanyLine& line : lines) table.Add(CellsOf(line));
  return table;
}

Table RelationsTable(const std::vector<desk::Relation>& relations) {
  Table table({{.title = "Id", .align = Align::kRight, .importance = Importance::kDetail},
               {.title = "Realm", .importance = Importance::kMajor, .fit = Fit::kWhole},
               {.title = "Partner"},
               {.title = "State", .fit = Fit::kWhole},
               {.title = "Due from", .importance = Importance::kMinor},
               {.title = "Due to", .importance = Importance::kMinor}});
  for (const desk::Relation& relation : relations) {
    table.Add({std::to_string(relation.id), relation.realm, relation.partner, standalone::StateName(relation.state),
               AccountText(relation.dueFrom), AccountText(relation.dueTo)});
  }
  return table;
}

std::string ToTellText(const std::vector<desk::PartnersPart>& parts) {
  std::string text;
  for (const desk::PartnersPart& part : parts) {
    text += fmt::format("{} (realm {}) has it in its books and is sent nothing; tell it.\n", part.partner, part.realm);
  }
  return text;
}

}  // namespace app
