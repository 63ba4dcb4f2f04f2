#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "standalone/books/TransactionTable.h"
#include "standalone/storage/Database.h"

namespace standalone {

// The lines behind the intercompany rows, read in one walk over the file together with the rows. Whoever has read all
// rows puts their lines here; those that are then asked for one by one, in the order of the rows, need no other look at
// the file. A long listing gives up its lines as it grows: a line is held until another one is asked for, and none
// beyond the unit of work. Once the unit has written, the file is asked again.
class LinesAhead final : private UnitBound {
 public:
  // The target line of a row or, for a journal entry, the liability line after it. Blank when there is no such line.
  struct Line {
    std::int32_t id = 0;
    LineView view;
  };

  // In the order in which the rows were saved. Room is taken and given up for many lines at a time, which leaves the
  // texts of a growing list to be placed one after the other.
  class Lines {
   public:
    // A blank line behind all others, to be filled.
    Line& Add();
    bool IsEmpty() const noexcept { return pieces_.empty(); }
    Line& First() noexcept { return pieces_.front()[first_]; }
    const Line& First() const noexcept { return pieces_.front()[first_]; }
    // Null when there is none behind the first one.
    const Line* Second() const noexcept;
    void RemoveFirst() noexcept;

   private:
    static constexpr std::size_t kPieceLines = 2048;

    // None of them is empty.
    std::deque<std::vector<Line>> pieces_;
    std::size_t first_ = 0;  // in the first piece
  };

  explicit LinesAhead(Database& database) : UnitBound(database) {}

  // To be called while nothing has been written since the lines were read.
  void Hold(Lines lines);
  void Drop() noexcept override { lines_.reset(); }

  // Goes to a line. False when it is not among those that are ahead; the file is then asked, which may have it all the
  // same. A question for any other line than those gives all of them up.
  bool GoTo(std::int32_t lineId);

  // Of the line that GoTo() went to, until the next GoTo().
  std::int16_t TypeOfTransaction() const noexcept { return lines_->First().view.txnType; }
  // Its memo is given away once.
  LineView Take();

 private:
  bool AreHeld();
  bool IsAtLine(std::int32_t lineId) const { return !lines_->IsEmpty() && lines_->First().id == lineId; }

  std::optional<Lines> lines_;
  std::uint64_t version_ = 0;
};

}  // namespace standalone
