#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "standalone/books/LedgerQueries.h"

namespace standalone {

struct TrialBalanceQuery {
  LedgerDays days;
  std::optional<std::int32_t> accountId;  // with those below it alone
  std::optional<std::size_t> depth;       // how many levels are told, 1 or more; those below are part of theirs
  bool withUnused = false;                // also accounts without a line in these days
};

// Of a debit positive, of a credit negative.
struct AccountBalance {
  LedgerAccount account;
  std::size_t level = 0;     // 0 at the top
  std::int64_t balance = 0;  // its own and that of all accounts below it
  std::int64_t own = 0;      // what no line below tells of
};

struct TrialBalance {
  std::vector<AccountBalance> lines;  // each account before those below it
  std::int64_t debits = 0;            // of the lines at the top
  std::int64_t credits = 0;           // as a positive number
};

// Within a unit of work; std::overflow_error when amounts add up to more than 64 bits hold.
TrialBalance ReadTrialBalance(LedgerQueries& ledger, const TrialBalanceQuery& query);

// What each account with lines in these days holds of them by itself, by its number; in the same way.
std::unordered_map<std::int32_t, std::int64_t> ReadBalances(LedgerQueries& ledger, LedgerDays days);

}  // namespace standalone
