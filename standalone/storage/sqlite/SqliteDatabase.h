#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "standalone/storage/Database.h"
#include "standalone/storage/Statement.h"

struct sqlite3;
struct sqlite3_stmt;

namespace standalone {

// A connection to a SQLite file.
class SqliteDatabase final : public Database {
 public:
  // Opens an existing file, whatever its name means to the engine elsewhere; throws CompanyFileError.
  SqliteDatabase(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout);
  // An empty one that no file keeps.
  static SqliteDatabase InMemory();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;
  ~SqliteDatabase() override;

  // Runs statements without results outside of the rules of units of work: for schema and pragmas.
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

  // What people are told to do when there is no room, where the file lies on another disk than they think.
  void SetRoomAdvice(std::string advice) { roomAdvice_ = std::move(advice); }

  sqlite3* Handle() const noexcept { return handle_; }

  std::int64_t LastInsertedId() const noexcept override;
  std::int64_t ChangedRows() const noexcept override;

 private:
  friend class Overwriting;

  SqliteDatabase(const std::filesystem::path& name, const char* nameForEngine, std::chrono::milliseconds busyTimeout);

  bool BeginTransaction(Access access) override;
  CommitOutcome CommitTransaction() override;
  void RollBackTransaction() noexcept override;
  bool HasTransaction() const noexcept override;
  std::unique_ptr<PreparedStatement> Prepare(const char* sql) override;
  Failure WhyFailed() const override;
  std::int64_t RowsWritten() const noexcept override;
  bool ReadOthersVersion(std::int64_t& version) override;
  std::string WhyOthersStopThis() override;

  Failure FailureOf(int code) const;
  bool IsOfTemporaryFile(int code) const noexcept;
  std::string TemporaryFileAdvice() const;
  bool RunKept(sqlite3_stmt*& statement, const char* sql) noexcept;
  [[noreturn]] void ThrowFailed(int code);

  sqlite3* handle_ = nullptr;
  sqlite3_stmt* beginReading_ = nullptr;
  sqlite3_stmt* beginWriting_ = nullptr;
  sqlite3_stmt* commit_ = nullptr;
  sqlite3_stmt* othersVersion_ = nullptr;
  std::int64_t version_ = 0;  // of the schema; 0 for any
  std::string roomAdvice_ = "Check that its disk is there and has room.";
};

}  // namespace standalone
