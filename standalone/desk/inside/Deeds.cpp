#include "standalone/desk/inside/Deeds.h"

#include <algorithm>
#include <string_view>

#include "standalone/books/RowFields.h"
#include "standalone/desk/inside/RelationRows.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Rights.h"

namespace desk {

namespace {

using standalone::AuditDeed;
using standalone::TransactionRange;

std::optional<std::string> ValueOf(const std::string& field, const Facts& facts) {
  const auto found = std::ranges::find(facts, field, &Facts::value_type::first);
  if (found == facts.end()) return std::nullopt;
  return found->second;
}

const char* YesOrNo(bool value) {
  return value ? "yes" : "no";
}

std::string PartnerText(std::string_view partner, std::string_view realm) {
  return std::string(partner).append(" (").append(realm).append(")");
}

std::string ItemText(const std::optional<ListItem>& item) {
  if (!item) return {};
  return item->name.empty() ? "record " + std::to_string(item->id) : item->name;
}

std::string MoneyText(const standalone::Money& money) {
  std::string text = standalone::FormatPlainAmount(money.minorUnits);
  return money.currency.empty() ? text : text + ' ' + money.currency;
}

// Facts without a value are left out.
void Add(Facts& facts, std::string field, std::string value) {
  if (!value.empty()) facts.emplace_back(std::move(field), std::move(value));
}

Facts FactsOf(const IntercompanyLine& line) {
  Facts facts;
  Add(facts, "partner", PartnerText(line.partner, line.realm));
  Add(facts, "request", line.requestId);
  if (line.date) Add(facts, "date", standalone::FormatIsoDate(*line.date));
  if (line.amount) Add(facts, "amount", MoneyText(*line.amount));
  Add(facts, "account", ItemText(line.account));
  Add(facts, "liability account", ItemText(line.otherAccount));
  Add(facts, "name", ItemText(line.name));
  Add(facts, "memo", line.memo);
  Add(facts, "state", standalone::MarkedStateName(line.state));
  return facts;
}

Facts FactsOf(const std::vector<IntercompanyLine>& lines) {
  Facts facts;
  for (const IntercompanyLine& line : lines) {
    const Facts ofLine = FactsOf(line);
    facts.insert(facts.end(), ofLine.begin(), ofLine.end());
  }
  return facts;
}

Facts FactsOf(const std::optional<Relation>& relation) {
  Facts facts;
  if (!relation) return facts;
  Add(facts, "type", std::to_string(relation->type));
  Add(facts, "state", standalone::StateName(relation->state));
  Add(facts, "due from", ItemText(relation->dueFrom));
  Add(facts, "due to", ItemText(relation->dueTo));
  return facts;
}

Facts FactsOf(const DBMultiEntityRejectedTxnReceiver& row) {
  Facts facts;
  Add(facts, "type", standalone::TransactionTypeName(row.txnType));
  Add(facts, "amount", std::string(standalone::Field(row.amount)));
  Add(facts, "partner's id", std::string(standalone::Field(row.partnerTxnId)));
  return facts;
}

Facts FactsOf(const std::optional<standalone::User>& user) {
  Facts facts;
  if (!user) return facts;
  Add(facts, "administrator", YesOrNo(user->administrator));
  Add(facts, "accountant", YesOrNo(user->accountant));
  std::string rights;
  const auto add = [&rights](const std::string& right) {
    rights.append(rights.empty() ? "" : ", ").append(right);
  };
  for (const standalone::FeatureRight& right : user->featureRights) add(standalone::FeatureRightText(right));
  for (const standalone::ListRight& right : user->listRights) add(standalone::ListRightText(right));
  Add(facts, "rights", rights.empty() ? "none" : rights);
  return facts;
}

Facts FactsOf(const standalone::Settings& settings) {
  Facts facts;
  Add(facts, "company-name", settings.companyName);
  Add(facts, "home-currency", settings.homeCurrency);
  Add(facts, "multi-currency", YesOrNo(settings.multiCurrency));
  Add(facts, "sample-file", YesOrNo(settings.sampleFile));
  Add(facts, "accountants-copy", YesOrNo(settings.accountantsCopy));
  return facts;
}

std::string SubjectOf(const IntercompanyLine& line) {
  const std::string type =
      line.type == kTxnTypeJournalEntry ? "journal entry" : standalone::TransactionTypeName(line.type);
  return type + ' ' + std::to_string(line.txnId);
}

AuditDeed AboutEntry(AuditDeed deed, std::int32_t txnId) {
  deed.transactions = TransactionRange{.first = txnId, .last = txnId};
  return deed;
}

std::string SubjectOf(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row) {
  return "request " + std::string(standalone::Field(row.requestId)) + " of " +
         PartnerText(standalone::Field(partner.partnerName), standalone::Field(partner.realmId));
}

}  // namespace

AuditDeed DeedOf(std::string action, std::string subject, const Facts& before, const Facts& after) {
  AuditDeed deed{.action = std::move(action), .subject = std::move(subject), .transactions = {}, .changes = {}};
  for (const auto& [field, value] : before) {
    const std::optional<std::string> now = ValueOf(field, after);
    if (now != value) deed.changes.push_back({field, value, now});
  }
  for (const auto& [field, value] : after) {
    if (!ValueOf(field, before)) deed.changes.push_back({field, std::nullopt, value});
  }
  return deed;
}

AuditDeed DeedOfRecording(const std::vector<IntercompanyLine>& lines) {
  return AboutEntry(DeedOf("journal.record", SubjectOf(lines.at(0)), {}, FactsOf(lines)), lines.at(0).txnId);
}

AuditDeed DeedOfRemoval(const std::vector<IntercompanyLine>& lines) {
  return AboutEntry(DeedOf("journal.remove", SubjectOf(lines.at(0)), FactsOf(lines), {}), lines.at(0).txnId);
}

AuditDeed DeedOfState(const IntercompanyLine& line, standalone::BookedState now) {
  std::string subject = SubjectOf(line) + ", line " + std::to_string(line.lineId) + ", for " +
                        PartnerText(line.partner, line.realm) + ", request " + line.requestId;
  if (line.amount) subject += ", " + MoneyText(*line.amount);
  AuditDeed deed{.action = "transaction.state",
                 .subject = std::move(subject),
                 .transactions = {},
                 .changes = {{.field = "state",
                              .before = standalone::MarkedStateName(line.state),
                              .after = standalone::MarkedStateName(now)}}};
  return AboutEntry(std::move(deed), line.txnId);
}

std::optional<Relation> RelationInBooks(Work& work, const standalone::RealmId& realm) {
  DBMultiEntityRelation row{};
  if (!work.Host().Relations().Find(realm.Text(), row)) return std::nullopt;
  return RelationOf(work, row);
}

AuditDeed DeedOfRelation(const std::optional<Relation>& before, const std::optional<Relation>& after) {
  const Relation& relation = after ? *after : before.value();
  const char* const action = !before ? "relation.create" : !after ? "relation.delete" : "relation.update";
  return DeedOf(action, "the relation with " + PartnerText(relation.partner, relation.realm), FactsOf(before),
                FactsOf(after));
}

AuditDeed DeedOfSaving(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row) {
  return DeedOf("rejected.save", SubjectOf(partner, row), {}, FactsOf(row));
}

AuditDeed DeedOfForgetting(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row) {
  return DeedOf("rejected.delete", SubjectOf(partner, row), FactsOf(row), {});
}

AuditDeed DeedOfUser(const std::optional<standalone::User>& before, const std::optional<standalone::User>& after) {
  const char* const action = !before ? "user.add" : !after ? "user.remove" : "user.change";
  return DeedOf(action, "the user " + (after ? after->name : before.value().name), FactsOf(before), FactsOf(after));
}

AuditDeed DeedOfSettings(const standalone::Settings& before, const standalone::Settings& after) {
  return DeedOf("settings.change", "the settings", FactsOf(before), FactsOf(after));
}

AuditDeed DeedOfRealm(const std::optional<std::string>& before, const std::string& after) {
  return {.action = "realm.remember",
          .subject = "the company's realm id",
          .transactions = {},
          .changes = {{.field = "realm id", .before = before, .after = after}}};
}

}  // namespace desk
