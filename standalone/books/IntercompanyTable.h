#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/LinesAhead.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/States.h"

namespace standalone {

// A row and what its transaction has of it.
struct BookedRow {
  DBMultiEntityTransaction row{};
  bool ofBefore = false;  // booked with version 1.0
  LineView line;          // blank when the transaction has no such line
  // Of the line behind it, which tells what a journal entry from a partner's request owes; 0 without one.
  std::int32_t otherAccountId = 0;
  std::string entryMemo;  // of the transaction
};

// A piece of a list, and the number of its last row.
struct EnteredRows {
  std::vector<DBMultiEntityTransaction> rows;
  std::int64_t lastNumber = 0;
};

// The intercompany rows of bills, checks and journal entries: which line of which transaction belongs to which
// partner's request, and its state. Lists come in the order in which their rows were added, the rows of one transaction
// in the order of their lines. Every operation needs an open unit of work; a row that the company refuses throws
// ConstraintViolation.
class IntercompanyTable {
 public:
  // Whenever all rows are listed, `lines` is told to expect questions for the lines behind them.
  IntercompanyTable(Database& database, LinesAhead& lines);

  void Add(const DBMultiEntityTransaction& row);
  // False when there is none.
  bool Find(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row);
  bool FindRequest(std::int64_t relationId, std::string_view requestId, DBMultiEntityTransaction& row);
  // A request id of that partner that is the same but for blanks at its ends.
  std::optional<std::string> FindRequestButForBlanks(std::int64_t relationId, std::string_view requestId);
  // The same for one that is all in small letters or all in capitals, of ASCII, and differs by that only.
  std::optional<std::string> FindRequestButForCase(std::int64_t relationId, std::string_view requestId);
  // By transaction and target; false when there is none.
  bool Change(const DBMultiEntityTransaction& row);
  void RemoveAllOf(std::int32_t txnId);

  void ListOf(std::int64_t txnId, std::vector<DBMultiEntityTransaction>& rows);
  void List(std::vector<DBMultiEntityTransaction>& rows);
  // Those of a relation that are entered and not sent yet, but for those of before.
  std::vector<DBMultiEntityTransaction> ListEntered(std::int64_t relationId);
  // The same behind the one of that number, 0 for all, but no more than that many.
  EnteredRows ListEnteredBehind(std::int64_t relationId, std::int64_t number, std::int64_t most);
  // The row of a line, whichever transaction it is of; false when there is none.
  bool FindLine(std::int32_t targetId, DBMultiEntityTransaction& row);
  // Its request id.
  std::optional<std::string> RequestOfLine(std::int32_t targetId);
  // Those of a transaction, and the one of a line, with what the transaction has of them.
  std::vector<BookedRow> BookedOf(std::int32_t txnId);
  std::optional<BookedRow> FindBooked(std::int32_t txnId, std::int32_t targetId);

  bool HasAnyOf(std::int32_t txnId);
  // How many rows of the transaction the partner has not established yet.
  std::int64_t CountOpenOf(std::int32_t txnId);
  bool HasAnyWith(std::int64_t relationId);
  // The first transaction with a row of the relation and a line on the account.
  std::optional<std::int32_t> FirstOn(std::int64_t relationId, std::int32_t accountId);
  bool HasRequest(std::int64_t relationId, std::string_view requestId);
  std::int64_t CountWithRequest(std::int64_t relationId, std::string_view requestId);
  // How many rows are in each state that some are in.
  void ForEachState(const std::function<void(BookedState state, std::int64_t count)>& take);
  // Whether the row was booked with version 1.0; false when there is none. When all rows were listed, that is known of
  // each until something is booked.
  bool IsOfBefore(std::int32_t txnId, std::int32_t targetId);

 private:
  LinesAhead& lines_;
  ReadOnce<std::unordered_set<std::int32_t>> targetsOfBefore_;
  Statement insert_;
  Statement byTarget_;
  Statement byRequest_;
  Statement byRequestButForBlanks_;
  Statement byRequestButForCase_;
  Statement updateState_;
  Statement update_;
  Statement delete_;
  Statement ofTransaction_;
  Statement entered_;
  Statement enteredBehind_;
  Statement ofLine_;
  Statement booked_;
  Statement count_;
  Statement all_;
  Statement withRelation_;
  Statement firstOn_;
  Statement withRequest_;
  Statement countWithRequest_;
  Statement anyOfTransaction_;
  Statement countOpen_;
  Statement states_;
  Statement ofBefore_;
};

}  // namespace standalone
