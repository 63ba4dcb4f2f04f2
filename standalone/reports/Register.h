#pragma once

#include <cstdint>
#include <functional>

#include "standalone/books/LedgerQueries.h"

namespace standalone {

struct RegisterQuery {
  std::int32_t accountId = 0;
  bool withSubAccounts = false;
  LedgerDays days;
};

// What the account holds when the first day of the period begins. Within a unit of work, like the next one.
std::int64_t OpeningBalance(LedgerQueries& ledger, const RegisterQuery& query);

// Hands each line with the balance after it to `take`, by date, transaction and line; returns the closing balance.
// std::overflow_error when amounts add up to more than 64 bits hold.
std::int64_t ReadRegister(LedgerQueries& ledger, const RegisterQuery& query, std::int64_t opening,
                          const std::function<void(const RegisterLine& line, std::int64_t balance)>& take);

}  // namespace standalone
