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
  return amount ? Json(standalone::FormatPlainAmount(*amount)) : Json();
}

Json CurrencyJson(const std::optional<standalone::Money>& amount) {
  return amount && !amount->currency.empty() ? Json(amount->currency) : Json();
}

// 0 is no number.
Json NumberJson(std::int32_t number) {
  return number != 0 ? Json(number) : Json();
}

Json ItemJson(const ListItem& item) {
  return {{"id", NumberJson(item.id)}, {"name", item.name}};
}

Json LineJson(const RecordedLine& line) {
  Json json{{"line", NumberJson(line.lineId)},
            {"account", ItemJson(line.account)},
            {"amount", AmountJson(line.amount)},
            {"currency", CurrencyJson(line.amount)},
            {"memo", line.memo},
            {"realm", line.partners ? Json(line.partners->realm) : Json()},
            {"partner", line.partners ? Json(line.partners->partner) : Json()}};
  json.update(line.partners ? desk::JsonOf(line.partners->state)
                            : Json{{"state", nullptr}, {"stateNumber", nullptr}, {"ofBefore", nullptr}});
  const bool hasRequest = line.partners && !line.partners->requestId.empty();
  json["requestId"] = hasRequest ? Json(line.partners->requestId) : Json();
  return json;
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
          {"number", account.number.empty() ? Json() : Json(account.number)},
          {"type", standalone::AccountTypeName(account.type)},
          {"typeNumber", account.type},
          {"special", account.specialKind},
          {"deleted", account.deleted}};
}

Json JsonOf(const Name& name) {
  return {{"id", name.id}, {"name", name.name}, {"kind", name.kind}};
}

Json JsonOf(const Lookalikes& lookalikes) {
  Json pairs = Json::array();
  for (const Lookalikes::Pair& pair : lookalikes.first) pairs.push_back({{"name", pair.name}, {"other", pair.other}});
  return {{"list", lookalikes.list == Lookalikes::List::kAccounts ? "accounts" : "names"},
          {"count", lookalikes.count},
          {"first", pairs}};
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

Json JsonOf(const RecordedTransaction& transaction) {
  const auto type = static_cast<std::int16_t>(transaction.type);
  Json lines = Json::array();
  for (const RecordedLine& line : transaction.lines) lines.push_back(LineJson(line));
  return {{"transaction", NumberJson(transaction.txnId)},
          {"type", standalone::TransactionTypeName(type)},
          {"typeNumber", type},
          {"date", standalone::FormatIsoDate(transaction.date)},
          {"name", transaction.name ? ItemJson(*transaction.name) : Json()},
          {"memo", transaction.memo},
          {"documentNumber", transaction.documentNumber},
          {"lines", lines},
          {"attachments", transaction.attachments}};
}

Json JsonOf(const ChangedAttachments& changed) {
  const auto type = static_cast<std::int16_t>(changed.type);
  return {{"transaction", changed.txnId},
          {"type", standalone::TransactionTypeName(type)},
          {"typeNumber", type},
          {"attachments", changed.attachments}};
}

Json JsonOf(const ReversedTransaction& reversed) {
  Json toTell = Json::array();
  for (const PartnersPart& part : reversed.toTell) {
    toTell.push_back({{"realm", part.realm}, {"partner", part.partner}, {"requestId", part.requestId}});
    toTell.back().update(JsonOf(part.state));
  }
  return {{"transaction", reversed.txnId}, {"reversal", JsonOf(reversed.reversal)}, {"toTell", toTell}};
}

Json JsonOf(const CorrectedTransaction& corrected) {
  Json json = JsonOf(corrected.reversed);
  json["correction"] = JsonOf(corrected.correction);
  return json;
}

Json JsonOf(const MovedExpense& moved) {
  return {{"transaction", moved.txnId},
          {"from", ItemJson(moved.from)},
          {"to", ItemJson(moved.to)},
          {"move", JsonOf(moved.move)}};
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
