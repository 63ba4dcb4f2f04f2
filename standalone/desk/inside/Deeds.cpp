#include "standalone/desk/inside/Deeds.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "standalone/books/RowFields.h"
#include "standalone/desk/inside/RelationRows.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Rights.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::AuditDeed;
using standalone::TransactionRange;
using standalone::YesOrNo;

// Null when there is none.
const std::string* ValueOf(const std::string& field, const Facts& facts) {
  const auto found = std::ranges::find(facts, field, &Facts::value_type::first);
  return found != facts.end() ? &found->second : nullptr;
}

std::string PartnerAndRealm(std::string_view partner, std::string_view realm) {
  return std::string(partner).append(" (").append(realm).append(")");
}

std::string ItemText(const std::optional<ListItem>& item) {
  if (!item) return {};
  return item->name.empty() ? "record " + std::to_string(item->id) : item->name;
}

std::string MoneyText(const standalone::Money& money) {
  std::string text = standalone::FormatPlainAmount(money);
  return money.currency.empty() ? text : text + ' ' + money.currency;
}

// Facts without a value are left out.
void Add(Facts& facts, std::string field, std::string value) {
  if (!value.empty()) facts.emplace_back(std::move(field), std::move(value));
}

void AddAttachments(Facts& facts, const std::vector<std::string>& attachments) {
  for (const std::string& attachment : attachments) Add(facts, "attachment", attachment);
}

Facts FactsOfAttachments(const std::vector<std::string>& attachments) {
  Facts facts;
  AddAttachments(facts, attachments);
  return facts;
}

// What is told of a line, and of the transaction around it.
constexpr std::size_t kMostFactsOfLine = 10;

void AddFactsOf(const IntercompanyLine& line, Facts& facts) {
  Add(facts, "partner", PartnerAndRealm(line.partner, line.realm));
  Add(facts, "request", line.requestId);
  if (line.date) Add(facts, "date", standalone::FormatIsoDate(*line.date));
  if (line.amount) Add(facts, "amount", MoneyText(*line.amount));
  Add(facts, "account", ItemText(line.account));
  Add(facts, "liability account", ItemText(line.otherAccount));
  Add(facts, "name", ItemText(line.name));
  Add(facts, "memo", line.memo);
  Add(facts, "state", standalone::MarkedStateName(line.state));
}

Facts FactsOf(const std::vector<IntercompanyLine>& lines, const std::string& memo) {
  Facts facts;
  facts.reserve(lines.size() * kMostFactsOfLine);
  if (std::ranges::count(lines, memo, &IntercompanyLine::memo) == 0) Add(facts, "entry memo", memo);
  for (const IntercompanyLine& line : lines) AddFactsOf(line, facts);
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

Facts FactsOf(const std::optional<standalone::Account>& account) {
  Facts facts;
  if (!account) return facts;
  Add(facts, "name", account->fullName);
  Add(facts, "number", account->number);
  Add(facts, "type", standalone::AccountTypeName(account->type));
  Add(facts, "deleted", YesOrNo(account->deleted));
  return facts;
}

Facts FactsOf(const std::optional<standalone::Name>& name) {
  Facts facts;
  if (!name) return facts;
  Add(facts, "name", name->fullName);
  Add(facts, "kind", standalone::NameKindText(name->kind));
  return facts;
}

template <typename Item>
AuditDeed DeedOfListed(std::string action, const char* what, const std::optional<Item>& before,
                       const std::optional<Item>& after, const CountBelow& below) {
  const Item& item = before ? *before : after.value();
  Facts now = FactsOf(after);
  if (below.second != 0) Add(now, below.first, std::to_string(below.second));
  return DeedOf(std::move(action), "the " + std::string(what) + ' ' + item.fullName + ", #" + std::to_string(item.id),
                FactsOf(before), std::move(now));
}

Facts FactsOf(const standalone::Settings& settings) {
  Facts facts;
  Add(facts, "company-name", settings.companyName);
  Add(facts, "home-currency", settings.homeCurrency);
  Add(facts, "decimals", std::to_string(settings.decimals.Count()));
  Add(facts, "multi-currency", YesOrNo(settings.multiCurrency));
  Add(facts, "sample-file", YesOrNo(settings.sampleFile));
  Add(facts, "accountants-copy", YesOrNo(settings.accountantsCopy));
  const bool isOpen = settings.closingDate == NullDate();
  Add(facts, "closing-date", isOpen ? "none" : standalone::FormatIsoDate(settings.closingDate));
  return facts;
}

std::string SubjectOf(std::int16_t txnType, std::int32_t txnId) {
  const std::string type = txnType == kTxnTypeJournalEntry ? "journal entry" : standalone::TransactionTypeName(txnType);
  return type + ' ' + std::to_string(txnId);
}

std::string SubjectOf(const IntercompanyLine& line) {
  return SubjectOf(line.type, line.txnId);
}

std::string LinkText(standalone::LinkKind kind) {
  switch (kind) {
    case standalone::LinkKind::kReverses:
      return "reverses";
    case standalone::LinkKind::kCorrects:
      return "corrects";
    case standalone::LinkKind::kMoves:
      break;
  }
  return "moves";
}

std::string RequestText(Work& work, const DBMultiEntityTransaction& row) {
  DBMultiEntityRelation relation{};
  work.Host().Relations().FindById(row.relationId, relation);
  const standalone::BookedState state{standalone::TransactionState{row.state},
                                      work.Host().Intercompany().IsOfBefore(row.txnId, row.targetId)};
  std::string text =
      " for " + PartnerAndRealm(standalone::Field(relation.partnerName), standalone::Field(relation.realmId)) +
      ", request " + std::string(standalone::Field(row.requestId)) + ", " + standalone::MarkedStateName(state);
  if (const auto earlier = work.Host().OwnRequests().EarlierOf(row.targetId)) {
    const bool reverses = earlier->kind == standalone::EarlierRequest::Kind::kReverses;
    text += std::string(reverses ? ", reverses" : ", corrects") + " that of line " + std::to_string(earlier->targetId);
  }
  return text;
}

std::string LineText(Work& work, std::int32_t txnId, const standalone::PostedLine& line) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  const standalone::Money amount{
      .minorUnits = line.amount, .currency = settings.homeCurrency, .decimals = settings.decimals};
  std::string text(work.Host().Accounts().FullNameOf(line.accountId).view());
  text += ' ' + MoneyText(amount);
  DBMultiEntityTransaction row{};
  if (work.Host().Intercompany().Find(txnId, line.id, row)) text += RequestText(work, row);
  if (!line.memo.empty()) text += ", memo " + line.memo;
  return text;
}

AuditDeed AboutEntry(AuditDeed deed, std::int32_t txnId) {
  deed.transactions = TransactionRange{.first = txnId, .last = txnId};
  return deed;
}

std::string SubjectOf(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row) {
  return "request " + std::string(standalone::Field(row.requestId)) + " of " +
         PartnerAndRealm(standalone::Field(partner.partnerName), standalone::Field(partner.realmId));
}

}  // namespace

AuditDeed DeedOf(std::string action, std::string subject, Facts before, Facts after) {
  AuditDeed deed{.action = std::move(action), .subject = std::move(subject), .transactions = {}, .changes = {}};
  deed.changes.reserve(before.size() + after.size());
  for (auto& [field, value] : before) {
    const std::string* const now = ValueOf(field, after);
    if (now == nullptr) {
      deed.changes.push_back({field, std::move(value), std::nullopt});
    } else if (*now != value) {
      deed.changes.push_back({field, std::move(value), *now});
    }
  }
  for (auto& [field, value] : after) {
    if (ValueOf(field, before) == nullptr) deed.changes.push_back({std::move(field), std::nullopt, std::move(value)});
  }
  return deed;
}

bool IsLink(std::string_view field) {
  using standalone::LinkKind;
  return field == LinkText(LinkKind::kReverses) || field == LinkText(LinkKind::kCorrects) ||
         field == LinkText(LinkKind::kMoves);
}

AuditDeed DeedOfRecording(const std::vector<IntercompanyLine>& lines, const std::string& memo) {
  return AboutEntry(DeedOf("journal.record", SubjectOf(lines.at(0)), {}, FactsOf(lines, memo)), lines.at(0).txnId);
}

AuditDeed DeedOfRemoval(const std::vector<IntercompanyLine>& lines, const std::string& memo,
                        const std::vector<std::string>& attachments) {
  Facts facts = FactsOf(lines, memo);
  AddAttachments(facts, attachments);
  return AboutEntry(DeedOf("journal.remove", SubjectOf(lines.at(0)), std::move(facts), {}), lines.at(0).txnId);
}

Facts FactsOfTransaction(Work& work, std::int32_t txnId) {
  const standalone::TransactionHeader header = work.Host().Transactions().FindHeader(txnId).value();
  Facts facts;
  Add(facts, "date", standalone::FormatIsoDate(header.date));
  if (const auto name = work.Host().Names().Find(header.nameId)) Add(facts, "name", name->fullName);
  Add(facts, "document number", header.documentNumber);
  Add(facts, "memo", header.memo);
  for (const standalone::PostedLine& line : work.Host().Transactions().LinesOf(txnId)) {
    Add(facts, "line", LineText(work, txnId, line));
  }
  for (const standalone::TransactionLink& link : work.Host().Links().Of(txnId)) {
    if (link.txnId == txnId) Add(facts, LinkText(link.kind), std::to_string(link.earlierTxnId));
  }
  AddAttachments(facts, work.Host().Attachments().Of(txnId));
  return facts;
}

AuditDeed DeedOfPosting(Work& work, std::string action, std::int32_t txnId, const Facts& more) {
  const standalone::TransactionHeader header = work.Host().Transactions().FindHeader(txnId).value();
  Facts facts = FactsOfTransaction(work, txnId);
  facts.insert(facts.end(), more.begin(), more.end());
  return AboutEntry(DeedOf(std::move(action), SubjectOf(header.type, txnId), {}, std::move(facts)), txnId);
}

AuditDeed DeedOfTransactionRemoval(Work& work, std::int32_t txnId) {
  const standalone::TransactionHeader header = work.Host().Transactions().FindHeader(txnId).value();
  return AboutEntry(DeedOf("transaction.remove", SubjectOf(header.type, txnId), FactsOfTransaction(work, txnId), {}),
                    txnId);
}

AuditDeed DeedOfAttaching(const standalone::TransactionHeader& header, const std::vector<std::string>& attachments) {
  return AboutEntry(
      DeedOf("transaction.attach", SubjectOf(header.type, header.id), {}, FactsOfAttachments(attachments)), header.id);
}

AuditDeed DeedOfDetaching(const standalone::TransactionHeader& header, const std::vector<std::string>& attachments) {
  return AboutEntry(
      DeedOf("transaction.detach", SubjectOf(header.type, header.id), FactsOfAttachments(attachments), {}), header.id);
}

AuditDeed DeedOfState(const IntercompanyLine& line, standalone::BookedState now) {
  std::string subject = SubjectOf(line) + ", line " + std::to_string(line.lineId) + ", for " +
                        PartnerAndRealm(line.partner, line.realm) + ", request " + line.requestId;
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
  return DeedOf(action, "the relation with " + PartnerAndRealm(relation.partner, relation.realm), FactsOf(before),
                FactsOf(after));
}

AuditDeed DeedOfSaving(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row) {
  return DeedOf("rejected.save", SubjectOf(partner, row), {}, FactsOf(row));
}

AuditDeed DeedOfForgetting(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row) {
  return DeedOf("rejected.delete", SubjectOf(partner, row), FactsOf(row), {});
}

AuditDeed DeedOfAccount(std::string action, const std::optional<standalone::Account>& before,
                        const std::optional<standalone::Account>& after, const CountBelow& below) {
  return DeedOfListed(std::move(action), "account", before, after, below);
}

AuditDeed DeedOfName(std::string action, const std::optional<standalone::Name>& before,
                     const std::optional<standalone::Name>& after, const CountBelow& below) {
  return DeedOfListed(std::move(action), "name", before, after, below);
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
