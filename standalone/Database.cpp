#include "standalone/Database.h"

#include <sqlite3.h>

#include <memory>
#include <utility>

#include "standalone/Errors.h"
#include "standalone/Text.h"

namespace standalone {

namespace {

// What a booking writes. Everything else is taken for one of the lists, which is right for the schema, too.
bool HoldsBookings(std::string_view table) {
  return table == "txn" || table == "txn_line" || table == "me_transaction" || table == "me_rejected_transaction";
}

bool IsDamage(int code) {
  const int primary = code & 0xFF;
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

bool IsInUse(int code) {
  const int primary = code & 0xFF;
  return primary == SQLITE_BUSY || primary == SQLITE_LOCKED || primary == SQLITE_PROTOCOL;
}

// What went wrong with the file and what to do about it; `reason` is the engine's.
std::string Complaint(const std::filesystem::path& file, int code, const std::string& reason) {
  const std::string name = "The company file " + PathText(file);
  if (IsInUse(code)) return name + " is in use by another program. Try again later.";
  switch (code & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return name + " is damaged (" + reason + "). Restore it from a backup.";
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
      return name + " cannot be worked on (" + reason +
             "). Check that you may write it, the files beside it and its folder.";
    case SQLITE_FULL:
    case SQLITE_IOERR:
      return name + " cannot be worked on (" + reason + "). Check that its disk is there and has room.";
    case SQLITE_ERROR:
      return name + " cannot be worked on (" + reason + "). Restore it from a backup if it is damaged.";
    default:
      return name + " cannot be worked on (" + reason + ").";
  }
}

}  // namespace

Database::Database(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout) : name_(file) {
  const int code = sqlite3_open_v2(PathText(file).c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                   /*zVfs=*/nullptr);
  if (code != SQLITE_OK) {
    const std::string reason = handle_ != nullptr ? sqlite3_errmsg(handle_) : "out of memory";
    sqlite3_close(handle_);
    throw CompanyFileError("The company file " + PathText(file) + " cannot be opened (" + reason +
                           "). Check that it exists and that you may read and write it.");
  }
  if (sqlite3_db_readonly(handle_, "main") != 0) {
    sqlite3_close(handle_);
    throw CompanyFileError("The company file " + PathText(file) +
                           " is write-protected. Give yourself the right to write it.");
  }
  sqlite3_extended_result_codes(handle_, 1);
  sqlite3_busy_timeout(handle_, static_cast<int>(busyTimeout.count()));
  sqlite3_set_authorizer(handle_, &NoticeWrittenTable, this);
}

Database Database::InMemory() {
  return {":memory:", std::chrono::milliseconds::zero()};
}

Database::~Database() {
  for (sqlite3_stmt* const statement : {beginReading_, beginWriting_, commit_, otherWriters_}) {
    sqlite3_finalize(statement);
  }
  sqlite3_close_v2(handle_);
}

void Database::Execute(const char* sql) {
  ForgetWhatWasRead();
  const int code = sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) Fail(code);
}

std::int64_t Database::QueryNumber(const char* sql) {
  const std::string text = QueryText(sql);
  return text.empty() ? 0 : std::stoll(text);
}

std::string Database::QueryText(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr);
  if (code != SQLITE_OK) Fail(code);
  code = sqlite3_step(statement);
  std::string text;
  if (code == SQLITE_ROW && sqlite3_column_type(statement, 0) != SQLITE_NULL) {
    text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
  }
  sqlite3_finalize(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) Fail(code);
  return text;
}

void Database::ForEachRow(const char* sql, const std::function<void(const Rows& row)>& take) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr);
  if (code != SQLITE_OK) Fail(code);
  const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> owner(statement, &sqlite3_finalize);
  for (Rows rows(*this, statement); rows.Step();) take(rows);
}

bool Database::Accepts(const char* sql) {
  ForgetWhatWasRead();
  const int code = sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
  const int primary = code & 0xFF;
  if (primary == SQLITE_ERROR || primary == SQLITE_CONSTRAINT) return false;
  if (code != SQLITE_OK) Fail(code);
  return true;
}

void Database::AllowCheckpointOnClose(bool allowed) {
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, allowed ? 0 : 1, nullptr);
}

void Database::CopyInto(const std::filesystem::path& file) {
  Database copy(file, std::chrono::milliseconds::zero());
  sqlite3_backup* const backup = sqlite3_backup_init(copy.handle_, "main", handle_, "main");
  if (backup == nullptr) copy.Fail(sqlite3_extended_errcode(copy.handle_));
  constexpr int kAllPages = -1;
  const int code = sqlite3_backup_step(backup, kAllPages);
  sqlite3_backup_finish(backup);
  if (code != SQLITE_DONE) copy.Fail(code);
}

void Database::Begin(Access access) {
  if (inUnit_) throw UnitOfWorkError("A unit of work is already open.");
  if (access == Access::kWrite && !whyNotWriting_.empty()) throw UnitOfWorkError(whyNotWriting_);
  spoiledBy_.clear();
  const int code = access == Access::kWrite ? Step(beginWriting_, "BEGIN IMMEDIATE") : Step(beginReading_, "BEGIN");
  if ((code & 0xFF) == SQLITE_BUSY) throw UnitOfWorkError(Complaint(name_, code, sqlite3_errmsg(handle_)));
  if (code != SQLITE_OK) Fail(code);
  inUnit_ = true;
  access_ = access;
  if (access == Access::kRead) return;
  try {
    NoticeOtherWriters();
  } catch (...) {
    Rollback();
    throw;
  }
}

void Database::Commit() {
  if (!inUnit_) throw UnitOfWorkError("There is no unit of work to commit.");
  NoticeLostUnit();
  if (!spoiledBy_.empty()) ThrowSpoiled();
  DropWhatTheUnitKept();
  const int code = Step(commit_, "COMMIT");
  if (code != SQLITE_OK) {
    spoiledBy_ = sqlite3_errmsg(handle_);
    spoiledCode_ = code;
    ThrowSpoiled();
  }
  inUnit_ = false;
  hasNoticedOthers_ = false;
}

void Database::Rollback() noexcept {
  if (!inUnit_) return;
  inUnit_ = false;
  hasNoticedOthers_ = false;
  ForgetWhatWasRead();
  DropWhatTheUnitKept();
  if (sqlite3_get_autocommit(handle_) == 0) sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

// A unit sees one state of the file, so that asking once in it is enough.
void Database::NoticeOtherWriters() {
  RequireUsable(Writes::kNothing);
  if (otherWriters_ == nullptr) Prepare("PRAGMA data_version", otherWriters_);
  sqlite3_step(otherWriters_);
  const int version = sqlite3_column_int(otherWriters_, 0);
  const int code = sqlite3_reset(otherWriters_);
  if (code != SQLITE_OK) Fail(code);
  if (version != othersVersion_) {
    ForgetWhatWasRead();
    NoticeOtherVersion();
  }
  othersVersion_ = version;
  hasNoticedOthers_ = true;
}

// The rules of another version are not this program's.
void Database::NoticeOtherVersion() {
  if (version_ == 0) return;
  const std::int64_t version = QueryNumber("PRAGMA user_version");
  if (version == version_) return;
  spoiledBy_ = "another program has brought it to schema version " + std::to_string(version) + "; open it again";
  spoiledCode_ = SQLITE_SCHEMA;
  ThrowSpoiled();
}

std::int64_t Database::LastInsertedId() const noexcept {
  return sqlite3_last_insert_rowid(handle_);
}

std::int64_t Database::ChangedRows() const noexcept {
  return sqlite3_changes64(handle_);
}

// Runs a statement that is prepared at its first use and kept.
int Database::Step(sqlite3_stmt*& statement, const char* sql) noexcept {
  if (statement == nullptr) {
    const int code = sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, /*pzTail=*/nullptr);
    if (code != SQLITE_OK) return code;
  }
  sqlite3_step(statement);
  return sqlite3_reset(statement);
}

void Database::DropWhatTheUnitKept() noexcept {
  for (UnitBound* const kept : unitBound_) kept->Drop();
}

// Told by the engine, while it prepares a statement, of each table that the statement, a trigger of it or a reference's
// action writes.
int Database::NoticeWrittenTable(void* self, int action, const char* table, const char* /*column*/,
                                 const char* /*schema*/, const char* /*trigger*/) {
  const bool writes = action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE;
  if (writes && !HoldsBookings(table)) static_cast<Database*>(self)->preparesWriteToLists_ = true;
  return SQLITE_OK;
}

Database::Writes Database::Prepare(const char* sql, sqlite3_stmt*& statement) {
  preparesWriteToLists_ = false;
  const int code = sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, /*pzTail=*/nullptr);
  if (code != SQLITE_OK) Fail(code);
  if (sqlite3_stmt_readonly(statement) != 0) return Writes::kNothing;
  return preparesWriteToLists_ ? Writes::kLists : Writes::kBookings;
}

void Database::ForgetWhatWasRead() noexcept {
  ++readVersion_;
  ++listsVersion_;
}

void Database::RequireUsable(Writes writes) {
  if (!inUnit_) throw UnitOfWorkError("The company file is only worked on within a unit of work.");
  NoticeLostUnit();
  if (!spoiledBy_.empty()) ThrowSpoiled();
  if (writes == Writes::kNothing) return;
  if (access_ != Access::kWrite) throw UnitOfWorkError("A unit of work for reading does not write.");
  ++readVersion_;
  if (writes == Writes::kLists) ++listsVersion_;
}

void Database::Fail(int code) {
  ForgetWhatWasRead();
  hasNoticedOthers_ = false;
  const std::string reason = sqlite3_errmsg(handle_);
  const bool isConstraint = (code & 0xFF) == SQLITE_CONSTRAINT;
  if (inUnit_) {
    NoticeLostUnit();
    if (isConstraint && spoiledBy_.empty()) throw ConstraintViolation(reason);
    spoiledBy_ = reason;
    spoiledCode_ = code;
    ThrowSpoiled();
  }
  if (isConstraint) throw ConstraintViolation(reason);
  if (IsInUse(code)) throw FileInUse(Complaint(name_, code, reason));
  throw CompanyFileError(Complaint(name_, code, reason));
}

void Database::ThrowSpoiled() const {
  const std::string complaint = Complaint(name_, spoiledCode_, spoiledBy_);
  if (IsDamage(spoiledCode_)) throw CompanyFileError(complaint);
  throw UnitOfWorkError("Nothing was saved. " + complaint);
}

// The engine rolls back by itself after some failures, a full disk among them. What follows would then find nothing and
// write what nobody commits.
void Database::NoticeLostUnit() {
  if (inUnit_ && spoiledBy_.empty() && sqlite3_get_autocommit(handle_) != 0) {
    spoiledBy_ = "the database engine undid the work";
    spoiledCode_ = SQLITE_ABORT;
  }
}

Rows::Rows(Rows&& other) noexcept : database_(other.database_), statement_(std::exchange(other.statement_, nullptr)) {}

Rows::~Rows() {
  if (statement_ != nullptr) sqlite3_reset(statement_);
}

bool Rows::Step() {
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) database_.Fail(code);
  return false;
}

std::int64_t Rows::Int64(int column) const {
  return sqlite3_column_int64(statement_, column);
}

std::int32_t Rows::Int32(int column) const {
  return sqlite3_column_int(statement_, column);
}

std::int16_t Rows::Int16(int column) const {
  return static_cast<std::int16_t>(sqlite3_column_int(statement_, column));
}

bool Rows::Bool(int column) const {
  return sqlite3_column_int(statement_, column) != 0;
}

std::string_view Rows::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  return text != nullptr ? std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)))
                         : std::string_view();
}

Statement::~Statement() {
  sqlite3_finalize(statement_);
}

Rows Statement::Start() {
  if (statement_ == nullptr) writes_ = database_.Prepare(sql_, statement_);
  database_.RequireUsable(writes_);
  return {database_, statement_};
}

void Statement::Bind(int index, std::int64_t value) {
  const int code = sqlite3_bind_int64(statement_, index, value);
  if (code != SQLITE_OK) database_.Fail(code);
}

void Statement::Bind(int index, std::string_view value) {
  // An empty view may be null, which would bind NULL.
  const char* text = value.data() != nullptr ? value.data() : "";
  const int code = sqlite3_bind_text64(statement_, index, text, value.size(), SQLITE_STATIC, SQLITE_UTF8);
  if (code != SQLITE_OK) database_.Fail(code);
}

void Statement::Bind(int index, std::nullptr_t) {
  const int code = sqlite3_bind_null(statement_, index);
  if (code != SQLITE_OK) database_.Fail(code);
}

UnitBound::UnitBound(Database& database) : database_(database) {
  database_.unitBound_.push_back(this);
}

UnitBound::~UnitBound() {
  std::erase(database_.unitBound_, this);
}

UnitOfWork::UnitOfWork(Database& database, Access access) : database_(database) {
  database_.Begin(access);
}

UnitOfWork::~UnitOfWork() {
  database_.Rollback();
}

void UnitOfWork::Commit() {
  database_.Commit();
}

void OutsideUnit(Database& database, const std::function<void()>& work) {
  if (!database.InUnit()) {
    work();
    return;
  }
  const Access access = database.UnitAccess();
  database.Commit();
  try {
    work();
  } catch (...) {
    // Whoever catches it goes on working.
    database.Begin(access);
    throw;
  }
  database.Begin(access);
}

}  // namespace standalone
