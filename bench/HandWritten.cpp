#include "bench/HandWritten.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <array>
#include <charconv>
#include <cstring>
#include <ostream>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "MultiEntityHost/Enumerations.h"
#include "bench/HandWrittenTrail.h"
#include "platform/SystemUser.h"

namespace bench {

namespace {

constexpr const char* kPeriodColumns = R"sql(
SELECT m.txn_id, m.target_id, m.txn_type, m.state, m.request_id, r.realm_id, r.partner_name, l.amount, t.date,)sql";

constexpr const char* kPeriodTextColumns = R"sql(
SELECT m.txn_id, m.target_id, m.txn_type, m.state, m.request_id, r.realm_id, r.partner_name,
       printf('%,d.%02d', l.amount / 100, l.amount % 100),
       printf('%02d/%02d/%d', t.date >> 8 & 255, t.date & 255, t.date >> 16),)sql";

// The row's line and, of a journal entry (8), the liability line after it, each in a row of its own; and what they
// belong to, found by its record number.
constexpr const char* kPeriodRows = R"sql(
       CASE m.txn_type WHEN 8 THEN l.memo ELSE n.full_name END, a.full_name, l.id - m.target_id,
       m.relation_id, l.account_id, t.name_id
  FROM me_transaction m
  CROSS JOIN me_relation r ON r.id = m.relation_id
  CROSS JOIN txn_line l ON l.id BETWEEN m.target_id AND m.target_id + (m.txn_type = 8)
  CROSS JOIN txn t ON t.id = l.txn_id
  CROSS JOIN account a ON a.id = l.account_id
  LEFT JOIN name n ON m.txn_type <> 8 AND n.id = t.name_id
 WHERE t.type = m.txn_type AND t.date BETWEEN ?1 AND ?2
 ORDER BY m.id, l.id)sql";

enum PeriodColumn {
  kTxnId,
  kTargetId,
  kTxnType,
  kState,
  kRequestId,
  kRealmId,
  kPartnerName,
  kAmount,
  kDate,
  kTxnName,
  kAccountName,
  kLinesAfterTarget,
  kRelationNumber,
  kAccountNumber,
  kNameNumber,
};

constexpr const char* kCount = "SELECT count(*) FROM me_transaction";
// What an entry is booked to, as people call it.
constexpr const char* kBooked = R"sql(
SELECT r.id, r.partner_name, e.full_name, d.full_name, n.full_name, c.home_currency FROM company c
 CROSS JOIN me_relation r ON r.realm_id = ?1
 CROSS JOIN account e ON e.id = ?2
 CROSS JOIN account d ON d.id = ?3
 CROSS JOIN name n ON n.id = ?4
 WHERE c.id = 1)sql";

enum BookedColumn { kBookedRelation, kBookedPartner, kBookedExpense, kBookedDueTo, kBookedName, kBookedCurrency };

constexpr const char* kInsertHeader = "INSERT INTO txn (type, date, name_id, memo) VALUES (?1, ?2, ?3, ?4)";
constexpr const char* kInsertLine = "INSERT INTO txn_line (txn_id, account_id, amount, memo) VALUES (?1, ?2, ?3, ?4)";
constexpr const char* kInsertRow =
    "INSERT INTO me_transaction (txn_id, target_id, relation_id, request_id, txn_type, state) "
    "VALUES (?1, ?2, ?3, ?4, ?5, ?6)";
constexpr const char* kPost = "UPDATE txn SET posted = 1 WHERE id = ?1";
constexpr const char* kExists = R"sql(
SELECT 1 FROM me_relation r
 WHERE r.realm_id = ?1
   AND (EXISTS (SELECT 1 FROM me_transaction WHERE relation_id = r.id AND request_id = ?2)
        OR EXISTS (SELECT 1 FROM me_rejected_transaction WHERE request_id = ?2)))sql";
constexpr const char* kRow = R"sql(
SELECT m.id, m.txn_id, m.txn_type, m.target_id, r.partner_name, l.amount, c.home_currency FROM company c
 CROSS JOIN me_relation r ON r.realm_id = ?1
 CROSS JOIN me_transaction m ON m.relation_id = r.id AND m.request_id = ?2
 CROSS JOIN txn_line l ON l.id = m.target_id
 WHERE c.id = 1 AND m.state = 1 AND m.of_before = 0
 ORDER BY m.id LIMIT 1)sql";

enum RowColumn { kRowId, kRowTxnId, kRowType, kRowLineId, kRowPartner, kRowAmount, kRowCurrency };

constexpr const char* kConfirm = "UPDATE txn SET partner_confirmed = 1 WHERE id = ?1 AND type = ?2";
constexpr const char* kSetState = "UPDATE me_transaction SET state = ?2 WHERE id = ?1";
// No receivables (1), no payables (5), no non-posting account (15), none of the special kind that never carries an
// intercompany balance (5). The plus keeps the engine from walking the accounts by their parents.
constexpr const char* kFreeAccounts = R"sql(
WITH used (id) AS MATERIALIZED (
  SELECT due_from_account_id FROM me_relation UNION SELECT due_to_account_id FROM me_relation)
SELECT id, full_name, type FROM account
 WHERE +parent_id IS NULL AND type NOT IN (1, 5) AND type < 15 AND special_kind <> 5 AND id NOT IN used)sql";

constexpr const char* kLastOfTrail = "SELECT * FROM audit ORDER BY id DESC LIMIT 1";
constexpr const char* kAppendToTrail = "INSERT INTO audit VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)";
constexpr const char* kInsertFile = "INSERT OR IGNORE INTO imported_file VALUES (?1, ?2)";

// For the free accounts of a large chart.
constexpr std::size_t kRoomForAccounts = 40'000;

void Bind(sqlite3_stmt* statement, int index, std::int64_t value) {
  sqlite3_bind_int64(statement, index, value);
}

void Bind(sqlite3_stmt* statement, int index, std::string_view text) {
  sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

template <typename... Values>
void BindAll(sqlite3_stmt* statement, const Values&... values) {
  int index = 0;
  (Bind(statement, ++index, values), ...);
}

std::string_view Text(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

char* TwoDigits(char* at, unsigned number) {
  *at++ = static_cast<char>('0' + number / 10);
  *at++ = static_cast<char>('0' + number % 10);
  return at;
}

Util::TString DateText(std::uint32_t date) {
  std::array<char, 16> text;
  char* at = TwoDigits(text.data(), date >> 8U & 0xFFU);
  *at++ = '/';
  at = TwoDigits(at, date & 0xFFU);
  *at++ = '/';
  at = std::to_chars(at, text.data() + text.size(), date >> 16U).ptr;
  return std::string_view(text.data(), static_cast<std::size_t>(at - text.data()));
}

// From the last digit to the first.
Util::TString MoneyText(std::int64_t minorUnits) {
  std::array<char, 32> text;
  char* const end = text.data() + text.size();
  std::uint64_t rest =
      minorUnits < 0 ? 0U - static_cast<std::uint64_t>(minorUnits) : static_cast<std::uint64_t>(minorUnits);
  char* at = end - 2;
  TwoDigits(at, static_cast<unsigned>(rest % 100));
  *--at = '.';
  rest /= 100;
  int digits = 0;
  do {
    if (digits != 0 && digits % 3 == 0) *--at = ',';
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
    ++digits;
  } while (rest != 0);
  if (minorUnits < 0) *--at = '-';
  return std::string_view(at, static_cast<std::size_t>(end - at));
}

// Texts that many lines share, by their record numbers; each is taken from the engine once in a listing.
class SharedTexts {
 public:
  const Util::TString& Get(sqlite3_stmt* statement, int idColumn, int textColumn) {
    const auto id = static_cast<std::size_t>(sqlite3_column_int(statement, idColumn));
    if (id >= texts_.size()) texts_.resize(id + 1);
    if (texts_[id].empty()) texts_[id] = Text(statement, textColumn);
    return texts_[id];
  }

 private:
  std::vector<Util::TString> texts_;
};

constexpr std::string_view kUser = "Admin";

DateType32 DayOf(HandWritten::Moment now) {
  constexpr int kYearOfTm = 1900;
  const std::tm local = platform::LocalTimeOf(now);
  return {local.tm_year + kYearOfTm, local.tm_mon + 1, local.tm_mday};
}

std::string MoneyWithCurrency(std::int64_t minorUnits, std::string_view currency) {
  return PlainAmount(minorUnits).append(" ").append(currency);
}

std::string PartnerAndRealm(std::string_view partner, std::string_view realmId) {
  return std::string(partner).append(" (").append(realmId).append(")");
}

const char* NameOfType(std::int64_t type) {
  if (type == kTxnTypeJournalEntry) return "journal entry ";
  return type == kTxnTypeBill ? "bill " : "check ";
}

struct ListingTexts {
  Util::TString currency{"USD"};
  SharedTexts realms;
  SharedTexts partners;
  SharedTexts accounts;
  SharedTexts names;
  std::unordered_map<std::uint32_t, Util::TString> dates;
};

void TakeNames(sqlite3_stmt* statement, ListingTexts& texts, METxnInfo& info) {
  info.requestId = Text(statement, kRequestId);
  info.realmId = texts.realms.Get(statement, kRelationNumber, kRealmId);
  info.partnerName = texts.partners.Get(statement, kRelationNumber, kPartnerName);
  const Util::TString& account = texts.accounts.Get(statement, kAccountNumber, kAccountName);
  if (info.txnType == kTxnTypeJournalEntry) {
    info.txnName = Text(statement, kTxnName);
    info.entryAccountName = account;
  } else {
    info.txnName = texts.names.Get(statement, kNameNumber, kTxnName);
    info.billCheckAccountName = account;
  }
}

// Null when it was the liability line of the last entry.
METxnInfo* Take(sqlite3_stmt* statement, std::vector<METxnInfo>& list, ListingTexts& texts) {
  if (sqlite3_column_int(statement, kLinesAfterTarget) != 0) {
    list.back().liabilityAccountName = texts.accounts.Get(statement, kAccountNumber, kAccountName);
    return nullptr;
  }
  METxnInfo& info = list.emplace_back();
  info.txnId = sqlite3_column_int(statement, kTxnId);
  info.targetId = sqlite3_column_int(statement, kTargetId);
  info.txnType = static_cast<std::int16_t>(sqlite3_column_int(statement, kTxnType));
  info.state = static_cast<std::int16_t>(sqlite3_column_int(statement, kState));
  info.currencyCode = texts.currency;
  TakeNames(statement, texts, info);
  return &info;
}

}  // namespace

void HandWritten::Closer::operator()(sqlite3* database) const noexcept {
  sqlite3_close(database);
}

void HandWritten::Closer::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

HandWritten::HandWritten(const std::filesystem::path& file, std::string clockSetTo)
    : clockSetTo_(std::move(clockSetTo)), systemUser_(platform::SystemUserName()) {
  sqlite3* database = nullptr;
  const int opened = sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  if (opened != SQLITE_OK) Fail();
  sqlite3_extended_result_codes(database, 1);
  sqlite3_busy_timeout(database, 10'000);
  if (sqlite3_exec(database, "PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON; PRAGMA trusted_schema = OFF;",
                   nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail();
  }
  begin_ = Prepare("BEGIN IMMEDIATE");
  commit_ = Prepare("COMMIT");
  count_ = Prepare(kCount);
  period_ = Prepare((std::string(kPeriodColumns) + kPeriodRows).c_str());
  periodText_ = Prepare((std::string(kPeriodTextColumns) + kPeriodRows).c_str());
  booked_ = Prepare(kBooked);
  insertHeader_ = Prepare(kInsertHeader);
  insertLine_ = Prepare(kInsertLine);
  insertRow_ = Prepare(kInsertRow);
  post_ = Prepare(kPost);
  exists_ = Prepare(kExists);
  row_ = Prepare(kRow);
  confirm_ = Prepare(kConfirm);
  setState_ = Prepare(kSetState);
  freeAccounts_ = Prepare(kFreeAccounts);
  lastOfTrail_ = Prepare(kLastOfTrail);
  appendToTrail_ = Prepare(kAppendToTrail);
  insertFile_ = Prepare(kInsertFile);
}

void HandWritten::ListPeriod(DateType32 from, DateType32 to, std::vector<METxnInfo>& list) {
  ListingTexts texts;
  list.reserve(CountRows());
  BindAll(period_, static_cast<std::int64_t>(from.Value()), static_cast<std::int64_t>(to.Value()));
  while (Step(period_)) {
    METxnInfo* const info = Take(period_, list, texts);
    if (info == nullptr) continue;
    info->amount = MoneyText(sqlite3_column_int64(period_, kAmount));
    const auto date = static_cast<std::uint32_t>(sqlite3_column_int(period_, kDate));
    Util::TString& text = texts.dates[date];
    if (text.empty()) text = DateText(date);
    info->txnDate = text;
  }
  Reset(period_);
}

void HandWritten::ListPeriodAsText(DateType32 from, DateType32 to, std::vector<METxnInfo>& list) {
  ListingTexts texts;
  list.reserve(CountRows());
  BindAll(periodText_, static_cast<std::int64_t>(from.Value()), static_cast<std::int64_t>(to.Value()));
  while (Step(periodText_)) {
    METxnInfo* const info = Take(periodText_, list, texts);
    if (info == nullptr) continue;
    info->amount = Text(periodText_, kAmount);
    info->txnDate = Text(periodText_, kDate);
  }
  Reset(periodText_);
}

std::size_t HandWritten::CountRows() {
  Step(count_);
  const auto count = static_cast<std::size_t>(sqlite3_column_int64(count_, 0));
  Reset(count_);
  return count;
}

std::int64_t HandWritten::Record(const Entry& entry, Moment now) {
  Run(begin_);
  BindAll(booked_, std::string_view(entry.realmId), std::int64_t{entry.expenseAccount},
          std::int64_t{entry.dueToAccount}, std::int64_t{entry.nameId});
  if (!Step(booked_)) Fail();
  const std::string_view name = Text(booked_, kBookedName);
  const DateType32 today = DayOf(now);
  const std::int64_t id = InsertEntry(kTxnTypeJournalEntry, today, entry.nameId, name, name, entry.expenseAccount,
                                      entry.dueToAccount, entry.amount);
  BindAll(insertRow_, id, sqlite3_last_insert_rowid(database_.get()) - 1,
          sqlite3_column_int64(booked_, kBookedRelation), std::string_view(entry.requestId),
          std::int64_t{kTxnTypeJournalEntry}, std::int64_t{MEStateEstablished});
  Run(insertRow_);
  ChangesText changes;
  changes.Add("partner", PartnerAndRealm(Text(booked_, kBookedPartner), entry.realmId));
  changes.Add("request", entry.requestId);
  changes.Add("date", IsoDate(today.Value()));
  changes.Add("amount", MoneyWithCurrency(entry.amount, Text(booked_, kBookedCurrency)));
  changes.Add("account", Text(booked_, kBookedExpense));
  changes.Add("liability account", Text(booked_, kBookedDueTo));
  changes.Add("name", name);
  changes.Add("memo", name);
  changes.Add("state", "established");
  AppendToTrail(now, "journal.record", id, id, NameOfType(kTxnTypeJournalEntry) + std::to_string(id), changes.End());
  Reset(booked_);
  Run(commit_);
  return id;
}

void HandWritten::Import(const std::vector<Booking>& bookings, const std::filesystem::path& csv, Moment now) {
  Run(begin_);
  std::int64_t intercompany = 0;
  std::int64_t last = 0;
  for (const Booking& booking : bookings) {
    last = Insert(booking);
    if (booking.relationId != 0) ++intercompany;
  }
  const auto count = static_cast<std::int64_t>(bookings.size());
  const std::string digest = DigestOfFile(csv);
  const std::string lines = std::to_string(2 * count);
  ChangesText changes;
  changes.Add("SHA-256", digest);
  changes.Add("rows", lines);
  changes.Add("transactions", std::to_string(count));
  changes.Add("lines", lines);
  changes.Add("intercompany lines", std::to_string(intercompany));
  BindAll(insertFile_, std::string_view(digest),
          AppendToTrail(now, "import", last - count + 1, last, csv.filename().string(), changes.End()));
  Run(insertFile_);
  Run(commit_);
}

std::int64_t HandWritten::Insert(const Booking& booking) {
  const std::int64_t id = InsertEntry(booking.type, booking.date, booking.nameId, booking.memo, "Services",
                                      booking.account, booking.otherAccount, booking.amount);
  if (booking.relationId == 0) return id;
  BindAll(insertRow_, id, sqlite3_last_insert_rowid(database_.get()) - 1, std::int64_t{booking.relationId},
          std::string_view(booking.requestId), std::int64_t{booking.type}, std::int64_t{booking.state});
  Run(insertRow_);
  return id;
}

bool HandWritten::Exists(std::string_view realmId, std::string_view requestId) {
  BindAll(exists_, realmId, requestId);
  const bool exists = Step(exists_);
  Reset(exists_);
  return exists;
}

bool HandWritten::Establish(std::string_view realmId, std::string_view requestId, Moment now) {
  Run(begin_);
  BindAll(row_, realmId, requestId);
  const bool exists = Step(row_);
  if (exists) {
    const std::int64_t txnId = sqlite3_column_int64(row_, kRowTxnId);
    const std::int64_t type = sqlite3_column_int64(row_, kRowType);
    BindAll(confirm_, txnId, type);
    Run(confirm_);
    BindAll(setState_, sqlite3_column_int64(row_, kRowId), std::int64_t{MEStateEstablished});
    Run(setState_);
    ChangesText changes;
    changes.Change("state", "sent", "established");
    const std::string money = MoneyWithCurrency(sqlite3_column_int64(row_, kRowAmount), Text(row_, kRowCurrency));
    const std::string subject = fmt::format("{}{}, line {}, for {}, request {}, {}", NameOfType(type), txnId,
                                            sqlite3_column_int64(row_, kRowLineId),
                                            PartnerAndRealm(Text(row_, kRowPartner), realmId), requestId, money);
    AppendToTrail(now, "transaction.state", txnId, txnId, subject, changes.End());
  }
  Reset(row_);
  Run(commit_);
  return exists;
}

std::int64_t HandWritten::AppendToTrail(Moment now, std::string_view action, std::int64_t firstTxn,
                                        std::int64_t lastTxn, std::string_view subject, std::string_view changes) {
  if (!Step(lastOfTrail_)) Fail();
  const std::int64_t number = sqlite3_column_int64(lastOfTrail_, 0) + 1;
  const std::string previous = DigestOfLine(lastOfTrail_);
  Reset(lastOfTrail_);
  const auto at = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
  BindAll(appendToTrail_, number, std::string_view(previous), static_cast<std::int64_t>(at.count()),
          std::string_view(clockSetTo_), kUser, std::string_view(systemUser_), action, firstTxn, lastTxn, subject,
          changes);
  Run(appendToTrail_);
  return number;
}

HandWritten::AccountMap HandWritten::FreeAccounts(const std::vector<std::string>& typeNames) {
  AccountMap accounts;
  accounts.reserve(kRoomForAccounts);
  while (Step(freeAccounts_)) {
    accounts.try_emplace(sqlite3_column_int(freeAccounts_, 0), Text(freeAccounts_, 1),
                         typeNames[static_cast<std::size_t>(sqlite3_column_int(freeAccounts_, 2))]);
  }
  Reset(freeAccounts_);
  return accounts;
}

void HandWritten::PrintPlans(std::ostream& out) {
  out << "-- SQLite " << sqlite3_libversion() << '\n';
  // Explaining a statement prepares another one.
  const std::size_t count = statements_.size();
  for (std::size_t index = 0; index < count; ++index) {
    const char* const sql = sqlite3_sql(statements_[index].get());
    out << sql << '\n';
    sqlite3_stmt* const plan = Prepare((std::string("EXPLAIN QUERY PLAN ") + sql).c_str());
    while (Step(plan)) out << "    " << Text(plan, 3) << '\n';
  }
}

void HandWritten::Fail() const {
  throw std::runtime_error(std::string("the hand-written side failed: ") + sqlite3_errmsg(database_.get()));
}

sqlite3_stmt* HandWritten::Prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  const int prepared = sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  statements_.emplace_back(statement);
  if (prepared != SQLITE_OK) Fail();
  return statement;
}

bool HandWritten::Step(sqlite3_stmt* statement) const {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) Fail();
  return code == SQLITE_ROW;
}

void HandWritten::Reset(sqlite3_stmt* statement) const {
  if (sqlite3_reset(statement) != SQLITE_OK) Fail();
}

std::int64_t HandWritten::InsertEntry(std::int16_t type, DateType32 date, std::int32_t nameId, std::string_view memo,
                                      std::string_view lineMemo, std::int32_t account, std::int32_t otherAccount,
                                      std::int64_t amount) {
  BindAll(insertHeader_, std::int64_t{type}, static_cast<std::int64_t>(date.Value()), std::int64_t{nameId}, memo);
  Run(insertHeader_);
  const std::int64_t id = sqlite3_last_insert_rowid(database_.get());
  BindAll(insertLine_, id, std::int64_t{account}, amount, lineMemo);
  Run(insertLine_);
  BindAll(insertLine_, id, std::int64_t{otherAccount}, -amount, lineMemo);
  Run(insertLine_);
  BindAll(post_, id);
  Run(post_);
  return id;
}

void HandWritten::Run(sqlite3_stmt* statement) {
  Step(statement);
  Reset(statement);
}

}  // namespace bench
