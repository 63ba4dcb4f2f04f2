#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "standalone/storage/Database.h"
#include "standalone/storage/PreparedStatement.h"

namespace standalone {

// The rows of a running statement; the statement is ready to run again when this goes out of scope. Texts and
// bytes are valid until the next step.
class Rows {
 public:
  Rows(Database& database, PreparedStatement& statement) noexcept : database_(database), statement_(&statement) {}
  Rows(Rows&& other) noexcept : database_(other.database_), statement_(std::exchange(other.statement_, nullptr)) {}
  Rows& operator=(Rows&&) = delete;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  ~Rows() {
    if (statement_ != nullptr) statement_->Reset();
  }

  // Goes to the first or the next row; false after the last.
  bool Step() {
    const PreparedStatement::Outcome outcome = statement_->Step();
    if (outcome == PreparedStatement::Outcome::kFailed) database_.Fail();
    return outcome == PreparedStatement::Outcome::kRow;
  }

  std::int64_t Int64(int column) const { return statement_->Int64(column); }
  std::int32_t Int32(int column) const { return static_cast<std::int32_t>(Int64(column)); }
  std::int16_t Int16(int column) const { return static_cast<std::int16_t>(Int64(column)); }
  bool Bool(int column) const { return Int64(column) != 0; }
  std::string_view Text(int column) const { return statement_->Text(column); }
  std::string_view Bytes(int column) const { return statement_->Bytes(column); }

 private:
  Database& database_;
  PreparedStatement* statement_;
};

// One SQL statement, prepared at its first use and kept. `sql` outlives it. Values are bound in order; texts must stay
// alive while the rows are read. One that writes says what, so that what was read of it is read anew.
class Statement {
 public:
  Statement(Database& database, const char* sql) noexcept : Statement(database, Writes::kNothing, sql) {}
  Statement(Database& database, Writes writes, const char* sql) noexcept
      : database_(database), sql_(sql), writes_(writes) {}
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() = default;

  template <typename... Values>
  Rows Query(const Values&... values) {
    Rows rows = Start();
    int parameter = 0;
    (Require(Bind(++parameter, values)), ...);
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
  bool Bind(int parameter, std::int64_t value) { return prepared_->Bind(parameter, value); }
  bool Bind(int parameter, std::int32_t value) { return prepared_->Bind(parameter, std::int64_t{value}); }
  bool Bind(int parameter, std::int16_t value) { return prepared_->Bind(parameter, std::int64_t{value}); }
  bool Bind(int parameter, std::uint32_t value) { return prepared_->Bind(parameter, std::int64_t{value}); }
  bool Bind(int parameter, bool value) { return prepared_->Bind(parameter, std::int64_t{value}); }
  bool Bind(int parameter, std::string_view value) { return prepared_->Bind(parameter, value); }
  bool Bind(int parameter, Blob value) { return prepared_->Bind(parameter, value); }
  bool Bind(int parameter, std::nullptr_t) { return prepared_->BindNull(parameter); }
  void Require(bool isBound) {
    if (!isBound) database_.Fail();
  }

  Database& database_;
  const char* sql_;
  Writes writes_;
  std::unique_ptr<PreparedStatement> prepared_;
};

}  // namespace standalone
