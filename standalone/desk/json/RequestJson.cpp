#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Money.h"

namespace desk {

namespace {

// Null for what was not said.
Json SaidJson(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

// A transaction of these books that there may be none of.
Json NumberOrNull(std::int32_t number) {
  return number == 0 ? Json() : Json(number);
}

Json RecordJson(const std::optional<ListItem>& record) {
  if (!record) return {};
  return {{"id", record->id}, {"name", record->name}};
}

Json EntryJson(const std::optional<EntryOfRequest>& entry) {
  if (!entry) return {};
  return {{"transaction", entry->txnId}, {"date", standalone::FormatIsoDate(entry->day)}};
}

Json EarlierJson(const InboxRequest& request, bool reverses) {
  return request.earlier && request.earlier->reverses == reverses ? Json(request.earlier->requestId) : Json();
}

Json RemarksJson(const std::vector<Remark>& remarks) {
  Json list = Json::array();
  for (const Remark& remark : remarks) {
    list.push_back({{"id", remark.id},
                    {"kind", remark.isDispute ? "dispute" : "note"},
                    {"by", remark.isOurs ? "us" : "partner"},
                    {"text", remark.text}});
  }
  return list;
}

Json DisputedJson(const DisputedRequests& disputed) {
  Json json = JsonOf(disputed.requests);
  json["toAnswer"] = disputed.toAnswer;
  return json;
}

}  // namespace

Json JsonOf(const Rule& rule) {
  return {{"id", rule.id},
          {"partner", rule.partner},
          {"realm", SaidJson(rule.realm)},
          {"name", SaidJson(rule.name)},
          {"hint", SaidJson(rule.hint)},
          {"memo", SaidJson(rule.memo)},
          {"account", RecordJson(rule.account)},
          {"bookedAs", RecordJson(rule.bookedAs)},
          {"learned", rule.isLearned},
          {"unfit", SaidJson(rule.unfit)}};
}

Json JsonOf(const WaitingRequest& request) {
  return {{"partner", request.partner},
          {"realm", request.realm},
          {"requestId", request.requestId},
          {"type", standalone::TransactionTypeName(request.type)},
          {"typeNumber", request.type},
          {"date", standalone::FormatIsoDate(request.date)},
          {"amount", standalone::FormatPlainAmount(request.amount)},
          {"currency", SaidJson(request.amount.currency)},
          {"name", request.name},
          {"state", NameOf(request.state)}};
}

Json JsonOf(const InboxRequest& request) {
  return {{"partner", request.partner},
          {"realm", request.realm},
          {"requestId", request.requestId},
          {"type", standalone::TransactionTypeName(request.type)},
          {"typeNumber", request.type},
          {"date", standalone::FormatIsoDate(request.date)},
          {"amount", standalone::FormatPlainAmount(request.amount)},
          {"currency", SaidJson(request.amount.currency)},
          {"documentNumber", request.document},
          {"name", request.name},
          {"memo", request.memo},
          {"hint", SaidJson(request.hint)},
          {"reverses", EarlierJson(request, true)},
          {"corrects", EarlierJson(request, false)},
          {"state", NameOf(request.state)},
          {"disputed", request.isDisputed},
          {"mark", SaidJson(request.mark)},
          {"reason", SaidJson(request.reason)},
          {"entry", EntryJson(request.entry)},
          {"entryBefore", EntryJson(request.entryBefore)},
          {"rule", request.rule ? JsonOf(*request.rule) : Json()},
          {"ruleMark", SaidJson(request.ruleMark)},
          {"remarks", RemarksJson(request.remarks)}};
}

Json JsonOf(const BookedRequest& booked) {
  Json json = JsonOf(booked.request);
  json["dateMoved"] = booked.isDateMoved;
  json["byRule"] = OrNull(booked.rule);
  return json;
}

Json JsonOf(const LeftRequest& left) {
  Json json = JsonOf(left.request);
  json["refusal"] = JsonOf(left.refusal);
  return json;
}

Json JsonOf(const OutboxRequest& request) {
  Json json{{"partner", request.partner},
            {"realm", request.realm},
            {"requestId", request.requestId},
            {"transaction", NumberOrNull(request.txnId)},
            {"line", NumberOrNull(request.lineId)},
            {"type", standalone::TransactionTypeName(request.type)},
            {"typeNumber", request.type},
            {"date", standalone::FormatIsoDate(request.date)},
            {"amount", standalone::FormatPlainAmount(request.amount)},
            {"currency", SaidJson(request.amount.currency)},
            {"name", request.name},
            {"memo", request.memo}};
  json.update(request.state ? JsonOf(*request.state)
                            : Json{{"state", nullptr}, {"stateNumber", nullptr}, {"ofBefore", nullptr}});
  json["sent"] = request.isSent;
  json["withdrawing"] = request.isWithdrawing;
  json["disputed"] = request.isDisputed;
  json["lost"] = request.isLost;
  json["reason"] = SaidJson(request.reason);
  json["mark"] = SaidJson(request.mark);
  json["remarks"] = RemarksJson(request.remarks);
  return json;
}

Json JsonOf(const LeftOut& left) {
  Json json = JsonOf(left.request);
  json["refusal"] = JsonOf(left.refusal);
  return json;
}

Json JsonOf(const RequestsOfAKind& requests) {
  return {{"count", requests.count},
          {"amount", requests.sum ? Json(standalone::FormatPlainAmount(*requests.sum)) : Json()},
          {"currency", requests.sum ? SaidJson(requests.sum->currency) : Json()},
          {"oldest", requests.oldest ? Json(standalone::FormatIsoDate(*requests.oldest)) : Json()}};
}

Json JsonOf(const OutboxStatus& outbox) {
  return {{"entered", JsonOf(outbox.entered)},         {"unanswered", JsonOf(outbox.unanswered)},
          {"disputed", DisputedJson(outbox.disputed)}, {"withdrawing", JsonOf(outbox.withdrawing)},
          {"cameBack", JsonOf(outbox.cameBack)},       {"lost", JsonOf(outbox.lost)}};
}

Json JsonOf(const InboxStatus& inbox) {
  return {{"new", JsonOf(inbox.waiting)},
          {"held", JsonOf(inbox.held)},
          {"disputed", DisputedJson(inbox.disputed)},
          {"toBookAgain", JsonOf(inbox.toBookAgain)},
          {"marked", inbox.marked}};
}

}  // namespace desk
