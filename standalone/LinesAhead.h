#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "standalone/Database.h"
#include "standalone/TransactionTable.h"

namespace standalone {

// The lines behind the intercompany rows, read in one walk over the file together with the rows. Whoever reads all rows
// puts their lines here; those that are then asked for one by one, in the order of the rows, need no other look at the
// file. A line is held until a later one is asked for, so that a long listing gives up its lines as it grows. Ends with
// the unit of work, and when the unit writes.
class LinesAhead final : private UnitBound {
 public:
  explicit LinesAhead(Database& database) : UnitBound(database), database_(database) {}

  // All rows are about to be read, in the order in which they were saved.
  void Begin();
  // The target line of the next row or, for a journal entry, the liability line after it. To be filled at once; it
  // stays blank when it is gone.
  LineView& Add(std::int32_t lineId);

  // Goes to a line. False when it is not among those that are ahead; the file is then asked, which may have it all the
  // same.
  bool GoTo(std::int32_t lineId);

  // Of the line that GoTo() went to, until the next GoTo().
  std::int16_t TypeOfTransaction() const noexcept { return lines_->front().view.txnType; }
  // Its memo is given away once.
  LineView Take();

 private:
  struct Line {
    std::int32_t id = 0;
    LineView view;
  };

  bool AreHeld();
  bool IsAtLine(std::int32_t lineId) const { return !lines_->empty() && lines_->front().id == lineId; }
  void Drop() noexcept override { lines_.reset(); }

  Database& database_;
  std::optional<std::deque<Line>> lines_;
  std::uint64_t version_ = 0;
};

}  // namespace standalone
