#include "bench/LookingUpByHand.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <nlohmann/json.hpp>

namespace bench {

namespace {

// Prepared, run and thrown away.
class Query {
 public:
  template <typename... Values>
  explicit Query(sqlite3* database, const char* sql, const Values&... values) {
    if (sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(database));
    }
    int index = 0;
    (sqlite3_bind_int64(statement_, ++index, values), ...);
  }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;
  ~Query() { sqlite3_finalize(statement_); }

  bool Step() {
    const int result = sqlite3_step(statement_);
    if (result != SQLITE_ROW && result != SQLITE_DONE) throw std::runtime_error("a statement failed");
    return result == SQLITE_ROW;
  }
  std::int64_t Number(int column) const { return sqlite3_column_int64(statement_, column); }
  std::int32_t Id(int column) const { return static_cast<std::int32_t>(Number(column)); }
  std::int16_t Short(int column) const { return static_cast<std::int16_t>(Number(column)); }
  bool IsNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }
  std::string Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
  }
  DateType32 Day(int column) const {
    const std::int64_t stored = Number(column);
    return {static_cast<int>(stored >> 16), static_cast<int>(stored >> 8 & 0xFF), static_cast<int>(stored & 0xFF)};
  }

 private:
  sqlite3_stmt* statement_ = nullptr;
};

desk::ReportCurrency CurrencyIn(sqlite3* database) {
  Query query(database, "SELECT home_currency, decimals FROM company");
  query.Step();
  return {.code = query.Text(0), .decimals = standalone::Decimals(query.Number(1))};
}

// By account number.
struct Sums {
  std::vector<std::int64_t> amounts;
  std::vector<bool> used;
  void Add(std::size_t account, std::int64_t amount) {
    if (account >= amounts.size()) {
      amounts.resize(account + 1);
      used.resize(account + 1);
    }
    amounts[account] += amount;
    used[account] = true;
  }
};

// The accounts come with each parent before those below it, as none of these has a name that stands between.
desk::Balances Told(sqlite3* database, const Sums& sums) {
  desk::Balances balances{.currency = CurrencyIn(database), .period = {{}, {}}, .lines = {}, .totals = {}};
  std::vector<std::int32_t> parents;
  std::unordered_map<std::int32_t, std::size_t> places;
  Query query(database, "SELECT id, parent_id, number, full_name, type, deleted FROM account ORDER BY full_name, id");
  std::vector<bool> used;
  while (query.Step()) {
    const auto id = static_cast<std::size_t>(query.Number(0));
    const std::int64_t own = id < sums.amounts.size() ? sums.amounts[id] : 0;
    desk::AccountBalance line{.account = {{.id = query.Id(0), .name = query.Text(3)}, query.Text(2)},
                              .type = query.Short(4),
                              .deleted = query.Number(5) != 0,
                              .level = 0,
                              .balance = own,
                              .own = own};
    if (const auto parent = places.find(query.Id(1)); parent != places.end()) {
      line.level = balances.lines[parent->second].level + 1;
    }
    parents.push_back(query.Id(1));
    places.emplace(line.account.id, balances.lines.size());
    used.push_back(id < sums.used.size() && sums.used[id]);
    balances.lines.push_back(std::move(line));
  }
  for (std::size_t index = balances.lines.size(); index-- > 0;) {
    const auto parent = places.find(parents[index]);
    if (parent == places.end()) continue;
    balances.lines[parent->second].balance += balances.lines[index].balance;
    used[parent->second] = used[parent->second] || used[index];
  }
  desk::Balances::Totals totals;
  std::vector<desk::AccountBalance> kept;
  for (std::size_t index = 0; index < balances.lines.size(); ++index) {
    desk::AccountBalance& line = balances.lines[index];
    if (!used[index]) continue;
    if (line.level == 0) (line.balance < 0 ? totals.credits : totals.debits) += std::abs(line.balance);
    kept.push_back(std::move(line));
  }
  balances.lines = std::move(kept);
  balances.totals = totals;
  return balances;
}

constexpr const char* kRegister = R"sql(
SELECT l.txn_id, l.id, t.type, t.date, t.document_number, n.full_name, t.memo, l.memo, l.amount,
       o.id, o.full_name
  FROM (SELECT l.id, l.txn_id, l.memo, l.amount,
               (SELECT CASE WHEN min(account_id) = max(account_id) THEN min(account_id) END
                  FROM txn_line WHERE txn_id = l.txn_id AND id <> l.id) AS other
          FROM txn_line l WHERE l.account_id = ?1) l
  CROSS JOIN txn t ON t.id = l.txn_id
  LEFT JOIN name n ON n.id = t.name_id
  LEFT JOIN account o ON o.id = l.other
 WHERE t.posted = 1
 ORDER BY t.date, t.id, l.id)sql";

constexpr const char* kOpen = R"sql(
SELECT l.txn_id, l.id, t.type, t.date, t.document_number, n.full_name, t.memo, l.memo, l.amount,
       ifnull(m.state, p.state), ifnull(m.of_before, p.of_before)
  FROM txn_line l
  CROSS JOIN txn t ON t.id = l.txn_id
  LEFT JOIN name n ON n.id = t.name_id
  LEFT JOIN me_transaction m ON m.target_id = l.id AND m.txn_id = l.txn_id AND (m.relation_id = ?1 OR t.type <> 8
        OR EXISTS (SELECT 1 FROM me_own_request WHERE target_id = m.target_id))
  LEFT JOIN me_transaction p ON m.id IS NULL AND t.type = 8 AND p.target_id = l.id - 1 AND p.txn_id = l.txn_id
        AND NOT EXISTS (SELECT 1 FROM me_own_request WHERE target_id = p.target_id)
 WHERE l.account_id = ?2 AND t.posted = 1 AND t.date <= ?3 AND coalesce(m.relation_id, p.relation_id, ?1) = ?1
 ORDER BY t.date, t.id, l.id)sql";

// Lines of requests whose accounts are not those of the relation any more. There are none in the sample.
constexpr const char* kElsewhere = R"sql(
SELECT m.target_id
  FROM me_transaction m
  CROSS JOIN me_relation r ON r.id = m.relation_id
  CROSS JOIN txn_line l ON l.txn_id = m.txn_id AND l.id = m.target_id + (m.txn_type = 8
        AND NOT EXISTS (SELECT 1 FROM me_own_request WHERE target_id = m.target_id))
 WHERE l.account_id NOT IN (r.due_from_account_id, r.due_to_account_id))sql";

struct Reversal {
  std::int32_t later;
  std::int32_t earlier;
  DateType32 day;
};
using Reversals = std::vector<Reversal>;

desk::Standing StandingOf(const std::optional<standalone::BookedState>& state) {
  using standalone::TransactionState;
  if (!state) return desk::Standing::kNoRequest;
  if (state->number == TransactionState::kEstablished) return desk::Standing::kAgreed;
  const bool isClosed = state->number == TransactionState::kRejected || state->number == TransactionState::kClosed;
  return isClosed ? desk::Standing::kClosed : desk::Standing::kNotAnswered;
}

desk::OpenItem OpenItemIn(const Query& query, std::int64_t sign, DateType32 asOf) {
  desk::OpenItem item{.txnId = query.Id(0),
                      .lineId = query.Id(1),
                      .type = query.Short(2),
                      .date = query.Day(3),
                      .documentNumber = query.Text(4),
                      .name = query.Text(5),
                      .memo = query.Text(6),
                      .lineMemo = query.Text(7),
                      .amount = sign * query.Number(8),
                      .open = sign * query.Number(8),
                      .days = 0,
                      .age = 0,
                      .standing = {},
                      .state = {}};
  if (!query.IsNull(9)) item.state.emplace(standalone::TransactionState{query.Short(9)}, query.Number(10) != 0);
  item.standing = StandingOf(item.state);
  item.days = (asOf.Days() - item.date.Days()).count();
  item.age = item.days <= 30 ? 0 : item.days <= 60 ? 1 : item.days <= 90 ? 2 : 3;
  return item;
}

bool IsTaken(const desk::OpenItem& item) {
  return item.state && item.state->number == standalone::TransactionState::kEstablished;
}

void Cancel(std::vector<desk::OpenItem>& items, const Reversals& reversals, DateType32 asOf) {
  std::unordered_map<std::int32_t, desk::OpenItem*> byTransaction;
  for (const auto& [later, earlier, day] : reversals) {
    byTransaction.emplace(later, nullptr);
    byTransaction.emplace(earlier, nullptr);
  }
  for (desk::OpenItem& item : items) {
    if (const auto found = byTransaction.find(item.txnId); found != byTransaction.end()) found->second = &item;
  }
  for (const auto& [later, earlier, day] : reversals) {
    desk::OpenItem* const one = byTransaction.at(later);
    desk::OpenItem* const other = byTransaction.at(earlier);
    const bool isLater = day.Value() > asOf.Value();
    if (isLater && other != nullptr && other->state == standalone::TransactionState::kClosed) {
      other->standing = desk::Standing::kNotAnswered;
    }
    if (one == nullptr || other == nullptr || one->open == 0 || other->open == 0) continue;
    if (one->open + other->open != 0 || (IsTaken(*other) && !IsTaken(*one))) continue;
    one->open = 0;
    other->open = 0;
  }
}

bool IsSettled(const desk::OpenItem& item) {
  return item.standing == desk::Standing::kAgreed || item.standing == desk::Standing::kNoRequest;
}

std::int64_t& SumIn(desk::OpenSide& side, desk::Standing standing) {
  if (standing == desk::Standing::kAgreed) return side.agreed;
  if (standing == desk::Standing::kNoRequest) return side.noRequest;
  return standing == desk::Standing::kClosed ? side.closed : side.notAnswered;
}

void Settle(std::vector<desk::OpenItem>& items) {
  std::int64_t owed = 0;
  std::int64_t settled = 0;
  for (const desk::OpenItem& item : items) {
    if (IsSettled(item)) (item.open > 0 ? owed : settled) += std::abs(item.open);
  }
  std::int64_t offOwed = std::min(owed, settled);
  std::int64_t offSettled = offOwed;
  for (desk::OpenItem& item : items) {
    if (!IsSettled(item)) continue;
    std::int64_t& left = item.open > 0 ? offOwed : offSettled;
    const std::int64_t off = std::min(left, std::abs(item.open));
    item.open += item.open > 0 ? -off : off;
    left -= off;
  }
}

desk::NumberedAccount AccountIn(sqlite3* database, std::int32_t id) {
  Query query(database, "SELECT number, full_name FROM account WHERE id = ?1", id);
  query.Step();
  return {{.id = id, .name = query.Text(1)}, query.Text(0)};
}

desk::OpenSide SideIn(sqlite3* database, std::int32_t relationId, std::int32_t accountId, std::int64_t sign,
                      DateType32 asOf, const Reversals& reversals, const Sums& sums) {
  desk::OpenSide side;
  side.account = AccountIn(database, accountId);
  Query query(database, kOpen, relationId, accountId, asOf.Value());
  while (query.Step()) side.items.push_back(OpenItemIn(query, sign, asOf));
  const auto account = static_cast<std::size_t>(accountId);
  side.balance = account < sums.amounts.size() ? sign * sums.amounts[account] : 0;
  Cancel(side.items, reversals, asOf);
  Settle(side.items);
  std::erase_if(side.items, [](const desk::OpenItem& item) { return item.open == 0; });
  for (const desk::OpenItem& item : side.items) {
    SumIn(side, item.standing) += item.open;
    if (item.standing != desk::Standing::kClosed) side.byAge.at(item.age) += item.open;
  }
  return side;
}

constexpr const char* kShownLines = R"sql(
SELECT l.id, l.amount, l.memo, a.id, a.number, a.full_name, m.id, r.realm_id, r.partner_name, m.request_id, m.state,
       m.of_before, own.names, own.earlier_target_id
  FROM txn_line l
  CROSS JOIN account a ON a.id = l.account_id
  LEFT JOIN me_transaction m ON m.target_id = l.id AND m.txn_id = l.txn_id
  LEFT JOIN me_relation r ON r.id = m.relation_id
  LEFT JOIN me_own_request own ON own.target_id = l.id
 WHERE l.txn_id = ?1 ORDER BY l.id)sql";

std::vector<desk::ShownLine> ShownLinesIn(sqlite3* database, std::int32_t txnId) {
  std::vector<desk::ShownLine> lines;
  Query query(database, kShownLines, txnId);
  while (query.Step()) {
    desk::ShownLine& line = lines.emplace_back();
    line.lineId = query.Id(0);
    line.amount = query.Number(1);
    line.memo = query.Text(2);
    line.account = {{.id = query.Id(3), .name = query.Text(5)}, query.Text(4)};
    if (query.IsNull(6)) continue;
    line.request = {.realm = query.Text(7),
                    .partner = query.Text(8),
                    .id = query.Text(9),
                    .state = {standalone::TransactionState{query.Short(10)}, query.Number(11) != 0},
                    .reverses = {},
                    .corrects = {}};
    if (query.IsNull(12)) continue;
    (query.Text(12) == "reverses" ? line.request->reverses : line.request->corrects) = query.Id(13);
  }
  return lines;
}

desk::AuditedDeed DeedIn(const Query& query) {
  desk::AuditedDeed deed;
  deed.number = query.Number(0);
  deed.at = desk::AuditedDeed::Moment(std::chrono::milliseconds(query.Number(1)));
  deed.clock = query.Text(2);
  deed.user = query.Text(3);
  deed.systemUser = query.Text(4);
  deed.action = query.Text(5);
  deed.firstTxnId = query.Id(6);
  deed.lastTxnId = query.Id(7);
  deed.subject = query.Text(8);
  for (const nlohmann::json& change : nlohmann::json::parse(query.Text(9))) {
    deed.changes.push_back({.field = change.at("field"), .before = {}, .after = change.at("after")});
  }
  return deed;
}

}  // namespace

void LookingUpByHand::Closer::operator()(sqlite3* database) const noexcept {
  sqlite3_close(database);
}

LookingUpByHand::LookingUpByHand(const std::filesystem::path& file) {
  sqlite3* database = nullptr;
  const int opened = sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  if (opened != SQLITE_OK) throw std::runtime_error("the company file cannot be opened");
}

desk::Balances LookingUpByHand::Balances() {
  Sums sums;
  Query query(database_.get(),
              "SELECT l.account_id, l.amount FROM txn_line l CROSS JOIN txn t ON t.id = l.txn_id WHERE t.posted = 1");
  while (query.Step()) sums.Add(static_cast<std::size_t>(query.Number(0)), query.Number(1));
  return Told(database_.get(), sums);
}

desk::Balances LookingUpByHand::BalancesBySql() {
  Sums sums;
  Query query(database_.get(),
              "SELECT l.account_id, sum(l.amount) FROM txn_line l CROSS JOIN txn t ON t.id = l.txn_id "
              "WHERE t.posted = 1 GROUP BY l.account_id");
  while (query.Step()) sums.Add(static_cast<std::size_t>(query.Number(0)), query.Number(1));
  return Told(database_.get(), sums);
}

desk::Register LookingUpByHand::Register(std::int32_t accountId) {
  desk::Register told{.currency = CurrencyIn(database_.get()),
                      .period = {{}, {}},
                      .account = AccountIn(database_.get(), accountId),
                      .opening = 0,
                      .lines = {},
                      .closing = 0};
  Query query(database_.get(), kRegister, accountId);
  while (query.Step()) {
    told.closing += query.Number(8);
    desk::RegisterLine& line = told.lines.emplace_back();
    line.txnId = query.Id(0);
    line.lineId = query.Id(1);
    line.type = query.Short(2);
    line.date = query.Day(3);
    line.documentNumber = query.Text(4);
    line.name = query.Text(5);
    line.memo = query.Text(6);
    line.lineMemo = query.Text(7);
    line.account = told.account.name;
    line.accountId = told.account.id;
    line.accountNumber = told.account.number;
    line.amount = query.Number(8);
    line.balance = told.closing;
    if (!query.IsNull(9)) line.otherAccount = desk::ListItem{.id = query.Id(9), .name = query.Text(10)};
  }
  return told;
}

desk::OpenItems LookingUpByHand::OpenItems(DateType32 asOf) {
  desk::OpenItems open{.currency = CurrencyIn(database_.get()), .asOf = asOf, .partners = {}};
  Reversals reversals;
  Query links(database_.get(),
              "SELECT k.txn_id, k.earlier_txn_id, t.date FROM txn_link k CROSS JOIN txn t ON t.id = k.txn_id "
              "WHERE k.kind = 'reverses' ORDER BY k.txn_id DESC");
  while (links.Step()) reversals.push_back({.later = links.Id(0), .earlier = links.Id(1), .day = links.Day(2)});
  Query elsewhere(database_.get(), kElsewhere);
  if (elsewhere.Step()) throw std::runtime_error("a line is on an account that its relation has not any more");
  Sums sums;
  Query lines(database_.get(),
              "SELECT l.account_id, l.amount FROM txn_line l CROSS JOIN txn t ON t.id = l.txn_id "
              "WHERE t.posted = 1 AND t.date <= ?1",
              asOf.Value());
  while (lines.Step()) sums.Add(static_cast<std::size_t>(lines.Number(0)), lines.Number(1));
  Query relations(database_.get(),
                  "SELECT id, realm_id, partner_name, due_from_account_id, due_to_account_id FROM me_relation "
                  "ORDER BY id");
  while (relations.Step()) {
    desk::OpenWithPartner partner{
        .realm = relations.Text(1), .partner = relations.Text(2), .owedToUs = {}, .owedByUs = {}};
    partner.owedToUs = SideIn(database_.get(), relations.Id(0), relations.Id(3), 1, asOf, reversals, sums);
    partner.owedByUs = SideIn(database_.get(), relations.Id(0), relations.Id(4), -1, asOf, reversals, sums);
    const bool isTold = !partner.owedToUs->items.empty() || !partner.owedByUs->items.empty();
    if (isTold) open.partners.push_back(std::move(partner));
  }
  return open;
}

desk::ShownTransaction LookingUpByHand::Show(std::int32_t txnId) {
  desk::ShownTransaction shown;
  shown.currency = CurrencyIn(database_.get());
  Query header(database_.get(),
               "SELECT t.type, t.date, n.id, n.full_name, t.document_number, t.memo FROM txn t LEFT JOIN name n ON "
               "n.id = t.name_id WHERE t.id = ?1",
               txnId);
  header.Step();
  shown.txnId = txnId;
  shown.type = header.Short(0);
  shown.date = header.Day(1);
  if (!header.IsNull(2)) shown.name = desk::ListItem{.id = header.Id(2), .name = header.Text(3)};
  shown.documentNumber = header.Text(4);
  shown.memo = header.Text(5);
  shown.lines = ShownLinesIn(database_.get(), txnId);
  const auto hasRequest = [](const desk::ShownLine& line) {
    return line.request.has_value();
  };
  shown.confirmed =
      std::ranges::any_of(shown.lines, hasRequest) && std::ranges::all_of(shown.lines, [](const desk::ShownLine& line) {
        return !line.request || line.request->state.number == standalone::TransactionState::kEstablished;
      });
  Query links(database_.get(),
              "SELECT txn_id, kind, earlier_txn_id FROM txn_link WHERE txn_id = ?1 OR earlier_txn_id = ?1 "
              "ORDER BY txn_id, kind",
              txnId);
  while (links.Step()) {
    using Kind = desk::ShownLink::Kind;
    const std::string kind = links.Text(1);
    const bool isLater = links.Id(0) == txnId;
    shown.links.push_back({.kind = kind == "reverses"   ? Kind::kReverses
                                   : kind == "corrects" ? Kind::kCorrects
                                                        : Kind::kMoves,
                           .isLater = isLater,
                           .otherTxnId = links.Id(isLater ? 2 : 0)});
  }
  Query papers(database_.get(), "SELECT reference FROM txn_attachment WHERE txn_id = ?1 ORDER BY id", txnId);
  while (papers.Step()) shown.attachments.push_back(papers.Text(0));
  shown.audit.emplace();
  Query audit(database_.get(),
              "SELECT id, at, clock, user, system_user, action, first_txn_id, last_txn_id, subject, changes FROM audit "
              "WHERE ?1 BETWEEN first_txn_id AND last_txn_id ORDER BY id",
              txnId);
  while (audit.Step()) shown.audit->push_back(DeedIn(audit));
  return shown;
}

}  // namespace bench
