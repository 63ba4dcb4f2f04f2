#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "MultiEntityHost/DateType32.h"
#include "standalone/storage/Database.h"

namespace standalone {

struct JournalCounts {
  std::int64_t accounts = 0;
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
};

// Hands the company's books to `take`, piece by piece, as a journal that hledger and ledger read: its accounts, then
// the posted transactions from one day to another, by date; the null date leaves an end open. Needs an open unit of
// work.
JournalCounts WriteJournal(Database& database, DateType32 from, DateType32 to,
                           const std::function<void(std::string_view text)>& take);

}  // namespace standalone
