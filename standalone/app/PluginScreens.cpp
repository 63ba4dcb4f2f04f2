#include "standalone/app/PluginScreens.h"

#include <fmt/format.h>

#include "standalone/app/Listings.h"
#include "standalone/app/PartnerTexts.h"
#include "standalone/app/terminal/Screen.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using standalone::Shown;

// A part of a screen; what could not be read is told instead of shown, as a screen has no caller to report to.
std::string PartText(const std::optional<desk::Refusal>& refusal, const Table& table, std::string_view whenEmpty) {
  if (refusal) return fmt::format("  status {}: {}\n", refusal->status.value_or(0), Shown(refusal->why));
  return table.Empty() ? std::string(whenEmpty) : table.Text();
}

std::string RelationsText(const desk::Part<desk::Relation>& relations, std::string_view whenEmpty) {
  return PartText(relations.refusal, RelationsTable(relations.items), whenEmpty);
}

// Nothing without one: most companies exchange nothing.
std::string RequestsText(const std::vector<desk::WaitingRequest>& requests, const std::string& file) {
  if (requests.empty()) return {};
  Table table({{.title = "Partner"},
               {.title = "Date", .fit = Fit::kWhole},
               {.title = "Type", .importance = Importance::kMinor, .fit = Fit::kWhole},
               {.title = "Name", .importance = Importance::kMajor},
               {.title = "Amount", .align = Align::kRight},
               {.title = "State", .importance = Importance::kMinor, .fit = Fit::kWhole},
               {.title = "Request", .importance = Importance::kMajor, .fit = Fit::kWhole}});
  for (const desk::WaitingRequest& request : requests) {
    table.Add({request.partner, standalone::FormatIsoDate(request.date), standalone::TransactionTypeName(request.type),
               request.name, standalone::FormatAmount(request.amount), std::string(NameOf(request.state)),
               request.requestId});
  }
  return fmt::format(
      "Requests of partners in the inbox:\n{}"
      "Book them or reject them: multientity inbox accept {} REQUEST --expense ACCOUNT, multientity inbox reject {} "
      "REQUEST\n",
      table.Text(), AsTyped(file), AsTyped(file));
}

std::string PartnersToLookAfterText(const std::vector<desk::PairedPartner>& partners, const std::string& file) {
  if (partners.empty()) return {};
  std::string text = "Partners to look after:\n";
  for (const desk::PairedPartner& partner : partners) {
    const NextStep next = NextStepWith(partner, file);
    text += fmt::format("  {}: {}\n", Shown(partner.name), next.why);
    for (const std::string& outstanding : partner.outstanding) {
      text += fmt::format("    outstanding: {}\n", Shown(outstanding));
    }
    if (!next.toDo.empty()) text += fmt::format("    {}\n", next.toDo);
  }
  return text;
}

struct ScreenText {
  const std::string& file;

  std::string operator()(const desk::PendingWork& pending) const {
    return fmt::format(
        "Intercompany transactions that wait for this company's answer:\n{}"
        "Relations that wait for an answer:\n{}{}{}",
        PartText(pending.lines.refusal, LinesTable(pending.lines.items), "  None that this user may see.\n"),
        RelationsText(pending.relations, "  None.\n"), RequestsText(pending.requests, file),
        PartnersToLookAfterText(pending.partners, file));
  }
  std::string operator()(const desk::RelationsAfterRealmReset& after) const {
    return fmt::format(
        "The company file remembers the realm id {}. Is the other one right? Agree with each partner on\n"
        "these relations, then have it remembered: multientity realm set {} --realm REALM\n{}",
        Shown(after.rememberedRealm.value_or("none")), Shown(file),
        RelationsText(after.relations, "  No relations.\n"));
  }
  std::string operator()(const desk::RelationSetUp& setUp) const {
    return fmt::format(
        "No relation with a partner company is established:\n{}"
        "To set one up, choose two accounts that are free: multientity accounts {} --free\n"
        "and relate the companies: multientity relation create {} --realm REALM --partner NAME \\\n"
        "    --due-from ACCOUNT --due-to ACCOUNT\n",
        RelationsText(setUp.relations, "  No relations.\n"), Shown(file), Shown(file));
  }
};

}  // namespace

void ShowPluginScreen(const Screen& screen, const std::string& file, std::string_view url,
                      const desk::PluginScreen& shown) {
  Json event = {{"event", "command-run"}, {"url", url}};
  event.update(desk::JsonOf(shown));
  screen.Tell(event, fmt::format("Opened {}\n{}", url, std::visit(ScreenText{file}, shown)));
}

}  // namespace app
