#pragma once

#include <cstdint>

#include "standalone/Database.h"
#include "standalone/TransactionTable.h"

namespace standalone {

// The lines behind the intercompany rows, read ahead. Whoever has handed out all rows says so; the lines that are then
// asked for one by one, in the order of the rows or nearly so, come from one pass over the file, which holds one line
// at a time. Ends with the unit of work, and when the unit writes.
class LinesAhead {
 public:
  explicit LinesAhead(Database& database);

  // All rows were handed out in the order in which they were saved.
  void Expect();

  // Goes to a line: the target line of a row or, for a journal entry, the liability line after it. False when the pass
  // does not have it; the file is then asked, which may have it all the same.
  bool GoTo(std::int32_t lineId);

  // Of the line that GoTo() went to, until the next GoTo().
  std::int16_t TypeOfTransaction() const noexcept { return type_; }
  void Fill(LineView& line) const;

 private:
  bool IsExpecting();
  bool GoToTarget(std::int32_t targetId);
  bool StartAt(std::int64_t rowId);
  bool Advance();

  Database& database_;
  Statement pass_;
  Statement rowOfLine_;
  RowStream stream_;
  bool isExpecting_ = false;
  bool isAtEnd_ = false;
  bool isLiabilityLine_ = false;
  std::uint64_t unit_ = 0;
  std::uint64_t version_ = 0;
  // The line that the pass stands on; 0 before the first and after the last.
  std::int32_t lineId_ = 0;
  std::int16_t type_ = 0;
};

}  // namespace standalone
