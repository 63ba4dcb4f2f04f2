#include "standalone/Schema.h"

#include <algorithm>
#include <array>
#include <bit>
#include <fstream>
#include <string>

#include "standalone/Errors.h"
#include "standalone/Text.h"
#include "standalone/WriteAheadLog.h"

namespace standalone {

namespace {

constexpr const char* kVersion1 = R"sql(
CREATE TABLE company (
  id INTEGER PRIMARY KEY CHECK (id = 1),
  name TEXT NOT NULL,
  home_currency TEXT NOT NULL,
  multi_currency INTEGER NOT NULL CHECK (multi_currency IN (0, 1)),
  sample_file INTEGER NOT NULL CHECK (sample_file IN (0, 1)),
  accountants_copy INTEGER NOT NULL CHECK (accountants_copy IN (0, 1))
) STRICT;

CREATE TABLE preference (
  key TEXT PRIMARY KEY NOT NULL,
  value TEXT NOT NULL
) STRICT, WITHOUT ROWID;

CREATE TABLE account (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  parent_id INTEGER REFERENCES account (id),
  name TEXT NOT NULL CHECK (name <> ''),
  full_name TEXT NOT NULL COLLATE NOCASE,
  type INTEGER NOT NULL CHECK (type BETWEEN 0 AND 32767),
  special_kind INTEGER NOT NULL CHECK (special_kind BETWEEN 0 AND 2147483647),
  deleted INTEGER NOT NULL CHECK (deleted IN (0, 1))
) STRICT;
CREATE UNIQUE INDEX account_full_name ON account (full_name) WHERE deleted = 0;
CREATE INDEX account_type ON account (type, full_name) WHERE deleted = 0;
CREATE INDEX account_parent ON account (parent_id);

CREATE TABLE name (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  parent_id INTEGER REFERENCES name (id),
  name TEXT NOT NULL CHECK (name <> ''),
  full_name TEXT NOT NULL COLLATE NOCASE UNIQUE,
  kind INTEGER NOT NULL CHECK (kind BETWEEN 0 AND 3)
) STRICT;
CREATE INDEX name_parent ON name (parent_id);

-- The date is year * 65536 + month * 256 + day, so that numbers compare as days do.
CREATE TABLE txn (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  type INTEGER NOT NULL CHECK (type IN (3, 8, 9)),
  date INTEGER NOT NULL CHECK (date > 0),
  name_id INTEGER REFERENCES name (id),
  memo TEXT NOT NULL,
  posted INTEGER NOT NULL DEFAULT 0 CHECK (posted IN (0, 1)),
  partner_confirmed INTEGER NOT NULL DEFAULT 0 CHECK (partner_confirmed IN (0, 1))
) STRICT;
CREATE INDEX txn_type_date ON txn (type, date);
CREATE INDEX txn_name ON txn (name_id);

-- AUTOINCREMENT: the id of a deleted line is never given to another one, and the lines of one booking are neighbours.
CREATE TABLE txn_line (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  txn_id INTEGER NOT NULL REFERENCES txn (id) ON DELETE CASCADE,
  account_id INTEGER NOT NULL REFERENCES account (id),
  amount INTEGER NOT NULL CHECK (amount BETWEEN -9999999999999 AND 9999999999999),
  memo TEXT NOT NULL
) STRICT;
CREATE INDEX txn_line_txn ON txn_line (txn_id);
CREATE INDEX txn_line_account ON txn_line (account_id);

CREATE TRIGGER txn_insert_posted BEFORE INSERT ON txn WHEN NEW.posted <> 0 BEGIN
  SELECT RAISE(ABORT, 'a transaction is posted after its lines are entered');
END;
CREATE TRIGGER txn_post BEFORE UPDATE OF posted ON txn WHEN OLD.posted = 0 AND NEW.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a transaction needs at least two lines')
    WHERE (SELECT count(*) FROM txn_line WHERE txn_id = NEW.id) < 2;
  SELECT RAISE(ABORT, 'the lines of a transaction must sum to zero')
    WHERE (SELECT sum(amount) FROM txn_line WHERE txn_id = NEW.id) <> 0;
END;
CREATE TRIGGER txn_change_posted BEFORE UPDATE OF id, type, date, name_id, memo, posted ON txn WHEN OLD.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a posted transaction does not change');
END;
CREATE TRIGGER txn_line_insert_posted BEFORE INSERT ON txn_line
    WHEN (SELECT posted FROM txn WHERE id = NEW.txn_id) = 1 BEGIN
  SELECT RAISE(ABORT, 'a posted transaction takes no more lines');
END;
CREATE TRIGGER txn_line_update_posted BEFORE UPDATE ON txn_line
    WHEN (SELECT max(posted) FROM txn WHERE id IN (OLD.txn_id, NEW.txn_id)) = 1 BEGIN
  SELECT RAISE(ABORT, 'a line of a posted transaction does not change');
END;
-- Deleting the transaction itself removes its lines after it is gone, which this lets through.
CREATE TRIGGER txn_line_delete_posted BEFORE DELETE ON txn_line
    WHEN (SELECT posted FROM txn WHERE id = OLD.txn_id) = 1 BEGIN
  SELECT RAISE(ABORT, 'a line of a posted transaction is not deleted');
END;

CREATE TABLE me_relation (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  realm_id TEXT NOT NULL UNIQUE CHECK (length(CAST(realm_id AS BLOB)) BETWEEN 1 AND 19),
  partner_name TEXT NOT NULL CHECK (length(CAST(partner_name AS BLOB)) <= 59),
  relation_type INTEGER NOT NULL,
  state INTEGER NOT NULL,
  created_at INTEGER NOT NULL,
  changed_at INTEGER NOT NULL,
  revision INTEGER NOT NULL,
  due_from_account_id INTEGER NOT NULL,
  due_to_account_id INTEGER NOT NULL
) STRICT;
CREATE INDEX me_relation_due_from ON me_relation (due_from_account_id);
CREATE INDEX me_relation_due_to ON me_relation (due_to_account_id);

-- No reference to txn: a removal may leave a row behind when the entry is already gone.
CREATE TABLE me_transaction (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  txn_id INTEGER NOT NULL,
  target_id INTEGER NOT NULL UNIQUE,
  relation_id INTEGER NOT NULL REFERENCES me_relation (id),
  request_id TEXT NOT NULL CHECK (length(CAST(request_id AS BLOB)) <= 36),
  txn_type INTEGER NOT NULL,
  state INTEGER NOT NULL,
  UNIQUE (txn_id, target_id)
) STRICT;
CREATE INDEX me_transaction_request ON me_transaction (relation_id, request_id);
CREATE UNIQUE INDEX me_transaction_journal_request ON me_transaction (relation_id, request_id)
  WHERE txn_type = 8 AND request_id <> '';

CREATE TABLE me_rejected_transaction (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  request_id TEXT NOT NULL CHECK (length(CAST(request_id AS BLOB)) <= 36),
  txn_type INTEGER NOT NULL,
  relation_id INTEGER NOT NULL,
  amount TEXT NOT NULL,
  partner_txn_id TEXT NOT NULL
) STRICT;
CREATE INDEX me_rejected_transaction_request ON me_rejected_transaction (request_id);

CREATE TABLE user (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  name TEXT NOT NULL COLLATE NOCASE UNIQUE CHECK (name <> ''),
  administrator INTEGER NOT NULL CHECK (administrator IN (0, 1)),
  accountant INTEGER NOT NULL CHECK (accountant IN (0, 1))
) STRICT;
CREATE TABLE user_feature_right (
  user_id INTEGER NOT NULL REFERENCES user (id) ON DELETE CASCADE,
  feature INTEGER NOT NULL,
  action INTEGER NOT NULL,
  PRIMARY KEY (user_id, feature, action)
) STRICT, WITHOUT ROWID;
CREATE TABLE user_list_right (
  user_id INTEGER NOT NULL REFERENCES user (id) ON DELETE CASCADE,
  list INTEGER NOT NULL,
  action INTEGER NOT NULL,
  PRIMARY KEY (user_id, list, action)
) STRICT, WITHOUT ROWID;
)sql";

constexpr std::array kSteps{kVersion1};

constexpr std::size_t kHeaderLength = 100;
constexpr std::string_view kMagic{"SQLite format 3\0", 16};
// Larger files are not read through at each opening; the engine still notices damage where it meets it. Comparing the
// indexes with their tables takes four times as long as the rest.
constexpr std::int64_t kChecksIndexesUpTo = 2 << 20;
constexpr std::int64_t kChecksWholeFileUpTo = 8 << 20;

using Header = std::array<char, kHeaderLength>;

std::uint32_t BigEndian(const Header& header, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(header[offset + i]);
  return value;
}

[[noreturn]] void ThrowNotOurs(const std::filesystem::path& file) {
  throw CompanyFileError(PathText(file) + " is not a company file. Name a file that was made by 'init'.");
}

[[noreturn]] void ThrowNotReadable(const std::filesystem::path& file) {
  throw CompanyFileError("The company file " + PathText(file) +
                         " cannot be opened. Check that you may read and write it, and enter its folder.");
}

[[noreturn]] void ThrowNewer(const std::filesystem::path& file, std::int64_t version, std::size_t newestVersion) {
  throw CompanyFileError("The company file " + PathText(file) + " has schema version " + std::to_string(version) +
                         ", this program knows up to " + std::to_string(newestVersion) +
                         ". Open it with the newer program that wrote it.");
}

[[noreturn]] void ThrowDamaged(const std::filesystem::path& file, const std::string& reason) {
  throw CompanyFileError("The company file " + PathText(file) + " is damaged (" + reason +
                         "). Restore it from a backup.");
}

std::uint32_t PageSize(const Header& header) {
  const std::uint32_t stored = BigEndian(header, 16) >> 16U;
  return stored == 1 ? 65536 : stored;
}

bool IsPageSize(std::uint32_t bytes) {
  return bytes >= 512 && bytes <= 65536 && std::has_single_bit(bytes);
}

bool HasLogToReplay(const std::filesystem::path& file) {
  std::error_code ignored;
  std::filesystem::path log = file;
  log += "-wal";
  const std::uintmax_t size = std::filesystem::file_size(log, ignored);
  return !ignored && size != 0;
}

// The page count in the header, unless an older program left it stale; 0 then.
std::uint64_t ExpectedBytes(const Header& header) {
  const bool isCurrent = BigEndian(header, 24) == BigEndian(header, 92);
  return isCurrent ? std::uint64_t{PageSize(header)} * BigEndian(header, 28) : 0;
}

// The file's rules live in its triggers and checks. Others may have added to them.
void RequireSchemaAsMade(Database& database) {
  constexpr char kSeparator = '\x01';
  constexpr std::string_view kCreate = "\nCREATE ";
  std::string steps;
  for (const char* step : SchemaSteps()) steps += step;
  std::size_t missing = 0;
  for (std::size_t at = steps.find(kCreate); at != std::string::npos; at = steps.find(kCreate, at + 1)) ++missing;

  const std::string made =
      database.QueryText("SELECT group_concat(sql, char(1)) FROM sqlite_schema WHERE sql IS NOT NULL");
  for (std::string_view rest = made; !rest.empty();) {
    const std::string_view object = rest.substr(0, rest.find(kSeparator));
    if (!object.empty() && steps.find(object) != std::string::npos) --missing;
    rest.remove_prefix(std::min(object.size() + 1, rest.size()));
  }
  if (missing != 0) ThrowDamaged(database.File(), "a rule or an index of its schema is missing or was changed");
}

}  // namespace

std::span<const char* const> SchemaSteps() noexcept {
  return kSteps;
}

void RequireCompanyFileHeader(const std::filesystem::path& file, std::size_t newestVersion) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::none) ThrowNotReadable(file);
  if (!std::filesystem::exists(status)) {
    throw CompanyFileError("There is no company file " + PathText(file) + ". Check the name, or make it with 'init'.");
  }
  if (!std::filesystem::is_regular_file(status)) ThrowNotOurs(file);

  std::ifstream stream(file, std::ios::binary);
  if (!stream) ThrowNotReadable(file);
  Header header{};
  stream.read(header.data(), header.size());
  if (stream.gcount() != static_cast<std::streamsize>(header.size())) ThrowNotOurs(file);
  if (std::string_view(header.data(), kMagic.size()) != kMagic) ThrowNotOurs(file);
  if (BigEndian(header, 68) != static_cast<std::uint32_t>(kApplicationId)) ThrowNotOurs(file);

  const std::uint32_t version = BigEndian(header, 60);
  if (version > newestVersion) ThrowNewer(file, version, newestVersion);
  if (version == 0) ThrowDamaged(file, "its schema version is missing");
  const std::uint32_t pageSize = PageSize(header);
  if (!IsPageSize(pageSize)) ThrowDamaged(file, "its page size is " + std::to_string(pageSize));
  if (HasLogToReplay(file)) {
    // The log may hold the pages that are missing.
    if (IsLogDamaged(file, pageSize)) ThrowDamaged(file, "its write-ahead log is broken");
  } else if (std::filesystem::file_size(file) < ExpectedBytes(header)) {
    ThrowDamaged(file, "its end is missing");
  }
}

void Migrate(Database& database, std::span<const char* const> steps) {
  const auto newest = static_cast<std::int64_t>(steps.size());
  const auto readVersion = [&] {
    const std::int64_t version = database.QueryNumber("PRAGMA user_version");
    if (version < 0 || version > newest) ThrowNewer(database.File(), version, steps.size());
    return version;
  };
  while (readVersion() != newest) {
    UnitOfWork unit(database, Access::kWrite);
    // Another program may have taken the step while this one waited.
    const std::int64_t version = readVersion();
    if (version == newest) return;
    database.Execute(steps[static_cast<std::size_t>(version)]);
    database.Execute(("PRAGMA user_version = " + std::to_string(version + 1)).c_str());
    unit.Commit();
  }
}

void RequireSound(Database& database) {
  constexpr int kTables = 12;
  const std::int64_t tables = database.QueryNumber(
      "SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND name IN ('company', 'preference', 'account', "
      "'name', "
      "'txn', 'txn_line', 'me_relation', 'me_transaction', 'me_rejected_transaction', 'user', 'user_feature_right', "
      "'user_list_right')");
  if (tables != kTables) ThrowDamaged(database.File(), "tables are missing");
  RequireSchemaAsMade(database);

  const std::int64_t bytes = database.QueryNumber("PRAGMA page_count") * database.QueryNumber("PRAGMA page_size");
  if (bytes > kChecksWholeFileUpTo) return;
  const std::string finding =
      database.QueryText(bytes <= kChecksIndexesUpTo ? "PRAGMA integrity_check(1)" : "PRAGMA quick_check(1)");
  if (finding != "ok") ThrowDamaged(database.File(), finding);
  const std::string table = database.QueryText("SELECT \"table\" FROM pragma_foreign_key_check LIMIT 1");
  if (!table.empty()) ThrowDamaged(database.File(), "a row of " + table + " refers to one that is missing");
  const std::string transaction = database.QueryText(
      "SELECT txn_id FROM txn_line GROUP BY txn_id HAVING sum(amount) <> 0 AND (SELECT posted FROM txn WHERE id = "
      "txn_id) = 1 LIMIT 1");
  if (!transaction.empty()) {
    ThrowDamaged(database.File(), "the lines of transaction " + transaction + " do not sum to zero");
  }
}

}  // namespace standalone
