#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>

#include "standalone/desk/Transactions.h"

namespace desk {

class Company;

struct ExportedJournal {
  std::filesystem::path file;  // empty when it went elsewhere
  std::uintmax_t bytes = 0;
  std::int64_t accounts = 0;
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
};

// The accounts and the posted transactions of a period as a journal in plain text that hledger and ledger read, handed
// to `take` piece by piece: one state of the books, whoever writes meanwhile. For who may see bills, checks and journal
// entries.
ExportedJournal ExportJournal(Company& company, const Period& period,
                              const std::function<void(std::string_view text)>& take);

// The same into a file that is there as a whole or not at all, for its owner. Refused when there is one of that name,
// unless it is replaced.
ExportedJournal ExportJournalTo(Company& company, const Period& period, const std::filesystem::path& file,
                                bool replaces);

}  // namespace desk
