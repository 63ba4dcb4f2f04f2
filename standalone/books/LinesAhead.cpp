#include "standalone/books/LinesAhead.h"

#include <utility>

namespace standalone {

LinesAhead::Line& LinesAhead::Lines::Add() {
  if (pieces_.empty() || pieces_.back().size() == kPieceLines) pieces_.emplace_back().reserve(kPieceLines);
  return pieces_.back().emplace_back();
}

const LinesAhead::Line* LinesAhead::Lines::Second() const noexcept {
  const std::vector<Line>& piece = pieces_.front();
  if (first_ + 1 < piece.size()) return &piece[first_ + 1];
  return pieces_.size() > 1 ? &pieces_[1].front() : nullptr;
}

void LinesAhead::Lines::RemoveFirst() noexcept {
  if (++first_ < pieces_.front().size()) return;
  pieces_.pop_front();
  first_ = 0;
}

void LinesAhead::Hold(Lines lines) {
  version_ = Data().ReadVersion();
  lines_ = std::move(lines);
}

bool LinesAhead::GoTo(std::int32_t lineId) {
  if (lineId < 1 || !AreHeld()) return false;
  if (!IsAtLine(lineId) && IsAtLine(lineId - 1)) {
    // A liability line that is gone is no reason to go past the rows that follow.
    const Line* const next = lines_->Second();
    if (next == nullptr || next->id != lineId) return false;
  }
  while (!lines_->IsEmpty() && lines_->First().id != lineId) lines_->RemoveFirst();
  return !lines_->IsEmpty() && lines_->First().view.txnType != 0;
}

LineView LinesAhead::Take() {
  LineView& line = lines_->First().view;
  const bool hasMemo = std::exchange(line.hasMemo, false);
  LineView taken = std::move(line);
  taken.hasMemo = hasMemo;
  return taken;
}

bool LinesAhead::AreHeld() {
  if (lines_ && version_ != Data().ReadVersion()) lines_.reset();
  return lines_.has_value();
}

}  // namespace standalone
