#include "standalone/LinesAhead.h"

#include <utility>

namespace standalone {

void LinesAhead::Hold(Lines lines) {
  version_ = database_.ReadVersion();
  lines_ = std::move(lines);
}

bool LinesAhead::GoTo(std::int32_t lineId) {
  if (lineId < 1 || !AreHeld()) return false;
  // A liability line that is gone is no reason to go past the rows that follow.
  if (!IsAtLine(lineId) && IsAtLine(lineId - 1) && (lines_->size() == 1 || (*lines_)[1].id != lineId)) return false;
  while (!lines_->empty() && lines_->front().id != lineId) lines_->pop_front();
  return !lines_->empty() && lines_->front().view.txnType != 0;
}

LineView LinesAhead::Take() {
  LineView& line = lines_->front().view;
  LineView taken = std::move(line);
  line.hasMemo = false;
  return taken;
}

bool LinesAhead::AreHeld() {
  if (lines_ && version_ != database_.ReadVersion()) lines_.reset();
  return lines_.has_value();
}

}  // namespace standalone
