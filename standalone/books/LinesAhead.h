#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "standalone/books/TransactionTable.h"
#include "standalone/storage/Database.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/storage/Statement.h"

namespace standalone {

// The lines behind the intercompany rows, read a page at a time in the order of the rows. Whoever has listed all rows
// asks for their lines one by one; from then on each line is read with those that follow it, until the unit of work
// writes or ends.
class LinesAhead final : private UnitBound {
 public:
  explicit LinesAhead(Database& database);

  // To be called when all rows were listed.
  void Expect() { page_.Hold({}); }

  // Null when the line is none of those that are expected, which does not say that it is not there. Valid until the
  // next question.
  const LineView* Find(std::int32_t lineId);

 private:
  // The target line of a row or, for a journal entry, the liability line after it.
  struct Line {
    std::int32_t id = 0;
    LineView view;
  };

  struct Page {
    std::vector<Line> lines;
    std::size_t at = 0;  // the line that was found last
  };

  std::vector<Line> ReadFrom(std::int32_t targetId);
  void Drop() noexcept override { page_.Forget(); }

  Statement fromTarget_;
  ReadOnce<Page> page_;
};

}  // namespace standalone
