#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Money.h"
#include "standalone/values/States.h"

namespace desk {

namespace {

Json ItemJson(const std::optional<ListItem>& item) {
  if (!item) return {};
  return {{"id", item->id}, {"name", item->name}};
}

Json AmountJson(const std::optional<standalone::Money>& amount) {
  return amount ? Json(standalone::FormatPlainAmount(amount->minorUnits)) : Json();
}

Json CurrencyJson(const std::optional<standalone::Money>& amount) {
  return amount && !amount->currency.empty() ? Json(amount->currency) : Json();
}

template <typename State>
Json StateJson(State state) {
  return {{"state", standalone::StateName(state)}, {"stateNumber", static_cast<std::int16_t>(state)}};
}

}  // namespace

Json JsonOf(standalone::RelationState state) {
  return StateJson(state);
}

Json JsonOf(standalone::TransactionState state) {
  return StateJson(state);
}

Json JsonOf(standalone::BookedState state) {
  return {{"state", standalone::StateName(state)},
          {"stateNumber", static_cast<std::int16_t>(state.number)},
          {"ofBefore", state.ofBefore}};
}

Json JsonOf(const Account& account) {
  return {{"id", account.id},
          {"name", account.name},
          {"type", standalone::AccountTypeName(account.type)},
          {"typeNumber", account.type},
          {"special", account.specialKind},
          {"deleted", account.deleted}};
}

Json JsonOf(const Name& name) {
  return {{"id", name.id}, {"name", name.name}, {"kind", name.kind}};
}

Json JsonOf(const Relation& relation) {
  Json json{{"id", relation.id}, {"realm", relation.realm}, {"partner", relation.partner}, {"type", relation.type}};
  json.update(JsonOf(relation.state));
  json["dueFrom"] = ItemJson(relation.dueFrom);
  json["dueTo"] = ItemJson(relation.dueTo);
  json["revision"] = relation.revision;
  json["createdAt"] = standalone::FormatUtc(relation.createdAt);
  json["changedAt"] = standalone::FormatUtc(relation.changedAt);
  return json;
}

Json JsonOf(const IntercompanyLine& line) {
  Json json{{"transaction", line.txnId},
            {"line", line.lineId},
            {"type", standalone::TransactionTypeName(line.type)},
            {"typeNumber", line.type},
            {"date", line.date ? Json(standalone::FormatIsoDate(*line.date)) : Json()},
            {"realm", line.realm},
            {"partner", line.partner},
            {"name", ItemJson(line.name)},
            {"memo", line.memo},
            {"account", ItemJson(line.account)},
            {"otherAccount", ItemJson(line.otherAccount)},
            {"amount", AmountJson(line.amount)},
            {"currency", CurrencyJson(line.amount)}};
  json.update(JsonOf(line.state));
  json["requestId"] = line.requestId;
  return json;
}

Json JsonOf(const Rejection& rejection) {
  Json json{{"type", standalone::TransactionTypeName(rejection.type)}, {"typeNumber", rejection.type}};
  json.update(JsonOf(rejection.state));
  json["realm"] = rejection.realm;
  json["partner"] = rejection.partner;
  json["requestId"] = rejection.requestId;
  json["amount"] = AmountJson(rejection.amount);
  json["currency"] = CurrencyJson(rejection.amount);
  json["writtenAmount"] = rejection.writtenAmount;
  json["partnerTransaction"] = rejection.partnerTxnId;
  return json;
}

}  // namespace desk
