#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/TString.h"
#include "standalone/storage/Statement.h"

namespace standalone {

// One line of a bill, check or journal entry as it is handed in for posting.
struct NewLine {
  std::int32_t accountId = 0;
  std::int64_t amount = 0;  // minor units; a debit is positive, a credit negative
  std::string_view memo;
};

struct NewTransaction {
  std::int16_t type = 0;  // kTxnTypeCheck, kTxnTypeJournalEntry or kTxnTypeBill
  DateType32 date;
  std::int32_t nameId = 0;  // 0 without a name
  std::string_view memo;
  std::string_view documentNumber;  // what the paper calls it
};

// A date as the file keeps it.
constexpr DateType32 DateOf(std::int64_t stored) noexcept {
  const auto bits = static_cast<std::uint32_t>(stored);
  return {static_cast<int>(bits >> 16U), static_cast<int>(bits >> 8U & 0xFFU), static_cast<int>(bits & 0xFFU)};
}

// What a line and its transaction show.
struct LineView {
  std::int16_t txnType = 0;  // 0 when there is no such line
  DateType32 date;
  std::int32_t nameId = 0;
  std::int32_t accountId = 0;
  std::int64_t amount = 0;
  bool hasMemo = false;  // whether it was read
  Util::TString memo;    // the line's own
};

// Fills in all but the memo from a statement's columns, from `first` on: type, date, name_id, account_id and amount.
void ReadLine(const Rows& rows, int first, LineView& line);

struct TransactionHeader {
  std::int32_t id = 0;
  std::int16_t type = 0;
  DateType32 date;
  std::int32_t nameId = 0;
  bool posted = false;
  std::string memo;
  std::string documentNumber;
};

// A line as it was posted.
struct PostedLine {
  std::int32_t id = 0;
  std::int32_t accountId = 0;
  std::int64_t amount = 0;
  std::string memo;
};

struct KnownDocument {
  std::int32_t txnId = 0;
  std::string number;  // as it was entered
};

// The company's bills, checks and journal entries. The lines of a posted transaction, of which there are two or more,
// sum to zero; the file itself refuses to post another one and to change a posted one. A line's id is its target id:
// ascending in the order of insertion, never used again. Every operation needs an open unit of work; a change that the
// file refuses throws ConstraintViolation.
class TransactionTable {
 public:
  explicit TransactionTable(Database& database);

  // Posting in steps, for whoever streams: header, lines, Post().
  std::int32_t AddHeader(const NewTransaction& transaction);
  std::int32_t AddLine(std::int32_t txnId, const NewLine& line);
  void Post(std::int32_t txnId);

  // No transaction has this number yet or a higher one.
  std::int32_t NextId();
  std::optional<TransactionHeader> FindHeader(std::int32_t txnId);
  // The oldest posted one of that type, name (0 without one) and document number that is not reversed and reverses
  // none; numbers that FoldedForm takes for one are one.
  std::optional<KnownDocument> FindDocument(std::int16_t type, std::int32_t nameId, std::string_view documentNumber);
  // By id.
  std::vector<PostedLine> LinesOf(std::int32_t txnId);
  // False when there is no such line; `view` is the type to see it under, 0 for any.
  bool LineExists(std::int32_t lineId, std::int32_t view);
  // Whether any transaction has one.
  bool HasLines();
  // Blank when there is no such line.
  LineView FindLine(std::int32_t lineId, std::int32_t view);
  // The same if it is a line of that transaction.
  LineView FindLineOf(std::int32_t txnId, std::int32_t lineId);
  // Empty when there is no such line.
  Util::TString MemoOf(std::int32_t lineId);

  // Hands the posted transactions of a type, 0 for any, dated from one day to another as the company keeps them, to
  // `take`, by id.
  void ForEachPosted(std::int64_t type, std::uint32_t from, std::uint32_t to,
                     const std::function<void(std::int32_t txnId)>& take);

  // Deletes a transaction with its lines; false when there is none.
  bool Delete(std::int32_t txnId);
  // False when there is no transaction of that type with that id.
  bool ConfirmByPartner(std::int32_t txnId, std::int32_t type);

 private:
  Database& database_;
  Statement insertHeader_;
  Statement insertLine_;
  Statement post_;
  Statement nextId_;
  Statement header_;
  Statement document_;
  Statement linesOf_;
  Statement anyLine_;
  Statement anyLineAtAll_;
  Statement lineType_;
  Statement line_;
  Statement lineOf_;
  Statement memo_;
  Statement posted_;
  Statement postedOfType_;
  Statement remove_;
  Statement confirm_;
};

}  // namespace standalone
