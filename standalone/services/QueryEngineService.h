#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "MultiEntityHost/QueryEngine.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/services/HandleTable.h"

namespace standalone {

// Selections are the posted transactions of one type, by its number, or all of them.
inline constexpr unsigned int kSelectAllTransactions = 0;

// The date fields.
inline constexpr unsigned int kFieldTransactionDate = 1;

// Queries over the company's transactions. All statements of a query hold together; both bounds are inclusive, and a
// null date bounds nothing. Rows come by transaction id. A selection, field or statement that does not exist lets
// DoQuery fail.
class QueryEngineService final : public QueryEngine {
 public:
  explicit QueryEngineService(TransactionTable& transactions) noexcept;
  QueryEngineService(const QueryEngineService&) = delete;
  QueryEngineService& operator=(const QueryEngineService&) = delete;
  ~QueryEngineService();

  QueryHandle OpenQuery() override;
  Util::Status SetSelect(QueryHandle query, unsigned int selection) override;
  long SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) override;
  long SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) override;
  Util::Status DoQuery(QueryHandle query) override;
  bool ResultExists(QueryHandle query) override;
  const DQE::IDBResultSetRow* First(QueryHandle query) override;
  const DQE::IDBResultSetRow* Next(QueryHandle query) override;
  unsigned long GetTransPtrType(QueryHandle query, const DQE::IDBResultSetRow* row, std::int32_t column) override;
  void ReleaseQuery(QueryHandle query) noexcept override;

 private:
  struct Query;

  Query& At(QueryHandle query);

  TransactionTable& transactions_;
  HandleTable<std::unique_ptr<Query>> open_;
};

}  // namespace standalone
