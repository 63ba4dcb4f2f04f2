#include "standalone/app/PluginViews.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Preferences.h"
#include "standalone/app/Company.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/terminal/Screen.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct View {
  Json json;
  std::string text;
};

// A part of a view; what could not be read is told instead of shown, as a view has no caller to report to.
std::string PartText(Request request, MEStatusCode status, const Table& table, std::string_view whenEmpty) {
  if (status != MEStatusSuccess) {
    return fmt::format("  status {}: {}\n", static_cast<int>(status), MeaningOf(request, status));
  }
  return table.Empty() ? std::string(whenEmpty) : table.Text();
}

MEStatusCode ReadRelations(Company& company, std::vector<RelationView>& views) {
  std::vector<DBMultiEntityRelation> rows;
  const MEStatusCode status = MultiEntityDriver::GetRelationsList(rows);
  if (status != MEStatusSuccess) return status;
  for (const DBMultiEntityRelation& row : rows) views.push_back(ViewOf(company, row));
  return status;
}

View PendingTransactions(Company& company) {
  std::vector<METxnInfo> entries;
  const MEStatusCode listed = MultiEntityDriver::GetListOfTxnTargetEntries(entries, NullDate(), NullDate());
  std::erase_if(entries, [](const METxnInfo& entry) { return !standalone::WaitsForAnswer(entry.state); });
  const Listing transactions = ListEntries(entries);
  std::vector<RelationView> views;
  const MEStatusCode read = ReadRelations(company, views);
  std::erase_if(views, [](const RelationView& view) { return view.row.state != MEStatePending; });
  const Listing relations = ListRelationViews(views);
  return {
      {{"view", "pending-transactions"},
       {"status", listed},
       {"transactions", transactions.json},
       {"relations", relations.json}},
      fmt::format("Intercompany transactions that wait for this company's answer:\n{}"
                  "Relations that wait for an answer:\n{}",
                  PartText(Request::kListTransactions, listed, transactions.table, "  None that this user may see.\n"),
                  PartText(Request::kReadRelations, read, relations.table, "  None.\n"))};
}

View RelationsAfterRealmReset(Company& company) {
  const auto remembered = company.Host().Preferences().Find(kRealmIdPreference);
  std::vector<RelationView> views;
  const MEStatusCode read = ReadRelations(company, views);
  const Listing relations = ListRelationViews(views);
  const std::string file = standalone::PathText(company.Host().CompanyFilePath());
  return {{{"view", "relations-after-realm-reset"},
           {"status", read},
           {"remembered", remembered ? Json(*remembered) : Json()},
           {"relations", relations.json}},
          fmt::format("The company file remembers the realm id {}. Is the other one right? Agree with each partner on\n"
                      "these relations, then have it remembered: multientity realm set {} --realm REALM\n{}",
                      remembered.value_or("none"), file,
                      PartText(Request::kReadRelations, read, relations.table, "  No relations.\n"))};
}

View RelationSetUp(Company& company) {
  std::vector<RelationView> views;
  const MEStatusCode read = ReadRelations(company, views);
  const Listing relations = ListRelationViews(views);
  const std::string file = standalone::PathText(company.Host().CompanyFilePath());
  return {{{"view", "relation-set-up"}, {"status", read}, {"relations", relations.json}},
          fmt::format("No relation with a partner company is established:\n{}"
                      "To set one up, choose two accounts that are free: multientity accounts {} --free\n"
                      "and relate the companies: multientity relation create {} --realm REALM --partner NAME \\\n"
                      "    --due-from ACCOUNT --due-to ACCOUNT\n",
                      PartText(Request::kReadRelations, read, relations.table, "  No relations.\n"), file, file)};
}

View ViewFor(Company& company, standalone::PluginView view) {
  switch (view) {
    case standalone::PluginView::kPendingTransactions:
      return PendingTransactions(company);
    case standalone::PluginView::kRelationsAfterRealmReset:
      return RelationsAfterRealmReset(company);
    case standalone::PluginView::kRelationSetUp:
      return RelationSetUp(company);
  }
  return {};
}

}  // namespace

void ShowPluginView(Company& company, const Screen& screen, standalone::PluginView view, std::string_view url) {
  const View shown = company.Read([&] { return ViewFor(company, view); });
  Json event = {{"event", "command-run"}, {"url", url}};
  event.update(shown.json);
  screen.Tell(event, fmt::format("Opened {}\n{}", url, shown.text));
}

}  // namespace app
