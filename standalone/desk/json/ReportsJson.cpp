#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Money.h"

namespace desk {

namespace {

Json AmountIn(const ReportCurrency& currency, std::int64_t amount) {
  return standalone::FormatPlainAmount(amount, currency.decimals);
}

Json CodeJson(const ReportCurrency& currency) {
  return currency.code.empty() ? Json() : Json(currency.code);
}

Json DayJson(DateType32 day) {
  return day == NullDate() ? Json() : Json(standalone::FormatIsoDate(day));
}

Json NumberedJson(const NumberedAccount& account) {
  return {{"id", account.id}, {"number", account.number}, {"name", account.name}};
}

Json BalanceJson(const ReportCurrency& currency, const AccountBalance& line) {
  return {{"id", line.account.id},
          {"number", line.account.number},
          {"name", line.account.name},
          {"type", standalone::AccountTypeName(line.type)},
          {"typeNumber", line.type},
          {"deleted", line.deleted},
          {"level", line.level},
          {"debit", AmountIn(currency, line.balance > 0 ? line.balance : 0)},
          {"credit", AmountIn(currency, line.balance < 0 ? -line.balance : 0)},
          {"own", AmountIn(currency, line.own)}};
}

Json RegisterLineJson(const ReportCurrency& currency, const RegisterLine& line) {
  Json json{{"transaction", line.txnId},
            {"line", line.lineId},
            {"type", standalone::TransactionTypeName(line.type)},
            {"typeNumber", line.type},
            {"date", standalone::FormatIsoDate(line.date)},
            {"documentNumber", line.documentNumber},
            {"name", line.name},
            {"memo", line.memo},
            {"lineMemo", line.lineMemo},
            {"account", line.account}};
  json["otherAccount"] =
      line.otherAccount ? Json{{"id", line.otherAccount->id}, {"name", line.otherAccount->name}} : Json();
  json["amount"] = AmountIn(currency, line.amount);
  json["balance"] = AmountIn(currency, line.balance);
  return json;
}

Json OpenItemJson(const ReportCurrency& currency, const OpenItem& item) {
  Json json{{"transaction", item.txnId},
            {"line", item.lineId},
            {"type", standalone::TransactionTypeName(item.type)},
            {"typeNumber", item.type},
            {"date", standalone::FormatIsoDate(item.date)},
            {"documentNumber", item.documentNumber},
            {"name", item.name},
            {"memo", item.memo},
            {"lineMemo", item.lineMemo},
            {"amount", AmountIn(currency, item.amount)},
            {"open", AmountIn(currency, item.open)},
            {"days", item.days},
            {"age", NameOfAge(item.age)},
            {"standing", NameOf(item.standing)}};
  json.update(item.state ? desk::JsonOf(*item.state)
                         : Json{{"state", nullptr}, {"stateNumber", nullptr}, {"ofBefore", false}});
  return json;
}

// None without a first day, before which it could be.
Json EarlierJson(const OpenItems& open, const EarlierItems& earlier) {
  if (open.from == NullDate()) return {};
  return {{"before", DayJson(open.from)}, {"items", earlier.count}, {"open", AmountIn(open.currency, earlier.open)}};
}

Json OpenSideJson(const OpenItems& open, const std::optional<OpenSide>& side) {
  if (!side) return {};
  const ReportCurrency& currency = open.currency;
  Json items = Json::array();
  for (const OpenItem& item : side->items) items.push_back(OpenItemJson(currency, item));
  Json byAge = Json::object();
  for (std::size_t age = 0; age < side->byAge.size(); ++age) {
    byAge[std::string(NameOfAge(age))] = AmountIn(currency, side->byAge[age]);
  }
  return {{"account", NumberedJson(side->account)},
          {"earlier", EarlierJson(open, side->earlier)},
          {"items", std::move(items)},
          {"byAge", std::move(byAge)},
          {"agreed", AmountIn(currency, side->agreed)},
          {"noRequest", AmountIn(currency, side->noRequest)},
          {"notAnswered", AmountIn(currency, side->notAnswered)},
          {"open", AmountIn(currency, side->Open())},
          {"closed", AmountIn(currency, side->closed)},
          {"balance", AmountIn(currency, side->balance)},
          {"difference", AmountIn(currency, side->Difference())}};
}

Json ShownLineJson(const ReportCurrency& currency, const ShownLine& line) {
  Json json{{"line", line.lineId},
            {"account", NumberedJson(line.account)},
            {"amount", AmountIn(currency, line.amount)},
            {"memo", line.memo},
            {"request", nullptr}};
  if (!line.request) return json;
  Json request{{"realm", line.request->realm}, {"partner", line.request->partner}, {"requestId", line.request->id}};
  request.update(desk::JsonOf(line.request->state));
  request["reversesLine"] = OrNull(line.request->reverses);
  request["correctsLine"] = OrNull(line.request->corrects);
  json["request"] = std::move(request);
  return json;
}

}  // namespace

std::string_view NameOf(Standing standing) noexcept {
  switch (standing) {
    case Standing::kAgreed:
      return "agreed";
    case Standing::kNoRequest:
      return "no-request";
    case Standing::kNotAnswered:
      return "not-answered";
    case Standing::kClosed:
      return "closed";
  }
  return "unknown";
}

std::string_view NameOf(const ShownLink& link) noexcept {
  switch (link.kind) {
    case ShownLink::Kind::kReverses:
      return link.isLater ? "reverses" : "reversed-by";
    case ShownLink::Kind::kCorrects:
      return link.isLater ? "corrects" : "corrected-by";
    case ShownLink::Kind::kMoves:
      return link.isLater ? "moves" : "moved-by";
  }
  return "unknown";
}

std::string_view NameOfAge(std::size_t age) noexcept {
  static constexpr std::array<std::string_view, 4> kNames{"0-30", "31-60", "61-90", "over-90"};
  return age < kNames.size() ? kNames[age] : "unknown";
}

Json JsonOf(const Balances& balances) {
  Json lines = Json::array();
  for (const AccountBalance& line : balances.lines) lines.push_back(BalanceJson(balances.currency, line));
  Json total;
  if (balances.totals) {
    total = {{"debit", AmountIn(balances.currency, balances.totals->debits)},
             {"credit", AmountIn(balances.currency, balances.totals->credits)}};
  }
  return {{"from", DayJson(balances.period.From())},
          {"to", DayJson(balances.period.To())},
          {"currency", CodeJson(balances.currency)},
          {"balances", std::move(lines)},
          {"total", std::move(total)}};
}

Json JsonOf(const Register& told) {
  Json lines = Json::array();
  for (const RegisterLine& line : told.lines) lines.push_back(RegisterLineJson(told.currency, line));
  return {{"from", DayJson(told.period.From())},
          {"to", DayJson(told.period.To())},
          {"currency", CodeJson(told.currency)},
          {"account", NumberedJson(told.account)},
          {"opening", AmountIn(told.currency, told.opening)},
          {"lines", std::move(lines)},
          {"closing", AmountIn(told.currency, told.closing)}};
}

Json JsonOf(const OpenItems& open) {
  Json partners = Json::array();
  for (const OpenWithPartner& partner : open.partners) {
    partners.push_back({{"realm", partner.realm},
                        {"partner", partner.partner},
                        {"owedToUs", OpenSideJson(open, partner.owedToUs)},
                        {"owedByUs", OpenSideJson(open, partner.owedByUs)}});
  }
  return {{"from", DayJson(open.from)},
          {"asOf", DayJson(open.asOf)},
          {"currency", CodeJson(open.currency)},
          {"partners", std::move(partners)}};
}

Json JsonOf(const ShownTransaction& shown) {
  Json lines = Json::array();
  for (const ShownLine& line : shown.lines) lines.push_back(ShownLineJson(shown.currency, line));
  Json links = Json::array();
  for (const ShownLink& link : shown.links) {
    links.push_back({{"kind", NameOf(link)}, {"transaction", link.otherTxnId}});
  }
  Json json{{"transaction", shown.txnId},
            {"type", standalone::TransactionTypeName(shown.type)},
            {"typeNumber", shown.type},
            {"date", standalone::FormatIsoDate(shown.date)},
            {"name", nullptr},
            {"documentNumber", shown.documentNumber},
            {"memo", shown.memo},
            {"confirmed", shown.confirmed},
            {"currency", CodeJson(shown.currency)},
            {"lines", std::move(lines)},
            {"links", std::move(links)},
            {"attachments", shown.attachments},
            {"audit", shown.audit ? JsonOf(*shown.audit) : Json()}};
  if (shown.name) json["name"] = {{"id", shown.name->id}, {"name", shown.name->name}};
  return json;
}

}  // namespace desk
