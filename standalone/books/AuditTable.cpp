#include "standalone/books/AuditTable.h"

#include <nlohmann/json.hpp>

#include "standalone/values/Errors.h"
#include "standalone/values/Sha256.h"

namespace standalone {

namespace {

// In the order of the table's columns, which is that in which they are hashed.
enum Column {
  kNumber,
  kPrevious,
  kAt,
  kClock,
  kUser,
  kSystemUser,
  kAction,
  kFirstTransaction,
  kLastTransaction,
  kSubject,
  kChanges,
  kColumnCount
};

// What the first line carries.
const std::string& BeforeTheFirst() {
  static const std::string zeros(kSha256Digits, '0');
  return zeros;
}

std::string DigestOf(const Rows& line) {
  std::string netstrings;
  for (int column = 0; column < kColumnCount; ++column) {
    const std::string_view text = line.Text(column);
    netstrings.append(std::to_string(text.size())).append(1, ':').append(text).append(1, ',');
  }
  return Sha256Of(netstrings);
}

constexpr const char* kField = "field";
constexpr const char* kBefore = "before";
constexpr const char* kAfter = "after";

std::string TextOf(const std::vector<AuditChange>& changes) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const AuditChange& change : changes) {
    nlohmann::ordered_json entry{{kField, change.field}};
    if (change.before) entry[kBefore] = *change.before;
    if (change.after) entry[kAfter] = *change.after;
    list.push_back(std::move(entry));
  }
  constexpr int kOnOneLine = -1;
  return list.dump(kOnOneLine, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace);
}

std::optional<std::string> TextIn(const nlohmann::json& entry, const char* key) {
  const auto found = entry.find(key);
  if (found == entry.end()) return std::nullopt;
  return found->get<std::string>();
}

std::vector<AuditChange> ChangesIn(std::string_view text, std::int64_t number) try {
  std::vector<AuditChange> changes;
  for (const nlohmann::json& entry : nlohmann::json::parse(text)) {
    changes.push_back({entry.at(kField).get<std::string>(), TextIn(entry, kBefore), TextIn(entry, kAfter)});
  }
  return changes;
} catch (const nlohmann::json::exception&) {
  const std::string what = "line " + std::to_string(number) + " of the audit trail";
  throw DamagedFile("The company file is damaged (" + what +
                        " cannot be read: what it changed is no list of changes). Restore it from a backup.",
                    what);
}

AuditLine LineOf(const Rows& row) {
  AuditLine line;
  line.number = row.Int64(kNumber);
  line.at = row.Int64(kAt);
  line.clock = row.Text(kClock);
  line.user = row.Text(kUser);
  line.systemUser = row.Text(kSystemUser);
  line.action = row.Text(kAction);
  line.subject = row.Text(kSubject);
  if (!row.Text(kFirstTransaction).empty()) {
    line.transactions = TransactionRange{.first = row.Int32(kFirstTransaction), .last = row.Int32(kLastTransaction)};
  }
  line.changes = ChangesIn(row.Text(kChanges), line.number);
  return line;
}

}  // namespace

// Nothing that is held of bookings or lists tells of the trail.
AuditTable::AuditTable(Database& database)
    : last_(database, "SELECT * FROM audit WHERE id = (SELECT max(id) FROM audit)"),
      byNumber_(database, "SELECT * FROM audit WHERE id = ?1"),
      insert_(database, Writes::kBookings,
              "INSERT INTO audit VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, nullif(?8, 0), nullif(?9, 0), ?10, ?11)"),
      filtered_(database,
                "SELECT * FROM audit WHERE (?1 = '' OR user = ?1 COLLATE NOCASE) "
                "AND (?2 = '' OR action = ?2 OR substr(action, 1, length(?2) + 1) = ?2 || '.') "
                "AND (?3 = 0 OR ?3 BETWEEN first_txn_id AND last_txn_id) ORDER BY id"),
      all_(database, "SELECT * FROM audit ORDER BY id") {}

std::int64_t AuditTable::Append(const AuditStamp& stamp, const AuditDeed& deed) {
  std::int64_t number = 1;
  std::string previous = BeforeTheFirst();
  {
    Rows last = last_.Query();
    if (last.Step()) {
      number = last.Int64(kNumber) + 1;
      previous = DigestOf(last);
    }
  }
  const TransactionRange transactions = deed.transactions.value_or(TransactionRange{});
  insert_.Run(number, previous, stamp.at, stamp.clock, stamp.user, stamp.systemUser, deed.action, transactions.first,
              transactions.last, deed.subject, TextOf(deed.changes));
  return number;
}

std::optional<AuditLine> AuditTable::Find(std::int64_t number) {
  Rows rows = byNumber_.Query(number);
  if (!rows.Step()) return std::nullopt;
  return LineOf(rows);
}

void AuditTable::ForEach(const AuditFilter& filter, const std::function<void(const AuditLine& line)>& take) {
  Rows rows = filtered_.Query(filter.user, filter.action, filter.txnId.value_or(0));
  while (rows.Step()) take(LineOf(rows));
}

AuditCheck AuditTable::Check() {
  AuditCheck check{.lines = 0, .head = BeforeTheFirst(), .breakAt = {}};
  Rows rows = all_.Query();
  while (rows.Step()) {
    ++check.lines;
    const bool goesOn = rows.Int64(kNumber) == check.lines && rows.Text(kPrevious) == check.head;
    if (!goesOn && !check.breakAt) check.breakAt = rows.Int64(kNumber);
    check.head = DigestOf(rows);
  }
  return check;
}

std::int64_t AuditTable::CountLinesInCommon(AuditTable& other) {
  std::int64_t count = 0;
  Rows own = all_.Query();
  Rows others = other.all_.Query();
  while (own.Step() && others.Step() && DigestOf(own) == DigestOf(others)) ++count;
  return count;
}

std::optional<AuditLine> AuditTable::Last() {
  Rows last = last_.Query();
  if (!last.Step()) return std::nullopt;
  return LineOf(last);
}

}  // namespace standalone
