#include "Frame/Operations.h"
#include "MultiEntity/MultiEntityDriver.h"

namespace {

constexpr std::int32_t kTransactionIdColumn = 0;

bool AppendResult(const OperationLog& log, DQEWrapper& query, std::vector<unsigned long>& txns) {
  if (query.DoQuery().Failed()) {
    log.Error("MULTIENTITY_ERROR::DQE query execution failed for %s", log.Name());
    return false;
  }
  if (!query.ResultExists()) return true;
  for (const DQE::IDBResultSetRow* row = query.First(); row != nullptr; row = query.Next()) {
    txns.push_back(query.GetTransPtrType(row, kTransactionIdColumn));
  }
  return true;
}

}  // namespace

bool MultiEntityDriver::GetTxns(unsigned int selection, std::vector<unsigned long>& txns) {
  const OperationLog log{operations::GetTxns};
  DQEWrapper query(Host().queries);
  static_cast<void>(query.SetSelect(selection));
  return AppendResult(log, query, txns);
}

bool MultiEntityDriver::GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection, unsigned int dateField,
                                         std::vector<unsigned long>& txns) {
  const OperationLog log{operations::GetTxnsForPeriod};
  DQEWrapper query(Host().queries);
  static_cast<void>(query.SetSelect(selection));
  const long notBefore = query.SetStatement(dateField, DQE::kNotBefore, from);
  const long notAfter = query.SetStatement(dateField, DQE::kNotAfter, to);
  static_cast<void>(query.SetStatement(notBefore, DQE::kAnd, notAfter));
  return AppendResult(log, query, txns);
}
