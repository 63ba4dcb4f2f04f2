#include "standalone/storage/sqlite/SqliteDatabase.h"

#include <sqlite3.h>

#include <initializer_list>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

class SqliteStatement final : public PreparedStatement {
 public:
  explicit SqliteStatement(sqlite3_stmt* statement) noexcept : statement_(statement) {}
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;
  ~SqliteStatement() override { sqlite3_finalize(statement_); }

  bool OnlyReads() const noexcept override { return sqlite3_stmt_readonly(statement_) != 0; }

  bool Bind(int parameter, std::int64_t value) override {
    return sqlite3_bind_int64(statement_, parameter, value) == SQLITE_OK;
  }
  bool Bind(int parameter, std::string_view value) override {
    // An empty view may be null, which would bind NULL.
    const char* text = value.data() != nullptr ? value.data() : "";
    return sqlite3_bind_text64(statement_, parameter, text, value.size(), SQLITE_STATIC, SQLITE_UTF8) == SQLITE_OK;
  }
  bool Bind(int parameter, Blob value) override {
    // An empty view may be null, which would bind NULL.
    const char* bytes = value.bytes.data() != nullptr ? value.bytes.data() : "";
    return sqlite3_bind_blob64(statement_, parameter, bytes, value.bytes.size(), SQLITE_STATIC) == SQLITE_OK;
  }
  bool BindNull(int parameter) override { return sqlite3_bind_null(statement_, parameter) == SQLITE_OK; }

  Outcome Step() override {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return Outcome::kRow;
    return code == SQLITE_DONE ? Outcome::kDone : Outcome::kFailed;
  }
  void Reset() noexcept override { sqlite3_reset(statement_); }

  std::int64_t Int64(int column) const override { return sqlite3_column_int64(statement_, column); }
  std::string_view Text(int column) const override {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return text != nullptr ? std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)))
                           : std::string_view();
  }
  std::string_view Bytes(int column) const override {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    return bytes != nullptr
               ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)))
               : std::string_view();
  }

 private:
  sqlite3_stmt* statement_;
};

// To the engine ":memory:", "" and, where it is built so, all that begins with "file:" are no names of files.
std::filesystem::path AsFileName(const std::filesystem::path& file) {
  return file.is_relative() ? "." / file : file;
}

}  // namespace

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout)
    : SqliteDatabase(file, PathText(AsFileName(file)).c_str(), busyTimeout) {}

SqliteDatabase::SqliteDatabase(const std::filesystem::path& name, const char* nameForEngine,
                               std::chrono::milliseconds busyTimeout)
    : Database(name) {
  const int code = sqlite3_open_v2(nameForEngine, &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                   /*zVfs=*/nullptr);
  if (code != SQLITE_OK) {
    const std::string reason = handle_ != nullptr ? sqlite3_errmsg(handle_) : "out of memory";
    sqlite3_close(handle_);
    throw CompanyFileError("The company file " + PathText(name) + " cannot be opened (" + reason +
                           "). Check that it exists and that you may read and write it.");
  }
  if (sqlite3_db_readonly(handle_, "main") != 0) {
    sqlite3_close(handle_);
    throw CompanyFileError("The company file " + PathText(name) +
                           " is write-protected. Give yourself the right to write it.");
  }
  sqlite3_extended_result_codes(handle_, 1);
  sqlite3_busy_timeout(handle_, static_cast<int>(busyTimeout.count()));
}

SqliteDatabase SqliteDatabase::InMemory() {
  constexpr const char* kNoFile = ":memory:";
  return {kNoFile, kNoFile, std::chrono::milliseconds::zero()};
}

SqliteDatabase::~SqliteDatabase() {
  for (sqlite3_stmt* const statement : {beginReading_, beginWriting_, commit_, othersVersion_}) {
    sqlite3_finalize(statement);
  }
  sqlite3_close_v2(handle_);
}

void SqliteDatabase::Execute(const char* sql) {
  ForgetWhatWasRead();
  const int code = sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) ThrowFailed(code);
}

std::int64_t SqliteDatabase::QueryNumber(const char* sql) {
  const std::string text = QueryText(sql);
  return text.empty() ? 0 : std::stoll(text);
}

std::string SqliteDatabase::QueryText(const char* sql) {
  const std::unique_ptr<PreparedStatement> statement = Prepare(sql);
  if (statement == nullptr) Fail(WhyFailed());
  Rows rows(*this, *statement);
  return rows.Step() ? std::string(rows.Text(0)) : std::string();
}

void SqliteDatabase::ForEachRow(const char* sql, const std::function<void(const Rows& row)>& take) {
  const std::unique_ptr<PreparedStatement> statement = Prepare(sql);
  if (statement == nullptr) Fail(WhyFailed());
  for (Rows rows(*this, *statement); rows.Step();) take(rows);
}

bool SqliteDatabase::Accepts(const char* sql) {
  ForgetWhatWasRead();
  const int code = sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
  const int primary = code & 0xFF;
  if (primary == SQLITE_ERROR || primary == SQLITE_CONSTRAINT) return false;
  if (code != SQLITE_OK) ThrowFailed(code);
  return true;
}

void SqliteDatabase::AllowCheckpointOnClose(bool allowed) {
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, allowed ? 0 : 1, nullptr);
}

void SqliteDatabase::CopyInto(const std::filesystem::path& file) {
  SqliteDatabase copy(file, std::chrono::milliseconds::zero());
  sqlite3_backup* const backup = sqlite3_backup_init(copy.handle_, "main", handle_, "main");
  if (backup == nullptr) copy.ThrowFailed(sqlite3_extended_errcode(copy.handle_));
  constexpr int kAllPages = -1;
  const int code = sqlite3_backup_step(backup, kAllPages);
  sqlite3_backup_finish(backup);
  if (code != SQLITE_DONE) copy.ThrowFailed(code);
}

std::int64_t SqliteDatabase::LastInsertedId() const noexcept {
  return sqlite3_last_insert_rowid(handle_);
}

std::int64_t SqliteDatabase::ChangedRows() const noexcept {
  return sqlite3_changes64(handle_);
}

bool SqliteDatabase::BeginTransaction(Access access) {
  return access == Access::kWrite ? RunKept(beginWriting_, "BEGIN IMMEDIATE") : RunKept(beginReading_, "BEGIN");
}

// A disk that is full has not taken the end of the log, which alone commits. After any other failure of the disk it may
// be there: it is written before it is brought to the disk, and whoever opens the file after a crash takes it as valid.
Database::CommitOutcome SqliteDatabase::CommitTransaction() {
  if (RunKept(commit_, "COMMIT")) return CommitOutcome::kSaved;
  switch (sqlite3_errcode(handle_) & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_CONSTRAINT:
    case SQLITE_ERROR:
    case SQLITE_FULL:
      return CommitOutcome::kNotSaved;
    default:
      return CommitOutcome::kUnknown;
  }
}

void SqliteDatabase::RollBackTransaction() noexcept {
  if (HasTransaction()) sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

bool SqliteDatabase::HasTransaction() const noexcept {
  return sqlite3_get_autocommit(handle_) == 0;
}

std::unique_ptr<PreparedStatement> SqliteDatabase::Prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, /*pzTail=*/nullptr);
  return code == SQLITE_OK ? std::make_unique<SqliteStatement>(statement) : nullptr;
}

std::int64_t SqliteDatabase::RowsWritten() const noexcept {
  return sqlite3_total_changes64(handle_);
}

bool SqliteDatabase::ReadOthersVersion(std::int64_t& version) {
  if (othersVersion_ == nullptr &&
      sqlite3_prepare_v3(handle_, "PRAGMA data_version", -1, SQLITE_PREPARE_PERSISTENT, &othersVersion_,
                         /*pzTail=*/nullptr) != SQLITE_OK) {
    return false;
  }
  sqlite3_step(othersVersion_);
  version = sqlite3_column_int64(othersVersion_, 0);
  return sqlite3_reset(othersVersion_) == SQLITE_OK;
}

// The rules of another version are not this program's.
std::string SqliteDatabase::WhyOthersStopThis() {
  if (version_ == 0) return {};
  const std::int64_t version = QueryNumber("PRAGMA user_version");
  if (version == version_) return {};
  return "another program has brought it to schema version " + std::to_string(version) + "; open it again";
}

// Runs a statement that is prepared at its first use and kept.
bool SqliteDatabase::RunKept(sqlite3_stmt*& statement, const char* sql) noexcept {
  if (statement == nullptr &&
      sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, /*pzTail=*/nullptr) != SQLITE_OK) {
    return false;
  }
  sqlite3_step(statement);
  return sqlite3_reset(statement) == SQLITE_OK;
}

Database::Failure SqliteDatabase::WhyFailed() const {
  return FailureOf(sqlite3_extended_errcode(handle_));
}

void SqliteDatabase::ThrowFailed(int code) {
  Fail(FailureOf(code));
}

// What sorts or holds much puts it into files of its own elsewhere. A unit that reads writes nothing else.
bool SqliteDatabase::IsOfTemporaryFile(int code) const noexcept {
  if (code == SQLITE_IOERR_GETTEMPPATH) return true;
  const bool onlyReads = InUnit() && UnitAccess() == Access::kRead;
  return onlyReads && (code == SQLITE_FULL || code == SQLITE_IOERR_WRITE);
}

std::string SqliteDatabase::TemporaryFileAdvice() const {
  constexpr const char* kAnother = "let the environment name another one (SQLITE_TMPDIR or TMPDIR, on Windows TMP).";
  char* name = nullptr;
  if (sqlite3_file_control(handle_, "main", SQLITE_FCNTL_TEMPFILENAME, static_cast<void*>(&name)) != SQLITE_OK ||
      name == nullptr) {
    return std::string("There is no temporary folder to write in; ") + kAnother;
  }
  const std::u8string text(reinterpret_cast<const char8_t*>(name));
  sqlite3_free(name);
  return "Make room in the temporary folder " + PathText(std::filesystem::path(text).parent_path()) + ", or " +
         kAnother;
}

Database::Failure SqliteDatabase::FailureOf(int code) const {
  using Kind = Failure::Kind;
  const std::string reason = sqlite3_errmsg(handle_);
  const auto failure = [&](Kind kind, const std::string& what) {
    return Failure{kind, reason, "The company file " + PathText(Name()) + what};
  };
  const std::string notWorkedOn = " cannot be worked on (" + reason + ").";
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return failure(Kind::kInUse, " is in use by another program. Try again later.");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return failure(Kind::kDamaged, " is damaged (" + reason + "). Restore it from a backup.");
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
      return failure(Kind::kOther, notWorkedOn + " Check that you may write it, the files beside it and its folder.");
    case SQLITE_FULL:
    case SQLITE_IOERR:
      return failure(Kind::kOther, notWorkedOn + " " + (IsOfTemporaryFile(code) ? TemporaryFileAdvice() : roomAdvice_));
    case SQLITE_ERROR:
      return failure(Kind::kOther, notWorkedOn + " Restore it from a backup if it is damaged.");
    case SQLITE_CONSTRAINT:
      return failure(Kind::kConstraint, notWorkedOn);
    default:
      return failure(Kind::kOther, notWorkedOn);
  }
}

}  // namespace standalone
