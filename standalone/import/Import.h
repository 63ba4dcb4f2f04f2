#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace standalone {

class StandaloneHost;

// Called now and then with the bytes read so far and the size of the file.
using ImportProgress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

struct ImportResult {
  std::int64_t rows = 0;      // data rows read
  std::int64_t accounts = 0;  // of what was added
  std::int64_t names = 0;
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
  std::int64_t intercompanyRows = 0;
};

// Imports from CSV: UTF-8 with or without a byte order mark, a header row with the columns below in any order, fields
// in double quotes where they hold commas, quotes (doubled) or line breaks. Each import is one unit of work, that which
// is open or one of its own: a bad row, named with file, line and reason by InvalidInput, leaves the company file as it
// was. A file that cannot be read is InvalidInput too.
//
// Accounts: name (colon-separated; parents come before their sub-accounts), type (a name such as "Bank", or a number),
// and optionally special (a number) and deleted (yes or no).
ImportResult ImportAccounts(StandaloneHost& host, const std::filesystem::path& csv,
                            const ImportProgress& progress = {});

// Names: name (colon-separated; parents come before), kind (customer, vendor, employee, other).
ImportResult ImportNames(StandaloneHost& host, const std::filesystem::path& csv, const ImportProgress& progress = {});

// Transactions, one row per line, the rows of one transaction together: transaction (a key within the file), type
// (bill, check, journal), date (YYYY-MM-DD), name, memo, account, amount (debits positive, credits negative), and
// optionally line_memo, partner_realm, request_id and state. Type, date, name and memo are taken from the first row;
// later rows leave them empty or repeat them. A row with a partner_realm makes the line an intercompany one; that of a
// journal entry must be followed by the line of the due-to account. `state` is a name or
// number as of a transaction that this company entered, and entered (0) when it is left empty.
ImportResult ImportTransactions(StandaloneHost& host, const std::filesystem::path& csv,
                                const ImportProgress& progress = {});

}  // namespace standalone
