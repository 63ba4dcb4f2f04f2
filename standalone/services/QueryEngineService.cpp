#include "standalone/services/QueryEngineService.h"

#include <algorithm>
#include <limits>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/services/Guard.h"

namespace DQE {

class IDBResultSetRow {
 public:
  std::int32_t txnId = 0;
};

}  // namespace DQE

namespace standalone {

namespace {

constexpr unsigned int kNoSelection = std::numeric_limits<unsigned int>::max();
constexpr long kNoStatement = 0;
constexpr std::int32_t kTransactionIdColumn = 0;

bool IsSelection(unsigned int selection) {
  return selection == kSelectAllTransactions || selection == kTxnTypeCheck || selection == kTxnTypeJournalEntry ||
         selection == kTxnTypeBill;
}

}  // namespace

// As statements can only be joined by "and", all of them together say a span of days.
struct QueryEngineService::Query {
  unsigned int selection = kNoSelection;
  std::uint32_t from = 0;
  std::uint32_t to = std::numeric_limits<std::uint32_t>::max();
  long statements = 0;
  bool isWellFormed = true;
  bool hasRun = false;
  std::vector<DQE::IDBResultSetRow> rows;
  std::size_t next = 0;

  long Refuse() {
    isWellFormed = false;
    return kNoStatement;
  }
  bool HasStatement(long statement) const { return statement >= 1 && statement <= statements; }
};

QueryEngineService::QueryEngineService(TransactionTable& transactions) noexcept : transactions_(transactions) {}

QueryEngineService::~QueryEngineService() = default;

QueryHandle QueryEngineService::OpenQuery() {
  auto query = std::make_unique<Query>();
  const std::uint64_t handle = open_.Open();
  open_.At(handle) = std::move(query);
  return QueryHandle{handle};
}

Util::Status QueryEngineService::SetSelect(QueryHandle query, unsigned int selection) {
  At(query).selection = selection;
  return Util::Status(IsSelection(selection) ? Util::Status::kSuccess : kStatusNotFound);
}

long QueryEngineService::SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) {
  Query& asked = At(query);
  if (field != kFieldTransactionDate || (op != DQE::kNotBefore && op != DQE::kNotAfter)) return asked.Refuse();
  if (date != NullDate()) {
    if (op == DQE::kNotBefore) asked.from = std::max(asked.from, date.Value());
    if (op == DQE::kNotAfter) asked.to = std::min(asked.to, date.Value());
  }
  return ++asked.statements;
}

long QueryEngineService::SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) {
  Query& asked = At(query);
  if (op != DQE::kAnd || !asked.HasStatement(left) || !asked.HasStatement(right)) return asked.Refuse();
  return ++asked.statements;
}

Util::Status QueryEngineService::DoQuery(QueryHandle query) {
  Query& asked = At(query);
  return AsStatus([&] {
    asked.rows.clear();
    asked.next = 0;
    asked.hasRun = false;
    if (!asked.isWellFormed || !IsSelection(asked.selection)) return kStatusRefused;
    // The number that selects all of them is that of any type.
    transactions_.ForEachPosted(asked.selection, asked.from, asked.to,
                                [&](std::int32_t txnId) { asked.rows.emplace_back().txnId = txnId; });
    asked.hasRun = true;
    return Util::Status::kSuccess;
  });
}

bool QueryEngineService::ResultExists(QueryHandle query) {
  return At(query).hasRun;
}

const DQE::IDBResultSetRow* QueryEngineService::First(QueryHandle query) {
  At(query).next = 0;
  return Next(query);
}

const DQE::IDBResultSetRow* QueryEngineService::Next(QueryHandle query) {
  Query& asked = At(query);
  return asked.next < asked.rows.size() ? &asked.rows[asked.next++] : nullptr;
}

unsigned long QueryEngineService::GetTransPtrType(QueryHandle /*query*/, const DQE::IDBResultSetRow* row,
                                                  std::int32_t column) {
  return row != nullptr && column == kTransactionIdColumn ? static_cast<unsigned long>(row->txnId) : 0;
}

void QueryEngineService::ReleaseQuery(QueryHandle query) noexcept {
  open_.At(static_cast<std::uint64_t>(query)).reset();
  open_.Release(static_cast<std::uint64_t>(query));
}

QueryEngineService::Query& QueryEngineService::At(QueryHandle query) {
  return *open_.At(static_cast<std::uint64_t>(query));
}

}  // namespace standalone
