#include "crash/Contents.h"

#include <sqlite3.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>

#include "standalone/values/Sha256.h"

namespace {

struct CloseDatabase {
  void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
};
using DatabaseHandle = std::unique_ptr<sqlite3, CloseDatabase>;

// One row of a result, whose columns are read from left to right.
class Columns {
 public:
  explicit Columns(sqlite3_stmt* statement) noexcept : statement_(statement) {}

  std::int64_t Number() { return sqlite3_column_int64(statement_, next_++); }
  int Small() { return sqlite3_column_int(statement_, next_++); }
  bool Flag() { return Small() != 0; }
  std::string Text() {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, next_++));
    return text != nullptr ? text : "";
  }

 private:
  sqlite3_stmt* statement_;
  int next_ = 0;
};

DatabaseHandle Open(const std::filesystem::path& file) {
  sqlite3* handle = nullptr;
  const std::u8string name = file.u8string();
  const int code =
      sqlite3_open_v2(reinterpret_cast<const char*>(name.c_str()), &handle, SQLITE_OPEN_READWRITE, nullptr);
  DatabaseHandle database(handle);
  if (code != SQLITE_OK) throw std::runtime_error(std::string("cannot be opened: ") + sqlite3_errstr(code));
  sqlite3_busy_timeout(handle, 10'000);
  return database;
}

void ForEach(sqlite3* database, const char* sql, const std::function<void(Columns)>& take) {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
  while (code == SQLITE_OK || code == SQLITE_ROW) {
    code = sqlite3_step(statement);
    if (code == SQLITE_ROW) take(Columns(statement));
  }
  const std::string reason = sqlite3_errmsg(database);
  sqlite3_finalize(statement);
  if (code != SQLITE_DONE) throw std::runtime_error("cannot be read: " + reason);
}

// Each row of `sql` is a fault, described by its first column.
void CollectFaults(sqlite3* database, const char* sql, const std::string& what, std::vector<std::string>& faults) {
  ForEach(database, sql, [&](Columns row) { faults.push_back(what + row.Text()); });
}

constexpr const char* kUnsound = "SELECT integrity_check FROM pragma_integrity_check WHERE integrity_check <> 'ok'";
constexpr const char* kDangling = "SELECT \"table\" || ' ' || rowid || ' to ' || parent FROM pragma_foreign_key_check";
constexpr const char* kNotPosted = "SELECT id FROM txn WHERE posted <> 1";
constexpr const char* kTooFewLines =
    "SELECT id FROM txn WHERE (SELECT count(*) FROM txn_line WHERE txn_id = txn.id) < 2";
constexpr const char* kUnbalanced =
    "SELECT id FROM txn WHERE (SELECT sum(amount) FROM txn_line WHERE txn_id = txn.id) <> 0";
// The key +request_id keeps the unique index out of it, which is what would be broken.
constexpr const char* kBookedTwice =
    "SELECT request_id FROM me_transaction WHERE txn_type = 8 AND request_id <> '' "
    "GROUP BY relation_id, +request_id HAVING count(DISTINCT txn_id) > 1";
constexpr const char* kEntriesWithoutRow =
    "SELECT id FROM txn WHERE type = 8 AND NOT EXISTS (SELECT 1 FROM me_transaction WHERE txn_id = txn.id)";
constexpr const char* kRowsWithoutEntry =
    "SELECT txn_id FROM me_transaction AS row WHERE NOT EXISTS (SELECT 1 FROM txn_line JOIN txn ON txn.id = txn_id "
    "WHERE txn_line.id = row.target_id AND txn.id = row.txn_id AND txn.type = row.txn_type)";

// What was booked by a person and the trail does not tell of, or the other way round.
constexpr const char* kEntriesWithoutAudit =
    "SELECT txn_id FROM me_transaction WHERE of_before = 0 AND NOT EXISTS "
    "(SELECT 1 FROM audit WHERE txn_id BETWEEN first_txn_id AND last_txn_id AND action IN ('journal.record', "
    "'bill.record', 'bill.correct', 'import'))";
constexpr const char* kAuditWithoutEntry =
    "SELECT first_txn_id FROM audit AS line WHERE action IN ('journal.record', 'bill.record', 'bill.correct') "
    "AND NOT EXISTS (SELECT 1 FROM txn WHERE id = first_txn_id) AND NOT EXISTS "
    "(SELECT 1 FROM audit WHERE action = 'journal.remove' AND first_txn_id = line.first_txn_id)";
constexpr const char* kAudit =
    "SELECT id, previous, at, clock, user, system_user, action, first_txn_id, last_txn_id, subject, changes FROM audit "
    "ORDER BY id";
constexpr int kAuditColumns = 11;

// As docs/company-file.md tells it.
void CheckChain(sqlite3* database, Inspection& inspection) {
  std::string before(standalone::kSha256Digits, '0');
  std::int64_t number = 0;
  ForEach(database, kAudit, [&](Columns row) {
    std::string netstrings;
    const auto take = [&] {
      std::string text = row.Text();
      netstrings += std::to_string(text.size()) + ':' + text + ',';
      return text;
    };
    const bool isNext = take() == std::to_string(++number);
    const bool goesOn = take() == before;
    if (!isNext || !goesOn) inspection.separated.push_back("the audit trail breaks at line " + std::to_string(number));
    for (int column = 2; column < kAuditColumns; ++column) take();
    before = standalone::Sha256Of(netstrings);
  });
}

bool HasTable(sqlite3* database, const std::string& table) {
  bool hasTable = false;
  ForEach(database, ("SELECT 1 FROM sqlite_schema WHERE name = '" + table + "'").c_str(),
          [&](Columns) { hasTable = true; });
  return hasTable;
}

// Files of before have no trail.
void CheckAudit(sqlite3* database, Inspection& inspection) {
  if (!HasTable(database, "audit")) return;
  CheckChain(database, inspection);
  CollectFaults(database, kEntriesWithoutAudit, "not told by the audit trail: transaction ", inspection.separated);
  CollectFaults(database, kAuditWithoutEntry, "told by the audit trail but not there: transaction ",
                inspection.separated);
}

void CheckRules(sqlite3* database, Inspection& inspection) {
  CollectFaults(database, kUnsound, "not sound: ", inspection.faults);
  CollectFaults(database, kDangling, "broken reference: ", inspection.faults);
  CollectFaults(database, kNotPosted, "not posted: transaction ", inspection.faults);
  CollectFaults(database, kTooFewLines, "fewer than two lines: transaction ", inspection.faults);
  CollectFaults(database, kUnbalanced, "does not sum to zero: transaction ", inspection.faults);
  CollectFaults(database, kBookedTwice, "booked twice: request ", inspection.faults);
  CollectFaults(database, kEntriesWithoutRow, "a journal entry without an intercompany row: transaction ",
                inspection.separated);
  CollectFaults(database, kRowsWithoutEntry, "an intercompany row without its entry: transaction ",
                inspection.separated);
}

// Files of before have none.
void ReadWhatIsJoined(sqlite3* database, Contents& contents) {
  if (!HasTable(database, "txn_link")) return;
  ForEach(database, "SELECT txn_id, kind, earlier_txn_id FROM txn_link ORDER BY txn_id, kind", [&](Columns columns) {
    Link& link = contents.transactions[columns.Number()].links.emplace_back();
    link.kind = columns.Text();
    link.earlier = columns.Number();
  });
  ForEach(database,
          "SELECT txn_id, target_id, names, earlier_target_id FROM me_own_request JOIN txn_line ON txn_line.id = "
          "target_id WHERE names IS NOT NULL",
          [&](Columns columns) {
            std::vector<IntercompanyRow>& rows = contents.transactions[columns.Number()].rows;
            const auto row = std::ranges::find(rows, columns.Number(), &IntercompanyRow::line);
            if (row == rows.end()) return;
            row->names = columns.Text();
            row->earlierLine = columns.Number();
          });
}

Contents Read(sqlite3* database) {
  Contents contents;
  ForEach(database,
          "SELECT txn.id, type, date, full_name, memo, posted, partner_confirmed FROM txn LEFT JOIN name ON name.id = "
          "name_id",
          [&](Columns row) {
            Transaction& transaction = contents.transactions[row.Number()];
            transaction.type = row.Small();
            transaction.date = row.Number();
            transaction.name = row.Text();
            transaction.memo = row.Text();
            transaction.posted = row.Flag();
            transaction.confirmed = row.Flag();
          });
  ForEach(database,
          "SELECT txn_id, txn_line.id, full_name, amount FROM txn_line JOIN account ON account.id = account_id "
          "ORDER BY txn_line.id",
          [&](Columns row) {
            std::vector<EntryLine>& lines = contents.transactions[row.Number()].lines;
            EntryLine& line = lines.emplace_back();
            line.id = row.Number();
            line.account = row.Text();
            line.amount = row.Number();
          });
  ForEach(database,
          "SELECT txn_id, target_id, realm_id, request_id, txn_type, me_transaction.state FROM me_transaction JOIN "
          "me_relation ON me_relation.id = relation_id ORDER BY target_id",
          [&](Columns columns) {
            IntercompanyRow& row = contents.transactions[columns.Number()].rows.emplace_back();
            row.line = columns.Number();
            row.realm = columns.Text();
            row.request = columns.Text();
            row.type = columns.Small();
            row.state = columns.Small();
          });
  ReadWhatIsJoined(database, contents);
  ForEach(database, "SELECT full_name FROM account", [&](Columns row) { contents.accounts.insert(row.Text()); });
  ForEach(database, "SELECT full_name FROM name", [&](Columns row) { contents.names.insert(row.Text()); });
  return contents;
}

void CopyIfThere(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::filesystem::remove(to);
  if (std::filesystem::exists(from)) std::filesystem::copy_file(from, to);
}

}  // namespace

Inspection Inspect(const std::filesystem::path& file) {
  Inspection inspection;
  try {
    const DatabaseHandle database = Open(file);
    CheckRules(database.get(), inspection);
    CheckAudit(database.get(), inspection);
    inspection.contents = Read(database.get());
  } catch (const std::runtime_error& error) {
    inspection.faults.push_back("the file " + std::string(error.what()));
  }
  return inspection;
}

std::filesystem::path CopyOf(const std::filesystem::path& file) {
  std::filesystem::path copy = file.string() + ".copy";
  CopyIfThere(file, copy);
  CopyIfThere(file.string() + "-wal", copy.string() + "-wal");
  std::filesystem::remove(copy.string() + "-shm");
  return copy;
}

Inspection InspectCopy(const std::filesystem::path& file) {
  return Inspect(CopyOf(file));
}
