#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/Audit.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/results/ListItem.h"
#include "standalone/values/Decimals.h"
#include "standalone/values/Money.h"
#include "standalone/values/States.h"

namespace desk {

class Company;

// The currency of all amounts of a report, which are in its minor units.
struct ReportCurrency {
  std::string code;  // ISO 4217; empty when the company has none
  standalone::Decimals decimals = standalone::kTwoDecimals;
};

struct NumberedAccount : ListItem {
  std::string number;  // what people call it by; empty without one
};

struct BalancesQuery {
  Period period;                       // without a first day: as of its last one
  std::optional<std::string> account;  // by number or full name: with those below it alone
  std::optional<std::size_t> depth;    // how many levels are told, 1 or more; those below are part of theirs
  bool withUnused = false;             // also accounts without a line in the period
};

// Of a debit positive, of a credit negative; with a first day of the period, what has changed in it.
struct AccountBalance {
  NumberedAccount account;
  std::int16_t type = 0;
  bool deleted = false;
  std::size_t level = 0;     // 0 at the top
  std::int64_t balance = 0;  // its own and that of all accounts below it
  std::int64_t own = 0;      // what no line below tells of: these of all accounts add up to nothing
};

struct Balances {
  struct Totals {
    std::int64_t debits = 0;
    std::int64_t credits = 0;  // as a positive number
  };

  ReportCurrency currency;
  Period period;
  std::vector<AccountBalance> lines;  // by name, each account before those below it
  std::optional<Totals> totals;       // of the accounts at the top; none of one account
};

// This and the next two need the rights to view bills, checks and journal entries.
Balances ReadBalances(Company& company, const BalancesQuery& query);

struct RegisterQuery {
  std::string account;  // by number or full name
  Period period;
  bool withSubAccounts = false;
};

struct RegisterLine {
  std::int32_t txnId = 0;
  std::int32_t lineId = 0;
  std::int16_t type = 0;  // of the transaction: kTxnTypeBill, ...
  DateType32 date;
  std::string documentNumber;
  std::string name;                      // whom the transaction names; empty for nobody
  std::string memo;                      // the transaction's
  std::string lineMemo;                  // the line's own
  std::string account;                   // the full name of the line's own
  std::int32_t accountId = 0;            // its record number
  std::string accountNumber;             // what people call it by; empty without one
  std::optional<ListItem> otherAccount;  // that of all other lines; none when they are on several
  std::int64_t amount = 0;
  std::int64_t balance = 0;  // after the line
};

struct Register {
  ReportCurrency currency;
  Period period;
  NumberedAccount account;
  std::int64_t opening = 0;
  std::vector<RegisterLine> lines;  // by date, transaction and line
  std::int64_t closing = 0;
};

Register ReadRegister(Company& company, const RegisterQuery& query);

struct OpenItemsQuery {
  std::optional<DateType32> asOf;      // today when left out
  DateType32 from = NullDate();        // the items of that day and later ones; the null date leaves it open
  std::optional<std::string> partner;  // realm id or name; all when left out
};

// What both companies are agreed on; what is booked without a request, so that no partner has seen it; what the partner
// has not answered; what is without effect, as it was closed here, and still stands in the books.
enum class Standing { kAgreed, kNoRequest, kNotAnswered, kClosed };

// Amounts are positive for what is owed, negative for what was paid beyond it.
struct OpenItem {
  std::int32_t txnId = 0;
  std::int32_t lineId = 0;
  std::int16_t type = 0;
  DateType32 date;
  std::string documentNumber;
  std::string name;
  std::string memo;
  std::string lineMemo;
  std::int64_t amount = 0;  // as it was booked
  std::int64_t open = 0;
  std::int64_t days = 0;                         // from its date to that of the report
  std::size_t age = 0;                           // 0 to 30 days: 0, 31 to 60: 1, 61 to 90: 2, over 90: 3
  Standing standing = Standing::kAgreed;         // today, like the next one
  std::optional<standalone::BookedState> state;  // none of a line that belongs to no request
};

// What is open of the days before the first one, as one sum.
struct EarlierItems {
  std::size_t count = 0;
  std::int64_t open = 0;
};

// What one owes the other. All sums are also of what is earlier.
struct OpenSide {
  NumberedAccount account;
  EarlierItems earlier;
  std::vector<OpenItem> items;  // by date
  std::array<std::int64_t, 4> byAge{};
  std::int64_t agreed = 0;
  std::int64_t noRequest = 0;
  std::int64_t notAnswered = 0;
  std::int64_t closed = 0;
  std::int64_t balance = 0;  // of the account, read by itself

  std::int64_t Open() const noexcept { return agreed + noRequest + notAnswered; }
  // Zero unless something is wrong, or the relation has got other accounts since.
  std::int64_t Difference() const noexcept { return balance - Open() - closed; }
};

struct OpenWithPartner {
  std::string realm;
  std::string partner;
  std::optional<OpenSide> owedToUs;  // none without the relation's account
  std::optional<OpenSide> owedByUs;
};

struct OpenItems {
  ReportCurrency currency;
  DateType32 asOf;
  DateType32 from = NullDate();
  std::vector<OpenWithPartner> partners;  // those with whom something is open; the one who was asked for in any case
};

// standalone::InvalidInput when the first day is after the last one.
OpenItems ReadOpenItems(Company& company, const OpenItemsQuery& query);

struct ShownLine {
  struct Request {
    std::string realm;
    std::string partner;
    std::string id;
    standalone::BookedState state;
    // The earlier line whose request this one reverses, or corrects.
    std::optional<std::int32_t> reverses;
    std::optional<std::int32_t> corrects;
  };

  std::int32_t lineId = 0;
  NumberedAccount account;
  std::int64_t amount = 0;
  std::string memo;
  std::optional<Request> request;
};

struct ShownLink {
  enum class Kind { kReverses, kCorrects, kMoves };

  Kind kind = Kind::kReverses;
  bool isLater = true;  // this transaction does it to the other one, which otherwise does it to this one
  std::int32_t otherTxnId = 0;
};

struct ShownTransaction {
  ReportCurrency currency;
  std::int32_t txnId = 0;
  std::int16_t type = 0;
  DateType32 date;
  std::optional<ListItem> name;
  std::string documentNumber;
  std::string memo;
  bool confirmed = false;  // it has requests, and all of them are established
  std::vector<ShownLine> lines;
  std::vector<ShownLink> links;
  std::vector<std::string> attachments;
  std::optional<std::vector<AuditedDeed>> audit;  // for administrators and accountants
};

// With the lines of the audit trail of those days. Needs the right to view transactions of its type.
ShownTransaction ShowTransaction(Company& company, std::int32_t txnId, const Period& trail = {NullDate(), NullDate()});

}  // namespace desk
