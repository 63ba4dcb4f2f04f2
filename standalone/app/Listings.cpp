#include "standalone/app/Listings.h"

#include <fmt/format.h>

#include "standalone/app/Company.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/Times.h"
#include "standalone/values/AccountTypes.h"

namespace app {

namespace {

Json EntryJson(const METxnInfo& entry) {
  return {{"transaction", entry.txnId},
          {"line", entry.targetId},
          {"type", standalone::TransactionTypeName(entry.txnType)},
          {"typeNumber", entry.txnType},
          {"date", entry.txnDate.view()},
          {"realm", entry.realmId.view()},
          {"partner", entry.partnerName.view()},
          {"name", entry.txnName.view()},
          {"billCheckAccount", entry.billCheckAccountName.view()},
          {"entryAccount", entry.entryAccountName.view()},
          {"liabilityAccount", entry.liabilityAccountName.view()},
          {"amount", entry.amount.view()},
          {"currency", entry.currencyCode.view()},
          {"state", entry.state},
          {"stateText", TransactionStateText(entry.state)},
          {"requestId", entry.requestId.view()}};
}

std::vector<std::string> EntryCells(const METxnInfo& entry) {
  const auto text = [](const Util::TString& value) {
    return std::string(value.view());
  };
  return {text(entry.txnDate),
          standalone::TransactionTypeName(entry.txnType),
          std::to_string(entry.txnId),
          std::to_string(entry.targetId),
          text(entry.partnerName),
          text(entry.txnName),
          text(entry.billCheckAccountName.empty() ? entry.entryAccountName : entry.billCheckAccountName),
          text(entry.liabilityAccountName),
          text(entry.amount),
          text(entry.currencyCode),
          TransactionStateText(entry.state),
          text(entry.requestId)};
}

std::string AccountNameOf(Company& company, std::int32_t id) {
  if (id == 0) return {};
  const auto account = company.Host().Accounts().Find(id);
  return account ? account->fullName : fmt::format("account {}, which does not exist", id);
}

}  // namespace

Listing ListEntries(const std::vector<METxnInfo>& entries) {
  Listing listing{.table = Table({{"Date"},
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
                                  {"Request"}})};
  for (const METxnInfo& entry : entries) {
    listing.json.push_back(EntryJson(entry));
    listing.table.Add(EntryCells(entry));
  }
  return listing;
}

RelationView ViewOf(Company& company, const DBMultiEntityRelation& row) {
  return {row, AccountNameOf(company, row.dueFromAccountId), AccountNameOf(company, row.dueToAccountId)};
}

Json RelationJson(const RelationView& view) {
  const DBMultiEntityRelation& row = view.row;
  return {{"id", row.relationId},
          {"realm", row.realmId},
          {"partner", row.partnerName},
          {"type", row.relationType},
          {"state", row.state},
          {"stateText", StateText(row.state)},
          {"dueFromId", row.dueFromAccountId},
          {"dueFrom", view.dueFrom},
          {"dueToId", row.dueToAccountId},
          {"dueTo", view.dueTo},
          {"revision", row.revision},
          {"createdAt", UtcText(row.createdAt)},
          {"changedAt", UtcText(row.changedAt)}};
}

Listing ListRelationViews(const std::vector<RelationView>& views) {
  Listing listing{.table = Table({{"Id", Align::kRight}, {"Realm"}, {"Partner"}, {"State"}, {"Due from"}, {"Due to"}})};
  for (const RelationView& view : views) {
    listing.json.push_back(RelationJson(view));
    listing.table.Add({std::to_string(view.row.relationId), view.row.realmId, view.row.partnerName,
                       StateText(view.row.state), view.dueFrom, view.dueTo});
  }
  return listing;
}

}  // namespace app
