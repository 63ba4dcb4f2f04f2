#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/ClosedDays.h"
#include "standalone/desk/results/RecordedTransaction.h"
#include "standalone/values/CheckedText.h"

// What is wrong in the books is taken back or moved, never changed.
namespace desk {

class Company;

struct TransactionToReverse {
  std::int32_t txnId = 0;
  std::optional<DateType32> date = std::nullopt;        // today when left out
  std::optional<standalone::Memo> memo = std::nullopt;  // of the lines, too; the original's when left out
  ClosedDays closedDays = ClosedDays::kRefused;
};

// A transaction and the one that takes it back.
struct ReversedTransaction {
  std::int32_t txnId = 0;
  RecordedTransaction reversal;
  // Whose partners have the original in their books and are sent nothing: somebody has to tell them.
  std::vector<PartnersPart> toTell;
};

// Posts the same lines with their amounts negated. What a partner has in its books it is asked to book the other way
// round; what it has not is closed. Needs the rights to create and to modify transactions of the type. Refused for what
// was booked from a partner's request, is reversed already or waits for a partner's answer.
ReversedTransaction ReverseTransaction(Company& company, const TransactionToReverse& given);

// Removes a transaction that this company entered and that no partner was sent, and returns it as it was. Needs the
// right to delete transactions of the type.
RecordedTransaction RemoveTransaction(Company& company, std::int32_t txnId,
                                      ClosedDays closedDays = ClosedDays::kRefused);

// The expense of a journal entry that was booked from a partner's request.
struct ExpenseToMove {
  std::int32_t txnId = 0;
  std::string account;                            // to this one, by record number or colon-separated name
  std::optional<DateType32> date = std::nullopt;  // today when left out
  ClosedDays closedDays = ClosedDays::kRefused;
};

struct MovedExpense {
  std::int32_t txnId = 0;
  ListItem from;
  ListItem to;
  RecordedTransaction move;
};

// Posts an entry of this company's own from the account where the expense stands now to another one. Needs the rights
// journal:create and journal:modify.
MovedExpense MoveExpense(Company& company, const ExpenseToMove& given);

}  // namespace desk
