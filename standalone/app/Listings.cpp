#include "standalone/app/Listings.h"

#include <fmt/format.h>

#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Dates.h"

namespace app {

namespace {

// A journal entry of a partner's request is called by its line's memo.
std::string NameText(const desk::IntercompanyLine& line) {
  if (line.type == kTxnTypeJournalEntry) return line.memo;
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
          line.amount ? standalone::FormatAmount(line.amount->minorUnits) : "",
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
  Table table({{"Date"},
               {"Type"},
               {"Txn", Align::kRight},
               {"Line", Align::kRight},
               {"Partner"},
               {"Name"},
               {"Account"},
               {"Liability account"},
               {"Amount", Align::kRight},
               {"Cur"},
               {"State"},
               {"Request"}});
  for (const desk::IntercompanyLine& line : lines) table.Add(CellsOf(line));
  return table;
}

Table RelationsTable(const std::vector<desk::Relation>& relations) {
  Table table({{"Id", Align::kRight}, {"Realm"}, {"Partner"}, {"State"}, {"Due from"}, {"Due to"}});
  for (const desk::Relation& relation : relations) {
    table.Add({std::to_string(relation.id), relation.realm, relation.partner, standalone::StateName(relation.state),
               AccountText(relation.dueFrom), AccountText(relation.dueTo)});
  }
  return table;
}

}  // namespace app
