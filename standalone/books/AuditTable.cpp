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

// Longer than most.
constexpr std::size_t kRoomForLine = 1024;

std::string DigestOf(const Rows& line) {
  std::string netstrings;
  netstrings.reserve(kRoomForLine);
  for (int column = 0; column < kColumnCount; ++column) {
    const std::string_view text = line.Text(column);
    netstrings += std::to_string(text.size());
    netstrings += ':';
    netstrings += text;
    netstrings += ',';
  }
  return Sha256Of(netstrings);
}

constexpr const char* kField = "field";
constexpr const char* kBefore = "before";
constexpr const char* kAfter = "after";

std::string Escaped(std::string_view value) {
  constexpr int kOnOneLine = -1;
  return nlohmann::json(value).dump(kOnOneLine, ' ', /*ensure_ascii=*/false, nlohmann::json::error_handler_t::replace);
}

// Goes on to the end, which compilers turn into wide steps.
bool StandsAsItIs(std::string_view value) noexcept {
  unsigned char odd = 0;
  for (const char character : value) {
    const auto byte = static_cast<unsigned char>(character);
    odd |= static_cast<unsigned char>((byte < 0x20) | (byte > 0x7E) | (byte == '"') | (byte == '\\'));
  }
  return odd == 0;
}

// Nearly every text stands in JSON as it is.
void AppendQuoted(std::string& json, std::string_view value) {
  if (!StandsAsItIs(value)) {
    json += Escaped(value);
    return;
  }
  json += '"';
  json += value;
  json += '"';
}

void AppendMember(std::string& json, const char* key, const std::optional<std::string>& value) {
  if (!value) return;
  json.append(",\"").append(key).append("\":");
  AppendQuoted(json, *value);
}

// Longer than most of those of a recording.
constexpr std::size_t kRoomForChanges = 640;

std::string TextOf(const std::vector<AuditChange>& changes) {
  std::string json;
  if (changes.size() > 1) json.reserve(kRoomForChanges);
  json = "[";
  for (const AuditChange& change : changes) {
    json.append(json.size() == 1 ? "{\"" : ",{\"").append(kField).append("\":");
    AppendQuoted(json, change.field);
    AppendMember(json, kBefore, change.before);
    AppendMember(json, kAfter, change.after);
    json += '}';
  }
  return json += ']';
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
    : last_(database, "SELECT * FROM audit ORDER BY id DESC LIMIT 1"),
      byNumber_(database, "SELECT * FROM audit WHERE id = ?1"),
      insert_(database, Writes::kBookings,
              "INSERT INTO audit VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, nullif(?8, 0), nullif(?9, 0), ?10, ?11)"),
      filtered_(database,
                "SELECT * FROM audit WHERE (?3 = 0 OR ?3 BETWEEN first_txn_id AND last_txn_id) "
                "AND (?1 = '' OR user = ?1 COLLATE NOCASE) "
                "AND (?2 = '' OR action = ?2 OR substr(action, 1, length(?2) + 1) = ?2 || '.') ORDER BY id"),
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
