#include <algorithm>
#include <iterator>
#include <tuple>

#include "faults/Scenario.h"

namespace faults {

namespace {

Company* companyOfTheBridge = nullptr;

unsigned char IsSybaseAccountant() {
  const bool failed = companyOfTheBridge->host.Call("IsSybaseAccountant").has_value();
  return failed ? 0 : companyOfTheBridge->accountant;
}

std::int32_t NeedDataSyncUp() {
  const bool failed = companyOfTheBridge->host.Call("NeedDataSyncUp").has_value();
  return failed ? 0 : companyOfTheBridge->syncNeed;
}

// A field's text also when the field was spoiled and has no NUL.
template <std::size_t kWidth>
std::string_view Field(const char (&field)[kWidth]) {
  return {field, static_cast<std::size_t>(std::ranges::find(field, '\0') - field)};
}

template <class... Parts>
std::string Joined(const Parts&... parts) {
  std::string text;
  ((text += (text.empty() ? "" : " ") + call_text::Of(parts)), ...);
  return text;
}

std::string Of(const DBMultiEntityRelation& row) {
  return Joined("relation", row.relationId, Field(row.realmId), Field(row.partnerName), row.relationType, row.state,
                row.dueFromAccountId, row.dueToAccountId, row.revision);
}

std::string Of(const DBMultiEntityTransaction& row) {
  return Joined("transaction", row.txnId, row.targetId, row.relationId, Field(row.requestId), row.txnType, row.state);
}

std::string Of(const DBMultiEntityRejectedTxnReceiver& row) {
  return Joined("rejected", Field(row.requestId), row.txnType, row.relationId, Field(row.amount),
                Field(row.partnerTxnId));
}

std::string Of(const METxnInfo& entry) {
  return Joined("entry", entry.txnId, entry.targetId, entry.txnType, entry.state, entry.realmId, entry.partnerName,
                entry.requestId, entry.amount, entry.currencyCode, "name", entry.txnName, "accounts",
                entry.billCheckAccountName, entry.liabilityAccountName, entry.entryAccountName, entry.txnDate);
}

std::string Of(const MERejectedTxnInfo& entry) {
  return Joined("rejected", entry.txnType, entry.state, entry.realmId, entry.partnerName, entry.requestId,
                entry.currencyCode, entry.amount, entry.partnerTxnId);
}

template <class Rows>
void Append(Texts& texts, const Rows& rows) {
  std::ranges::transform(rows, std::back_inserter(texts), [](const auto& row) { return Of(row); });
}

}  // namespace

Company::Company() {
  companyOfTheBridge = this;
  host.journal.removalUnderWay = MultiEntityDriver::GetGJEDeletionDueToFDPFailure;
  host.platform.Provide("AddinBridge.DLL", "IsSybaseAccountant", &IsSybaseAccountant);
  host.platform.Provide("AddinBridge.DLL", "NeedDataSyncUp", &NeedDataSyncUp);
  host.platform.now.wHour = 8;
  host.values.values = {{{"MultiEntity", "InitialDelayInSeconds"}, "900"}, {{"MultiEntity", "HoursToLaunchDay"}, "10"}};
  host.databasePreferences.values = {{"MERealmId", "9130"}};
  host.preferences.homeCurrency = "EUR";
  host.permissions.administrator = true;
  host.chart.accounts = {{11, {.name = "Due from North", .type = KrEnumerations::kOtherCurrentAsset}},
                         {12, {.name = "Due to North", .type = KrEnumerations::kOtherCurrentLiability}},
                         {13, {.name = "Due from South", .type = KrEnumerations::kOtherCurrentAsset}},
                         {14, {.name = "Due to South", .type = KrEnumerations::kOtherCurrentLiability}},
                         {15, {.name = "Rent", .type = KrEnumerations::kExpense}}};
  host.names.names = {
      {31, {.text = "Top"}}, {32, {.text = "Mid", .parent = 31}}, {33, {.text = "Child", .parent = 32}}};
  host.store.relations = {RelationRow(
      {.relationId = 5, .realmId = "9130", .partnerName = "North Ltd", .dueFromAccountId = 11, .dueToAccountId = 12})};
  host.lines.lines = {{101,
                       {.txnId = 10,
                        .txnType = kTxnTypeBill,
                        .date = {2024, 3, 1},
                        .minorUnits = 125050,
                        .accountName = "Rent",
                        .nameId = 33}},
                      {301,
                       {.txnId = 30,
                        .txnType = kTxnTypeJournalEntry,
                        .date = {2024, 3, 2},
                        .minorUnits = 700,
                        .accountName = "Office",
                        .memo = "March",
                        .nameId = 31}},
                      {302,
                       {.txnId = 30,
                        .txnType = kTxnTypeJournalEntry,
                        .date = {2024, 3, 2},
                        .minorUnits = -700,
                        .accountName = "Due to North",
                        .memo = "March",
                        .nameId = 31}}};
  host.store.transactions = {
      TransactionRow({.txnId = 10, .relationId = 5, .targetId = 101, .requestId = "bill-request", .txnType = 9}),
      TransactionRow({.txnId = 30, .relationId = 5, .targetId = 301, .requestId = "entry-request", .txnType = 8})};
  host.store.rejected = {RejectedRow({.requestId = "rejected-bill",
                                      .txnType = 9,
                                      .relationId = 5,
                                      .amount = "1250.50",
                                      .partnerTxnId = "their-bill"}),
                         RejectedRow({.requestId = "rejected-check",
                                      .txnType = 3,
                                      .relationId = 5,
                                      .amount = "7",
                                      .partnerTxnId = "their-check"})};
  host.queries.rows = {{.selection = 4, .txnId = 10, .dates = {{2, {2024, 3, 1}}}},
                       {.selection = 4, .txnId = 30, .dates = {{2, {2024, 3, 2}}}}};
}

Company::~Company() {
  EXPECT_EQ(host.platform.LoadedLibraries(), 0U) << "left loaded";
  companyOfTheBridge = nullptr;
}

void AddACheck(Company& company) {
  company.host.lines.lines[201] = {.txnId = 20,
                                   .txnType = kTxnTypeCheck,
                                   .date = {2024, 3, 3},
                                   .minorUnits = 4200,
                                   .accountName = "Rent",
                                   .nameId = 33};
  company.host.store.transactions.push_back(TransactionRow(
      {.txnId = 20, .relationId = 5, .targetId = 201, .requestId = "check-request", .txnType = kTxnTypeCheck}));
}

std::string Text(bool answer) {
  return answer ? "true" : "false";
}

std::string Text(MEStatusCode status) {
  return std::to_string(static_cast<int>(status));
}

Texts Describe(const Results& results) {
  Texts texts{Of(results.relation), "txnId " + std::to_string(results.txnId)};
  Append(texts, results.relations);
  texts.insert(texts.end(), results.realmIds.begin(), results.realmIds.end());
  for (const auto& [recnum, names] : results.accounts) texts.push_back(Joined(recnum, names.first, names.second));
  std::ranges::sort(texts.end() - static_cast<std::ptrdiff_t>(results.accounts.size()), texts.end());
  for (const auto& [name, recnum] : results.accountsOfType) texts.push_back(Joined(recnum, name));
  Append(texts, results.entries);
  Append(texts, results.rejected);
  std::ranges::transform(results.txns, std::back_inserter(texts),
                         [](unsigned long txn) { return std::to_string(txn); });
  return texts;
}

Texts Describe(ScriptedHost& host) {
  Texts texts = host.CallsOf({"YesNoInfoMsgO", "KRMSG_MessageO", "KRWarnMsgWithTitle02", "ExecuteCommand"});
  Append(texts, host.store.relations);
  Append(texts, host.store.transactions);
  Append(texts, host.store.rejected);
  for (const auto& [recnum, account] : host.chart.accounts) {
    texts.push_back(Joined("account", recnum, account.name, account.type, account.deleted));
  }
  for (const auto& [id, name] : host.names.names) texts.push_back(Joined("name", id, name.text, name.parent));
  for (const auto& [id, line] : host.lines.lines) {
    texts.push_back(Joined("line", id, line.txnId, line.txnType, line.date, line.minorUnits, line.accountName,
                           line.memo, line.nameId));
  }
  for (const std::int32_t txnId : host.journal.confirmed) texts.push_back(Joined("confirmed", txnId));
  for (const auto& [key, value] : host.databasePreferences.values) texts.push_back(Joined("preference", key, value));
  for (const auto& [id, timer] : host.platform.timers) texts.push_back(Joined("timer", timer.milliseconds, "ms"));
  texts.push_back(Joined("queued", host.application.queue.size()));
  return texts;
}

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario> kScenarios = [] {
    std::vector<Scenario> all;
    for (auto&& some : {GateScenarios(), AccountScenarios(), RelationScenarios(), JournalScenarios(),
                        TransactionScenarios(), ListingScenarios(), RealmScenarios(), SchedulerScenarios()}) {
      all.insert(all.end(), some.begin(), some.end());
    }
    return all;
  }();
  return kScenarios;
}

}  // namespace faults
