#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "standalone/desk/Correcting.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/results/ClosedDays.h"
#include "standalone/desk/results/RecordedTransaction.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Money.h"
#include "standalone/values/Shares.h"

namespace desk {

class Company;

struct EnteredLine {
  std::string account;  // by record number or colon-separated name
  // Of a bill or a check what it is to the supplier, the partners' parts included; of an entry a debit, or a credit if
  // it is negative.
  standalone::LineAmount amount;
  standalone::Memo memo{""};
};

struct PartnersShare {
  std::string partner;  // by realm id or name
  standalone::ShareText share;
};

// A bill or a check: its lines are debited and what they come to is credited to one account. The partners' shares are
// taken out of the lines and debited to what they owe this company. Or a journal entry, whose lines sum to zero: shares
// are taken out of what is debited, amounts below zero out of what is credited, in lines that are not on a bank, a
// credit card, a receivable, a payable or a relation's account; where there are none, amounts out of all of that side.
struct TransactionToRecord {
  EnteredType type = EnteredType::kBill;
  std::optional<DateType32> date = std::nullopt;           // today when left out
  std::variant<std::monostate, Existing, NewVendor> name;  // which bills and checks have
  standalone::Memo memo{""};
  standalone::DocumentNumber documentNumber{""};
  std::vector<EnteredLine> lines;
  std::vector<PartnersShare> shares;
  // What is credited, of a bill an account of type Accounts Payable, of a check one of type Bank or Credit Card; the
  // only payable or bank account when left out.
  std::optional<std::string> credited = std::nullopt;
  std::vector<standalone::Attachment> attachments;
  // Those that these books lost and the partners know: the shares are asked for under these, and date, name, memo and
  // document number are theirs where they are left out. Refused where anything is another than was sent.
  std::vector<standalone::RequestId> lost{std::vector<standalone::RequestId>()};
  // Although the books have it, by type, name and document number, or have lost a request that asked for the same.
  bool again = false;
  ClosedDays closedDays = ClosedDays::kRefused;
};

// For who asks a person bit by bit: each looks up one thing and throws what the whole transaction would be refused
// with.
void RequireMayEnter(Company& company, EnteredType type);
// Today when left out.
void RequireDay(Company& company, std::optional<DateType32> day, ClosedDays closedDays);
void RequireNewVendor(Company& company, const NewVendor& vendor);
// By its name and document number.
void RequireAnotherDocument(Company& company, const TransactionToRecord& transaction);
void RequireAccount(Company& company, EnteredType type, const std::string& account);
void RequireName(Company& company, const std::string& name);
void RequirePartnerToShareWith(Company& company, const std::string& partner);
standalone::Money RequireAmount(Company& company, const standalone::LineAmount& amount);

enum class Posting { kPost, kPreviewOnly };

// Posts the transaction, whose partners' parts are to be sent to them, and returns it as it is in the books; of a
// preview what would be posted, and nothing is. Needs the right to create transactions of the type, relations that are
// established and have a due-from account, and accounts that take postings.
RecordedTransaction RecordTransaction(Company& company, const TransactionToRecord& transaction, Posting how);

struct TransactionToCopy {
  EnteredType type = EnteredType::kBill;
  std::int32_t txnId = 0;
  std::optional<DateType32> date = std::nullopt;                            // today when left out
  std::optional<standalone::DocumentNumber> documentNumber = std::nullopt;  // as the original's when left out
  std::vector<standalone::Attachment> attachments;
  bool again = false;
  ClosedDays closedDays = ClosedDays::kRefused;
};

// Posts a transaction that this company entered once more, with requests of its own; otherwise as above. Refused for
// what was booked from a partner's request, reverses another transaction or moves an expense.
RecordedTransaction CopyTransaction(Company& company, const TransactionToCopy& copy, Posting how);

// What is left out is as in the original. Lines and shares belong together: there are no shares without lines, and
// where the original has partners no lines without shares unless it is said that it is to have none.
struct TransactionToCorrect {
  EnteredType type = EnteredType::kBill;
  std::int32_t txnId = 0;
  std::optional<DateType32> date = std::nullopt;  // today when left out
  std::variant<std::monostate, Existing, NewVendor> name{std::monostate()};
  std::optional<standalone::Memo> memo = std::nullopt;  // of the lines, too, whose memo was the original's
  std::optional<standalone::DocumentNumber> documentNumber = std::nullopt;
  std::vector<EnteredLine> lines{std::vector<EnteredLine>()};
  std::vector<PartnersShare> shares{std::vector<PartnersShare>()};
  bool withoutPartners = false;
  std::optional<std::string> credited = std::nullopt;  // with lines only
  std::vector<standalone::Attachment> attachments{std::vector<standalone::Attachment>()};
  // Although the books have one of the new name and document number, or have lost a request that asked for the same.
  bool again = false;
  ClosedDays closedDays = ClosedDays::kRefused;
};

struct CorrectedTransaction {
  ReversedTransaction reversed;
  RecordedTransaction correction;
};

// Reverses a transaction that this company entered and posts another one in its place, whose requests name those that
// they correct. It may be dated before the original; the reversal is not, and has the later of both dates. Needs what
// both of them need. Refused when nothing would be another.
CorrectedTransaction CorrectTransaction(Company& company, const TransactionToCorrect& given, Posting how);

}  // namespace desk
