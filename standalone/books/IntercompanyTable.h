#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/LinesAhead.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/States.h"

namespace standalone {

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
  // By transaction and target; false when there is none.
  bool Change(const DBMultiEntityTransaction& row);
  void RemoveAllOf(std::int32_t txnId);

  void ListOf(std::int64_t txnId, std::vector<DBMultiEntityTransaction>& rows);
  void List(std::vector<DBMultiEntityTransaction>& rows);

  bool HasAnyOf(std::int32_t txnId);
  bool HasAnyWith(std::int64_t relationId);
  bool HasRequest(std::int64_t relationId, std::string_view requestId);
  // Whether any row's state is one for which `is` answers true; each state is asked for once.
  bool HasAnyState(bool (*is)(BookedState state));
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
  Statement updateState_;
  Statement update_;
  Statement delete_;
  Statement ofTransaction_;
  Statement count_;
  Statement all_;
  Statement withRelation_;
  Statement withRequest_;
  Statement anyOfTransaction_;
  Statement states_;
  Statement ofBefore_;
};

}  // namespace standalone
