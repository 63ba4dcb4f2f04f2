#include "standalone/reports/Register.h"

#include "standalone/books/TransactionTable.h"
#include "standalone/reports/Sum.h"

namespace standalone {

std::int64_t OpeningBalance(LedgerQueries& ledger, const RegisterQuery& query) {
  if (query.days.from == NullDate()) return 0;
  const DateType32 before = DateOf(std::int64_t{query.days.from.Value()} - 1);
  return ledger.SumOf(query.accountId, query.withSubAccounts, {.from = NullDate(), .to = before});
}

std::int64_t ReadRegister(LedgerQueries& ledger, const RegisterQuery& query, std::int64_t opening,
                          const std::function<void(const RegisterLine& line, std::int64_t balance)>& take) {
  std::int64_t balance = opening;
  ledger.ForEachOf(query.accountId, query.withSubAccounts, query.days, [&](const RegisterLine& line) {
    AddTo(balance, line.amount);
    take(line, balance);
  });
  return balance;
}

}  // namespace standalone
