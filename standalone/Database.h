#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace standalone {

class Rows;
class UnitBound;

// What a unit of work may do: read one unchanging state of the file, or read and write while others wait.
enum class Access { kRead, kWrite };

// One connection to a SQLite file, used by one thread. All reading and writing through statements happens in a unit of
// work, of which a connection has one at a time.
//
// Errors: ConstraintViolation leaves the unit of work as it was before the statement. Any other failure of the engine
// spoils the unit: every later statement and the commit throw UnitOfWorkError (CompanyFileError when the file is
// damaged), because what the unit wrote before may be gone.
class Database {
 public:
  // Opens an existing file; throws CompanyFileError.
  Database(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout);
  // An empty one that no file keeps.
  static Database InMemory();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  // Runs statements without results outside of the rules of units of work: for schema, pragmas and the units' own.
  void Execute(const char* sql);
  // The first column of the first row, 0 without a row; like Execute outside of the rules of units of work.
  std::int64_t QueryNumber(const char* sql);
  std::string QueryText(const char* sql);
  // Hands each row to `take`.
  void ForEachRow(const char* sql, const std::function<void(const Rows& row)>& take);

  // Runs one statement without results; false when the statement is not one for this file, which leaves all as it was.
  bool Accepts(const char* sql);

  // Copies all that is committed into an existing empty file, which is a whole database once this returns. Not while
  // this connection writes. Throws CompanyFileError, which names the other file.
  void CopyInto(const std::filesystem::path& file);
  // Whether what is in the write-ahead log may be moved into the file when this connection is the last one to close; so
  // it is unless this says otherwise.
  void AllowCheckpointOnClose(bool allowed);
  // From now on each unit of work that writes throws UnitOfWorkError, and so does one that reads what is held, once
  // another program has given the file another schema version than this.
  void HoldToVersion(std::size_t version) { version_ = static_cast<std::int64_t>(version); }
  // From now on no unit of work that writes begins: it throws UnitOfWorkError with this text.
  void RefuseWriting(std::string why) { whyNotWriting_ = std::move(why); }

  void Begin(Access access);
  void Commit();
  void Rollback() noexcept;
  bool InUnit() const noexcept { return inUnit_; }
  // The engine's reason for which the unit, or the last one if none is open, cannot be committed; empty if it can.
  const std::string& WhyUnitFailed() const noexcept { return spoiledBy_; }
  // The unit's; meaningless outside of one.
  Access UnitAccess() const noexcept { return access_; }

  // A number that stands as long as what was read holds, over the ends of units too: it changes when this connection
  // may have written, when something was undone, when something failed and when another connection has written. Within
  // a unit of work only; throws as a statement does.
  std::uint64_t ReadVersion() {
    if (!hasNoticedOthers_) NoticeOtherWriters();
    return readVersion_;
  }
  // The same for accounts, names, partners, users and settings, which hold while this connection books: only its
  // statements that write one of them change it.
  std::uint64_t ListsVersion() {
    if (!hasNoticedOthers_) NoticeOtherWriters();
    return listsVersion_;
  }

  std::int64_t LastInsertedId() const noexcept;
  std::int64_t ChangedRows() const noexcept;

  // What people call the file; another one than is open when that is a copy of it.
  const std::filesystem::path& Name() const noexcept { return name_; }
  void SetName(std::filesystem::path name) { name_ = std::move(name); }
  sqlite3* Handle() const noexcept { return handle_; }

 private:
  friend class Statement;
  friend class Rows;
  friend class UnitBound;

  // What a statement writes.
  enum class Writes { kNothing, kBookings, kLists };

  static int NoticeWrittenTable(void* self, int action, const char* table, const char* column, const char* schema,
                                const char* trigger);

  int Step(sqlite3_stmt*& statement, const char* sql) noexcept;
  Writes Prepare(const char* sql, sqlite3_stmt*& statement);
  void DropWhatTheUnitKept() noexcept;
  void RequireUsable(Writes writes);
  void ForgetWhatWasRead() noexcept;
  [[noreturn]] void Fail(int code);
  [[noreturn]] void ThrowSpoiled() const;
  void NoticeLostUnit();
  void NoticeOtherWriters();
  void NoticeOtherVersion();

  std::filesystem::path name_;
  sqlite3* handle_ = nullptr;
  sqlite3_stmt* beginReading_ = nullptr;
  sqlite3_stmt* beginWriting_ = nullptr;
  sqlite3_stmt* commit_ = nullptr;
  sqlite3_stmt* otherWriters_ = nullptr;
  std::vector<UnitBound*> unitBound_;
  std::uint64_t readVersion_ = 0;
  std::uint64_t listsVersion_ = 0;
  bool preparesWriteToLists_ = false;
  int othersVersion_ = 0;          // the engine's number for what other connections have written
  bool hasNoticedOthers_ = false;  // in the open unit, which nothing has spoiled since
  bool inUnit_ = false;
  Access access_ = Access::kRead;
  std::int64_t version_ = 0;   // of the schema; 0 for any
  std::string whyNotWriting_;  // empty while writing is allowed
  std::string spoiledBy_;
  int spoiledCode_ = 0;  // the engine's, meaningful while spoiledBy_ is not empty
};

// The rows of a running statement; the statement is ready to run again when this goes out of scope. Texts are valid
// until the next step.
class Rows {
 public:
  Rows(Rows&& other) noexcept;
  Rows& operator=(Rows&&) = delete;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  ~Rows();

  // Goes to the first or the next row; false after the last.
  bool Step();

  std::int64_t Int64(int column) const;
  std::int32_t Int32(int column) const;
  std::int16_t Int16(int column) const;
  bool Bool(int column) const;
  std::string_view Text(int column) const;

 private:
  friend class Database;
  friend class Statement;
  Rows(Database& database, sqlite3_stmt* statement) noexcept : database_(database), statement_(statement) {}

  Database& database_;
  sqlite3_stmt* statement_;
};

// One SQL statement, prepared at its first use and kept. `sql` outlives it. Values are bound in order; texts must stay
// alive while the rows are read.
class Statement {
 public:
  Statement(Database& database, const char* sql) noexcept : database_(database), sql_(sql) {}
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();

  template <typename... Values>
  Rows Query(const Values&... values) {
    Rows rows = Start();
    int index = 0;
    (Bind(++index, values), ...);
    return rows;
  }

  // Runs a statement without rows; returns the number of rows that it changed.
  template <typename... Values>
  std::int64_t Run(const Values&... values) {
    Query(values...).Step();
    return database_.ChangedRows();
  }

 private:
  Rows Start();
  void Bind(int index, std::int64_t value);
  void Bind(int index, std::int32_t value) { Bind(index, static_cast<std::int64_t>(value)); }
  void Bind(int index, std::int16_t value) { Bind(index, static_cast<std::int64_t>(value)); }
  void Bind(int index, std::uint32_t value) { Bind(index, static_cast<std::int64_t>(value)); }
  void Bind(int index, bool value) { Bind(index, static_cast<std::int64_t>(value)); }
  void Bind(int index, std::string_view value);
  void Bind(int index, std::nullptr_t);

  Database& database_;
  const char* sql_;
  sqlite3_stmt* statement_ = nullptr;
  Database::Writes writes_ = Database::Writes::kNothing;
};

// Something that is kept from call to call within a unit of work and dropped at its end, although it may still hold:
// what takes much memory, and what lies outside of the company file, of whose changes no version tells.
class UnitBound {
 public:
  UnitBound(const UnitBound&) = delete;
  UnitBound& operator=(const UnitBound&) = delete;

 protected:
  explicit UnitBound(Database& database);
  ~UnitBound();
  Database& Data() noexcept { return database_; }

 private:
  friend class Database;
  virtual void Drop() noexcept = 0;

  Database& database_;
};

// A value that was read from the company's lists or settings in a unit of work and is asked for again, in that unit or
// a later one; read anew as soon as it may no longer hold. Asked for outside of a unit of work, it is read, which is
// refused there.
template <typename Value>
class ReadOnce {
 public:
  explicit ReadOnce(Database& database) noexcept : database_(database) {}

  // The value; `read` fills a new one when there is none that holds.
  template <typename Read>
  Value& Get(Read&& read) {
    if (Value* const held = Held()) return *held;
    Value value;
    std::forward<Read>(read)(value);
    return Hold(std::move(value));
  }

  Value& Hold(Value value) {
    version_ = database_.ListsVersion();
    return value_.emplace(std::move(value));
  }

  // Null when there is none that holds.
  Value* Held() { return value_ && database_.InUnit() && version_ == database_.ListsVersion() ? &*value_ : nullptr; }

 private:
  Database& database_;
  std::optional<Value> value_;
  std::uint64_t version_ = 0;
};

// A unit of work: what it wrote is in the file once Commit() has returned, and nothing of it otherwise. Throws
// UnitOfWorkError when it cannot begin or commit.
class UnitOfWork {
 public:
  UnitOfWork(Database& database, Access access);
  UnitOfWork(const UnitOfWork&) = delete;
  UnitOfWork& operator=(const UnitOfWork&) = delete;
  ~UnitOfWork();
  void Commit();

 private:
  Database& database_;
};

// Runs `work` in the unit of work that is open, or in a reading one of its own, and returns what it returns.
template <typename Work>
auto InReadingUnit(Database& database, Work&& work) {
  if (database.InUnit()) return std::forward<Work>(work)();
  UnitOfWork unit(database, Access::kRead);
  auto result = std::forward<Work>(work)();
  unit.Commit();
  return result;
}

// Commits the unit of work that is open, if any, runs `work` and begins another unit with the same access: for
// questions to the user and for commands, which must not keep others waiting and may open units of their own.
void OutsideUnit(Database& database, const std::function<void()>& work);

}  // namespace standalone
