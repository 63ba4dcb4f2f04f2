#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "standalone/books/AlikeNames.h"
#include "standalone/books/AuditTable.h"
#include "standalone/import/CsvSource.h"

namespace standalone {

class StandaloneHost;

// Called now and then with the bytes read so far and the size of the file, 0 while nobody knows it.
using ImportProgress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

struct ImportOptions {
  // Transactions whose partner's requests are in the books already are passed over; they are faults otherwise.
  bool skipKnown = false;
  ImportProgress progress;
  // Told the file's SHA-256 when it has been read to its end, before its faults are; may refuse it.
  std::function<void(const std::string& sha256)> onRead;
};

struct ImportResult {
  std::int64_t rows = 0;      // data rows read
  std::int64_t accounts = 0;  // of what was added
  std::int64_t names = 0;
  std::int64_t transactions = 0;
  std::int64_t lines = 0;
  std::int64_t intercompanyRows = 0;
  std::int64_t passedOver = 0;      // transactions that were in the books
  std::int64_t alikeCount = 0;      // of the accounts or names that are like others (AlikeNames.h)
  std::vector<AlikePair> alike;     // the first ten of them
  TransactionRange transactionIds;  // of those that were added, if any were
  std::string sha256;               // of the file
};

// Imports from CSV: UTF-8 with or without a byte order mark, a header row with the columns below in any order, fields
// in double quotes where they hold commas, quotes (doubled) or line breaks. Each import is one unit of work, that which
// is open or one of its own. A file with faults leaves the company file as it was: BadRows tells them, but for what
// only follows from another fault. What is no CSV ends the reading. A file that cannot be read is InvalidInput.
//
// Accounts: name (colon-separated; parents come before their sub-accounts), type (a name such as "Bank", or a number),
// and optionally special (a number), deleted (yes or no) and number (the account's, such as 4000.10).
ImportResult ImportAccounts(StandaloneHost& host, CsvSource&& csv, const ImportOptions& options = {});

// Names: name (colon-separated; parents come before), kind (customer, vendor, employee, other).
ImportResult ImportNames(StandaloneHost& host, CsvSource&& csv, const ImportOptions& options = {});

// Transactions, one row per line, the rows of one transaction together: transaction (a key within the file), type
// (bill, check, journal), date (YYYY-MM-DD), name, memo, account, amount (debits positive, credits negative), and
// optionally line_memo, partner_realm, request_id and state. Type, date, name and memo are taken from the first row;
// later rows leave them empty or repeat them. A row with a partner_realm makes the line an intercompany one; that of a
// journal entry must be followed by the line of the due-to account. `state` is a name or number as of a
// transaction that this company entered, and entered (0) when it is left empty. A partner's request belongs to one
// transaction, in the books and in the file.
ImportResult ImportTransactions(StandaloneHost& host, CsvSource&& csv, const ImportOptions& options = {});

}  // namespace standalone
