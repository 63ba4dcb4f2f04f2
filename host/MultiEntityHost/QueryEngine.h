#pragma once

#include <cstdint>

#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/Status.h"

namespace DQE {

// How a statement compares a field with a value, or joins two statements.
enum SelectOp : std::int32_t {
  kAnd = 2,
  kNotBefore = 10,
  kNotAfter = 11,
};

// A row of a result set. The host owns it; it is valid until the next row is asked for or the query is released.
class IDBResultSetRow;

}  // namespace DQE

// Names an open query of the host; the number is the host's choice.
enum class QueryHandle : std::uint64_t {};

// The engine behind the host's query wrapper. A host implements it; the module calls it on the user-interface thread.
// The numbers of selections and of date fields are the host's. Statements belong to their query.
class QueryEngine {
 public:
  // What a DQEWrapper is made of: opened, told what is sought, run, walked through, released once.
  virtual QueryHandle OpenQuery() = 0;
  // Seeks the transactions of a selection. The answer is not looked at: a query that cannot be run says so in
  // DoQuery().
  virtual Util::Status SetSelect(QueryHandle query, unsigned int selection) = 0;
  // Compares a date field with `date`; returns the statement's id.
  virtual long SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) = 0;
  // Joins two statements; returns the id of the statement that they make.
  virtual long SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) = 0;
  // Runs the query; all of its statements hold for what it finds.
  virtual Util::Status DoQuery(QueryHandle query) = 0;
  // Whether there is a result to walk through, which may be an empty one.
  virtual bool ResultExists(QueryHandle query) = 0;
  // The first and the following row; null after the last.
  virtual const DQE::IDBResultSetRow* First(QueryHandle query) = 0;
  virtual const DQE::IDBResultSetRow* Next(QueryHandle query) = 0;
  // The transaction id in that column of a row.
  virtual unsigned long GetTransPtrType(QueryHandle query, const DQE::IDBResultSetRow* row, std::int32_t column) = 0;
  virtual void ReleaseQuery(QueryHandle query) noexcept = 0;

 protected:
  ~QueryEngine() = default;
};

// A query of the host, open as long as this object lives.
class DQEWrapper {
 public:
  explicit DQEWrapper(QueryEngine& engine) : engine_(engine), handle_(engine.OpenQuery()) {}
  DQEWrapper(const DQEWrapper&) = delete;
  DQEWrapper& operator=(const DQEWrapper&) = delete;
  ~DQEWrapper() { engine_.ReleaseQuery(handle_); }

  Util::Status SetSelect(unsigned int selection) { return engine_.SetSelect(handle_, selection); }
  long SetStatement(unsigned int field, DQE::SelectOp op, DateType32 date) {
    return engine_.SetStatement(handle_, field, op, date);
  }
  long SetStatement(long left, DQE::SelectOp op, long right) { return engine_.SetStatement(handle_, left, op, right); }
  Util::Status DoQuery() { return engine_.DoQuery(handle_); }
  bool ResultExists() { return engine_.ResultExists(handle_); }
  const DQE::IDBResultSetRow* First() { return engine_.First(handle_); }
  const DQE::IDBResultSetRow* Next() { return engine_.Next(handle_); }
  unsigned long GetTransPtrType(const DQE::IDBResultSetRow* row, std::int32_t column) {
    return engine_.GetTransPtrType(handle_, row, column);
  }

 private:
  QueryEngine& engine_;
  QueryHandle handle_;
};
