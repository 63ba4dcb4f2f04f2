#include "support/ScriptedBooks.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The digits of a whole number whose thousands separators, if there are any, stand at every third digit; empty when it
// is none.
std::string WholeDigits(std::string_view whole) {
  if (whole.find(',') == std::string_view::npos) return std::string(whole);
  std::string digits;
  const std::size_t head = whole.find(',');
  if (head < 1 || head > 3 || (whole.size() - head) % 4 != 0) return {};
  for (std::size_t i = 0; i < whole.size(); ++i) {
    const bool separatorBelongs = i >= head && (i - head) % 4 == 0;
    if ((whole[i] == ',') != separatorBelongs) return {};
    if (!separatorBelongs) digits += whole[i];
  }
  return digits;
}

std::string Grouped(std::string digits) {
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
  return digits;
}

}  // namespace

std::optional<std::int64_t> ParsedAmount(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  std::string decimals(point == std::string_view::npos ? "00" : text.substr(point + 1));
  if (decimals.empty() || decimals.size() > 2) return std::nullopt;
  decimals.resize(2, '0');

  const std::string whole = WholeDigits(text.substr(0, point));
  const std::string digits = whole + decimals;
  if (whole.empty() || !std::ranges::all_of(digits, IsDigit)) return std::nullopt;
  std::int64_t minorUnits = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), minorUnits);
  if (error != std::errc{}) return std::nullopt;
  return negative ? -minorUnits : minorUnits;
}

bool ScriptedLines::TargExists(std::int32_t targetId, TViewType view) {
  if (script_.Call("TargExists", targetId, view)) return false;
  const auto found = lines.find(targetId);
  return found != lines.end() && (view == kViewAny || view == found->second.txnType);
}

LineHandle ScriptedLines::OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe,
                                   TViewType view) {
  script_.Call("OpenLine", targetId, feature, failSafe, view);
  return open.Open(targetId);
}

DateType32 ScriptedLines::GetDate(LineHandle line) {
  const std::int32_t targetId = open[line];
  script_.Call("GetDate", targetId);
  return Find(targetId).date;
}

BalType ScriptedLines::GetAmount(LineHandle line) {
  const std::int32_t targetId = open[line];
  script_.Call("GetAmount", targetId);
  return {Find(targetId).minorUnits};
}

const char* ScriptedLines::GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) {
  const std::int32_t targetId = open[line];
  script_.Call("GetAccountName", targetId, option1, option2);
  return Find(targetId).accountName.c_str();
}

Util::TString ScriptedLines::GetStrMemo(LineHandle line) {
  const std::int32_t targetId = open[line];
  script_.Call("GetStrMemo", targetId);
  return {Find(targetId).memo};
}

CName ScriptedLines::GetTransactionName(LineHandle line) {
  const std::int32_t targetId = open[line];
  script_.Call("GetTransactionName", targetId);
  return {names_, names_.open.Open(Find(targetId).nameId)};
}

void ScriptedLines::ReleaseLine(LineHandle line) noexcept {
  script_.Note("ReleaseLine", open.Release(line));
}

const ScriptedLine& ScriptedLines::Find(std::int32_t targetId) const {
  static const ScriptedLine kNothing{};
  const auto found = lines.find(targetId);
  return found == lines.end() ? kNothing : found->second;
}

EdListStatus ScriptedJournal::CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount,
                                                        JournalEntryIds& ids, std::int32_t nameId, Util::TString name) {
  const long credited = chart_.open[first.Handle()];
  const long debited = chart_.open[second.Handle()];
  const auto failure = script_.Call("CreateGeneralJournalEntry", credited, debited, amount, nameId, name);
  if (failure) return Failed(*failure);
  const auto minorUnits = ParsedAmount(amount.view());
  if (!minorUnits || !CanBePosted(credited) || !CanBePosted(debited) || !names_.names.contains(nameId)) {
    return kEdListFailure;
  }

  const auto latest = std::ranges::max_element(lines_.lines, {}, [](const auto& entry) { return entry.second.txnId; });
  const bool none = latest == lines_.lines.end();
  const std::int32_t txnId = std::max(lastTxnId_, none ? 0 : latest->second.txnId) + 1;
  const std::int32_t targetId = std::max(lastTargetId_, none ? 0 : lines_.lines.rbegin()->first) + 1;
  lastTxnId_ = txnId;
  lastTargetId_ = targetId + 1;
  ScriptedLine line{.txnId = txnId,
                    .txnType = kTxnTypeJournalEntry,
                    .date = today,
                    .minorUnits = *minorUnits,
                    .accountName = chart_.accounts.at(debited).name,
                    .memo = std::string(name.view()),
                    .nameId = nameId};
  lines_.lines.emplace(targetId, line);
  line.minorUnits = -*minorUnits;
  line.accountName = chart_.accounts.at(credited).name;
  lines_.lines.emplace(targetId + 1, line);
  ids = {static_cast<std::uint32_t>(txnId), static_cast<std::uint32_t>(targetId)};
  return kEdListSuccess;
}

EdListStatus ScriptedJournal::DeleteGeneralJournalEntry(std::uint32_t txnId) {
  if (const auto failure = script_.Call("DeleteGeneralJournalEntry", txnId)) return Failed(*failure);
  const bool isIntercompany =
      std::ranges::any_of(store_.transactions, [=](const auto& row) { return std::cmp_equal(row.txnId, txnId); });
  if (isIntercompany && !removalUnderWay()) return kEdListFailure;
  const auto erased = std::erase_if(lines_.lines, [=](const auto& entry) {
    return entry.second.txnType == kTxnTypeJournalEntry && std::cmp_equal(entry.second.txnId, txnId);
  });
  return erased != 0 ? kEdListSuccess : kEdListFailure;
}

EdListStatus ScriptedJournal::UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) {
  if (const auto failure = script_.Call("UpdateMETransaction", txnId, viewType)) return Failed(*failure);
  const bool exists = std::ranges::any_of(
      lines_.lines, [=](const auto& entry) { return entry.second.txnId == txnId && entry.second.txnType == viewType; });
  if (!exists) return kEdListFailure;
  confirmed.push_back(txnId);
  return kEdListSuccess;
}

bool ScriptedJournal::CanBePosted(long recnum) const {
  const auto found = chart_.accounts.find(recnum);
  return found != chart_.accounts.end() && !found->second.deleted && found->second.type != KrEnumerations::kNonPosting;
}

void ScriptedMoney::String2Dollar(BalType& amount, const char* text) {
  if (script_.Call("String2Dollar", text)) return;
  amount.minorUnits = ParsedAmount(text).value_or(amount.minorUnits);
}

void ScriptedMoney::Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) {
  script_.Call("Money2Str_s", size, amount.minorUnits, format);
  const std::string_view sign = amount.minorUnits < 0 ? "-" : "";
  const auto magnitude = amount.minorUnits < 0 ? 0U - static_cast<std::uint64_t>(amount.minorUnits)
                                               : static_cast<std::uint64_t>(amount.minorUnits);
  const std::string cents = std::to_string(100 + (magnitude % 100)).substr(1);
  const std::string text = std::string(sign) + Grouped(std::to_string(magnitude / 100)) + "." + cents;
  std::snprintf(buffer, size, "%s", text.c_str());
}

QueryHandle ScriptedQueries::OpenQuery() {
  script_.Call("OpenQuery");
  return open.Open({});
}

Util::Status ScriptedQueries::SetSelect(QueryHandle query, unsigned int selection) {
  if (const auto failure = script_.Call("SetSelect", selection)) return Util::Status(failure->code.value_or(-1));
  open[query].selection = selection;
  return Util::Status(Util::Status::kSuccess);
}

long ScriptedQueries::SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) {
  script_.Call("SetStatement", field, op, date);
  auto& statements = open[query].statements;
  statements.emplace_back([=](const ScriptedQueryRow& row) {
    const auto found = row.dates.find(field);
    if (found == row.dates.end()) return false;
    const int order = found->second.Compare(date);
    return op == DQE::kNotBefore ? order >= 0 : order <= 0;
  });
  return static_cast<long>(statements.size());
}

long ScriptedQueries::SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) {
  script_.Call("SetStatement", left, op, right);
  auto& statements = open[query].statements;
  const Statement first = statements.at(static_cast<std::size_t>(left - 1));
  const Statement second = statements.at(static_cast<std::size_t>(right - 1));
  statements.emplace_back([=](const ScriptedQueryRow& row) { return first(row) && second(row); });
  return static_cast<long>(statements.size());
}

Util::Status ScriptedQueries::DoQuery(QueryHandle query) {
  if (const auto failure = script_.Call("DoQuery")) return Util::Status(failure->code.value_or(-1));
  Query& asked = open[query];
  asked.found.clear();
  for (const ScriptedQueryRow& row : rows) {
    const bool selected = row.selection == asked.selection;
    if (selected && (asked.statements.empty() || asked.statements.back()(row))) asked.found.push_back(&row);
  }
  return Util::Status(Util::Status::kSuccess);
}

bool ScriptedQueries::ResultExists(QueryHandle query) {
  return !script_.Call("ResultExists") && !open[query].found.empty();
}

const DQE::IDBResultSetRow* ScriptedQueries::First(QueryHandle query) {
  if (script_.Call("First")) return nullptr;
  open[query].next = 0;
  return NextRow(open[query]);
}

const DQE::IDBResultSetRow* ScriptedQueries::Next(QueryHandle query) {
  if (script_.Call("Next")) return nullptr;
  return NextRow(open[query]);
}

unsigned long ScriptedQueries::GetTransPtrType(QueryHandle /*query*/, const DQE::IDBResultSetRow* row,
                                               std::int32_t column) {
  const auto txnId = reinterpret_cast<const ScriptedQueryRow*>(row)->txnId;
  script_.Call("GetTransPtrType", txnId, column);
  return txnId;
}

void ScriptedQueries::ReleaseQuery(QueryHandle query) noexcept {
  open.Release(query);
  script_.Note("ReleaseQuery");
}

const DQE::IDBResultSetRow* ScriptedQueries::NextRow(Query& query) {
  if (query.next == query.found.size()) return nullptr;
  return reinterpret_cast<const DQE::IDBResultSetRow*>(query.found[query.next++]);
}
